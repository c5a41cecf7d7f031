// SPDX-License-Identifier: MIT
// Boxes over a picture on the headless device, with the fonts of a device.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "kelvane/canvas.h"
#include "kelvane/dialogs.h"
#include "kelvane/theme.h"
#include "support/fonts.h"
#include "support/headless.h"

namespace boxes {

// Default sizes of a dialog at 600 x 800 pixels: the row is 50 high and ends a pixel below the
// screen, at 801.
inline constexpr int row_y = 751, row_middle = 775, box_top = 601;

inline std::string answers; // of callbacks, each followed by a blank
inline void answer(int button) {
    answers += std::to_string(button) + " ";
}
inline void open_three(int flags = 0) {
    Dialog3(flags, "Title", "", "One", "Two", "Three", answer);
}

inline std::vector<uint8_t> screen() {
    const icanvas &c = *kvstate.framebuffer;
    return {c.addr, c.addr + c.scanline * c.height};
}
// The rows above a line.
inline std::vector<uint8_t> above(int y) {
    const icanvas &c = *kvstate.framebuffer;
    return {c.addr, c.addr + c.scanline * y};
}

// Calls of updates since the log was cleared, in order.
inline std::string update_calls() {
    std::string calls;
    for (const headless::Update &u : headless::updates()) calls += std::string(u.call) + " ";
    return calls;
}

class Test : public headless::Test {
  protected:
    Test() {
        fonts::link_all();
        answers.clear();
        use_keys();
        draw_page();
    }
    static void use_keys() { loadHwConfigEmulator("0x0010111101011041"); }
    static void use_multi_touch() { loadHwConfigEmulator("0x0010111101013041"); }
    // Every grey there is, so that rounding would show.
    static void draw_page() {
        for (int x = 0; x < ScreenWidth(); ++x)
            DrawLine(x, 0, ScreenWidth() - x, ScreenHeight(), x % 256 * 0x010101);
    }
};

} // namespace boxes
