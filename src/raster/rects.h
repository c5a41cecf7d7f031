// SPDX-License-Identifier: MIT
// Rectangles of the screen that components put together.
#pragma once

#include <algorithm>

#include "kelvane/canvas.h"

namespace raster {

inline irect widened(const irect &r, int by) {
    return {r.x - by, r.y - by, r.w + 2 * by, r.h + 2 * by, 0};
}

// The smallest that holds both; an empty one does not count.
inline irect joined(const irect &a, const irect &b) {
    if (b.w < 1) return a;
    if (a.w < 1) return b;
    const int x = std::min(a.x, b.x), y = std::min(a.y, b.y);
    return {x, y, std::max(a.x + a.w, b.x + b.w) - x, std::max(a.y + a.h, b.y + b.h) - y, 0};
}

// What both have; of width or height 0 when that is nothing.
inline irect shared(const irect &a, const irect &b) {
    const int x = std::max(a.x, b.x), y = std::max(a.y, b.y);
    return {x, y, std::max(std::min(a.x + a.w, b.x + b.w) - x, 0),
            std::max(std::min(a.y + a.h, b.y + b.h) - y, 0), 0};
}

} // namespace raster
