// SPDX-License-Identifier: MIT
// A screen of one byte a pixel with a guard around it.
#pragma once

#include <cstdint>
#include <vector>

#include "internal.h"

namespace fuzz {

struct Screen {
    static constexpr int w = 300, h = 400, guard = 4096;
    std::vector<uint8_t> pixels = std::vector<uint8_t>(w * h + 2 * guard, 0x5A);
    icanvas canvas{};
    // Makes it the screen, held in this orientation.
    void turn(int orientation) {
        const bool upright = orientation % 3 == 0;
        const int cw = upright ? w : h, ch = upright ? h : w;
        canvas = {cw, ch, cw, 8, 0, cw - 1, 0, ch - 1, pixels.data() + guard};
        kvstate.framebuffer = kvstate.canvas = &canvas;
        kvstate.orientation = orientation;
    }
};

} // namespace fuzz
