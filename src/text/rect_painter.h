// SPDX-License-Identifier: MIT
// Where the lines of a rectangle go, and how they are drawn.
#pragma once

#include <cstdint>
#include <vector>

#include "text/line.h"
#include "text/rect_lines.h"

namespace text {

class RectPainter {
  public:
    RectPainter(int64_t x, int64_t y, int w, int flags, Reader &text)
        : x_(x), y_(y), w_(w), flags_(flags), text_(text), color_(kvstate.current_color) {}

    void draw(const Line &line, int64_t top) const;
    bool is_above_clip(int64_t top) const;

  private:
    std::vector<uint16_t> shown(const Line &line, const uint16_t *text, const uint16_t *end) const;
    void draw_characters(const uint16_t *text, int len, const Line &line, int64_t top) const;
    int64_t offset_of(const Line &line) const;
    void underline(int64_t x, int64_t y, int64_t length, Run run) const;

    const int64_t x_, y_;
    const int w_, flags_;
    Reader &text_;
    const int color_;
};

} // namespace text
