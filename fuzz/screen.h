// SPDX-License-Identifier: MIT
// A screen to draw on, and the bytes of an input one after the other.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "internal.h"

namespace fuzz {

// A screen of one byte a pixel with a guard around it.
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

class Bytes {
  public:
    Bytes(const uint8_t *data, size_t size) : at_(data), end_(data + size) {}
    bool empty() const { return at_ == end_; }
    int next() { return empty() ? 0 : *at_++; }
    // Up to a NUL.
    std::string text() {
        const uint8_t *end = std::find(at_, end_, 0);
        std::string text(at_, end);
        at_ = end == end_ ? end : end + 1;
        return text;
    }

  private:
    const uint8_t *at_, *end_;
};

} // namespace fuzz
