// SPDX-License-Identifier: MIT
// Rectangles that may reach beyond the range of int, and how they are drawn: layouts add up sizes
// that applications and themes give.
#pragma once

#include <algorithm>
#include <cstdint>

#include "ground/number.h"
#include "kelvane/canvas.h"

namespace raster {

using ground::saturated;

struct Box {
    int64_t x, y, w, h;
    Box(int64_t x_, int64_t y_, int64_t w_, int64_t h_) : x(x_), y(y_), w(w_), h(h_) {}
    explicit Box(const irect &r) : Box(r.x, r.y, r.w, r.h) {}
    bool empty() const { return w < 1 || h < 1; }
};

inline bool contains(const Box &box, int x, int y) {
    return x >= box.x && x < box.x + box.w && y >= box.y && y < box.y + box.h;
}

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

// Diagonal lines `step` pixels apart, which are counted from the right edge.
inline void hatch(const Box &box, int step, int color) {
    const int64_t right = -near_start(-(box.x + box.w), step);
    const irect r = to_rect({box.x, box.y, right - box.x, box.h});
    DrawDiagonalHatch(r.x, r.y, r.w, r.h, step, color);
}

} // namespace raster
