// SPDX-License-Identifier: MIT
// The fonts of a device, and a canvas to draw text on.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "internal.h"
#include "kelvane/canvas.h"
#include "support/tempdir.h"
#include "text/text.h"

namespace fonts {

inline const std::filesystem::path dejavu = "/usr/share/fonts/truetype/dejavu";
inline const std::filesystem::path droid = "/usr/share/fonts/truetype/droid";

// Links a font into the system folder below the working directory.
inline void link(const std::filesystem::path &file, const std::string &as) {
    std::filesystem::create_directories("system/fonts");
    std::filesystem::create_symlink(file, "system/fonts/" + as);
}

inline void link_all() {
    for (const char *name :
         {"DejaVuSans", "DejaVuSans-Bold", "DejaVuSans-Oblique", "DejaVuSans-BoldOblique"})
        link(dejavu / (std::string(name) + ".ttf"), std::string(name) + ".ttf");
    link(droid / "DroidSansFallbackFull.ttf", "fireflysung.ttf");
}

// A working directory with the fonts of a device, and settings that smooth them. No screen is open.
struct Folder {
    TempDir dir;
    Folder() {
        link_all();
        kvstate.antialiasing = 1;
    }
    ~Folder() {
        text::reset();
        for (char *setting : {kvstate.font, kvstate.fontb, kvstate.fonti, kvstate.fontbi})
            *setting = '\0';
    }
    Folder(const Folder &) = delete;
    Folder &operator=(const Folder &) = delete;
};

// A font that is closed at the end of the scope.
struct Font {
    ifont *font;
    Font(const char *name, int size, int aa = 1) : font(OpenFont(name, size, aa)) {}
    ~Font() { CloseFont(font); }
    Font(const Font &) = delete;
    Font &operator=(const Font &) = delete;
    ifont *operator->() const { return font; }
    operator ifont *() const { return font; }
};

// A white canvas, current for as long as it lives.
struct Canvas {
    std::vector<uint8_t> pixels;
    icanvas canvas;
    Canvas(int w, int h, int depth = 8)
        : pixels(static_cast<size_t>(w * h * depth / 8), 255), canvas{w,     h,     w * depth / 8,
                                                                      depth, 0,     w - 1,
                                                                      0,     h - 1, pixels.data()},
          before_(kvstate.canvas) {
        kvstate.canvas = &canvas;
    }
    ~Canvas() { kvstate.canvas = before_; }
    Canvas(const Canvas &) = delete;
    Canvas &operator=(const Canvas &) = delete;
    // The first byte of a pixel.
    uint8_t at(int x, int y) const {
        return pixels[static_cast<size_t>(y * canvas.scanline + x * canvas.depth / 8)];
    }

  private:
    icanvas *before_;
};

} // namespace fonts
