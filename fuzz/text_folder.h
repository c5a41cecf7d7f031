// SPDX-License-Identifier: MIT
// A device folder with the default fonts, and a canvas.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "device_folder.h"
#include "internal.h"
#include "text/text.h"

namespace fuzz {

struct TextFolder : DeviceFolder {
    std::vector<uint8_t> pixels = std::vector<uint8_t>(64 * 64, 255);
    icanvas canvas = {64, 64, 64, 8, 0, 63, 0, 63, pixels.data()};
    TextFolder() {
        const std::filesystem::path fonts = path() / "system/fonts";
        std::filesystem::create_directories(fonts);
        for (const char *font : {"DejaVuSans.ttf", "DejaVuSans-Bold.ttf"})
            std::filesystem::create_symlink(std::string("/usr/share/fonts/truetype/dejavu/") + font,
                                            fonts / font);
        kvstate.antialiasing = 1;
        kvstate.canvas = &canvas;
    }
};

} // namespace fuzz
