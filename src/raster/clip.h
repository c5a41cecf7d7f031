// SPDX-License-Identifier: MIT
// What of a rectangle may be written: the part inside both the clip and the canvas memory.
//
// Every caller's coordinate is legal, so the arithmetic is 64 bits wide; what comes out lies inside
// the canvas and is safe to use as int.
#pragma once

#include <algorithm>
#include <cstdint>

#include "kelvane/canvas.h"

namespace raster {

// Pixels that may be written, all four bounds inclusive; empty when x2 < x1 or y2 < y1. When it is
// not empty it lies inside the canvas.
struct Bounds {
    int x1, y1, x2, y2;
    bool empty() const { return x2 < x1 || y2 < y1; }
    bool contains(int x, int y) const { return x >= x1 && x <= x2 && y >= y1 && y <= y2; }
};

// A rectangle of pixels inside a canvas, or an empty one.
struct Area {
    int x = 0, y = 0, w = 0, h = 0;
    bool empty() const { return w < 1 || h < 1; }
};

inline int bytes_per_pixel(const icanvas &c) {
    return c.depth >> 3;
}

inline bool is_drawable(const icanvas &c) {
    return c.addr && (c.depth == 8 || c.depth == 24) && c.width > 0 && c.height > 0 &&
           c.scanline > 0;
}

// The clip cut to the canvas memory of scanline * height bytes; empty for a record that cannot be
// drawn into (no memory, no size, another depth).
inline Bounds writable_bounds(const icanvas &c) {
    if (!is_drawable(c)) return {0, 0, -1, -1};
    const int columns = std::min(c.width, c.depth == 8 ? c.scanline : c.scanline / 3);
    return {std::max(c.clipx1, 0), std::max(c.clipy1, 0), std::min(c.clipx2, columns - 1),
            std::min(c.clipy2, c.height - 1)};
}

// The part of a rectangle that may be written. Of a non-empty result, area.x - x and area.y - y
// (how much was cut off at the left and at the top) fit an int, as they are below w and h.
inline Area clip_area(const Bounds &b, int64_t x, int64_t y, int64_t w, int64_t h) {
    const int64_t left = std::max<int64_t>(x, b.x1), right = std::min<int64_t>(x + w - 1, b.x2);
    const int64_t top = std::max<int64_t>(y, b.y1), bottom = std::min<int64_t>(y + h - 1, b.y2);
    if (right < left || bottom < top) return {};
    return {static_cast<int>(left), static_cast<int>(top), static_cast<int>(right - left + 1),
            static_cast<int>(bottom - top + 1)};
}

// The same on a canvas; nothing may be written where there is none.
inline Area clip_area(const icanvas *c, int64_t x, int64_t y, int64_t w, int64_t h) {
    return !c ? Area{} : clip_area(writable_bounds(*c), x, y, w, h);
}

} // namespace raster
