// SPDX-License-Identifier: MIT
// What the sources of this area share.
#pragma once

#include <algorithm>
#include <climits>
#include <cstdint>

#include "ground/number.h"
#include "internal.h"
#include "kelvane/canvas.h"
#include "text/text.h"

namespace chrome {

// Forgets the pictures, fonts and properties that were loaded, and switches the caption off.
void reset();
// One for each source that keeps something.
void reset_borders();
void reset_selection();
void reset_frames();
void reset_caption();
void reset_pager();
void reset_keylock();

using ground::saturated;

// A rectangle whose edges may lie beyond the range of int.
struct Box {
    int64_t x, y, w, h;
    Box(int64_t x_, int64_t y_, int64_t w_, int64_t h_) : x(x_), y(y_), w(w_), h(h_) {}
    explicit Box(const irect &r) : Box(r.x, r.y, r.w, r.h) {}
    bool empty() const { return w < 1 || h < 1; }
};

inline constexpr int64_t far = (1 << 30) - 1; // beyond any canvas; twice that is an int

// The same pixels of a filled area on any canvas as int coordinates: what is cut off lies far away.
inline irect to_rect(const Box &box, int flags = 0) {
    const int64_t left = std::clamp(box.x, -far, far), right = std::clamp(box.x + box.w, -far, far);
    const int64_t top = std::clamp(box.y, -far, far), bottom = std::clamp(box.y + box.h, -far, far);
    return {static_cast<int>(left), static_cast<int>(top), static_cast<int>(right - left),
            static_cast<int>(bottom - top), flags};
}

inline void fill(const Box &box, int color) {
    const irect r = to_rect(box);
    FillArea(r.x, r.y, r.w, r.h, color);
}

// Where a pattern goes on at the near side of what to_rect() cuts off: whole periods are left out.
inline int64_t near_start(int64_t start, int64_t period) {
    return start < -far ? start + (period - 1 - far - start) / period * period : start;
}

// Diagonal lines three pixels apart, which are counted from the right edge.
inline void hatch(const Box &box, int color) {
    constexpr int step = 3;
    const int64_t right = -near_start(-(box.x + box.w), step);
    const irect r = to_rect({box.x, box.y, right - box.x, box.h});
    DrawDiagonalHatch(r.x, r.y, r.w, r.h, step, color);
}

// Selects a font in its own colour, and what was selected before again at the end of the scope.
class FontScope {
  public:
    explicit FontScope(const ifont *font)
        : font_(kvstate.current_font), color_(kvstate.current_color) {
        SetFont(font, -1);
    }
    ~FontScope() { text::restore_font(font_, color_); }
    FontScope(const FontScope &) = delete;
    FontScope &operator=(const FontScope &) = delete;

  private:
    ifont *font_;
    int color_;
};

} // namespace chrome
