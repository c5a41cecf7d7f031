// SPDX-License-Identifier: MIT
// A working directory with the default fonts, and a canvas.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "internal.h"
#include "text/text.h"

namespace fuzz {

struct TextFolder {
    std::vector<uint8_t> pixels = std::vector<uint8_t>(64 * 64, 255);
    icanvas canvas = {64, 64, 64, 8, 0, 63, 0, 63, pixels.data()};
    TextFolder() {
        std::string name = "/tmp/kelvane-fuzz-XXXXXX";
        if (mkdtemp(name.data()) == nullptr) std::abort();
        std::filesystem::current_path(name);
        std::filesystem::create_directories("system/fonts");
        for (const char *font : {"DejaVuSans.ttf", "DejaVuSans-Bold.ttf"})
            std::filesystem::create_symlink(std::string("/usr/share/fonts/truetype/dejavu/") + font,
                                            std::string("system/fonts/") + font);
        kvstate.antialiasing = 1;
        kvstate.canvas = &canvas;
    }
    ~TextFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(std::filesystem::current_path(), ignored);
    }
};

} // namespace fuzz
