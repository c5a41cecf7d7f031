// SPDX-License-Identifier: MIT
// Areas of the canvas: cut, compared, joined. Their flags are 0.
#pragma once

#include <algorithm>
#include <cstdint>

#include "kelvane/canvas.h"

namespace hw {

constexpr bool is_empty(const irect &area) {
    return area.w <= 0 || area.h <= 0;
}

// The part of any area that lies on a screen; one of no width and height for none.
constexpr irect clipped(const irect &area, int width, int height) {
    const auto cut = [](int start, int size, int screen) {
        const int64_t end = int64_t{start} + size;
        return static_cast<int>(std::clamp<int64_t>(end, 0, screen));
    };
    const int left = std::max(area.x, 0), top = std::max(area.y, 0);
    const int right = cut(area.x, area.w, width), bottom = cut(area.y, area.h, height);
    if (left >= right || top >= bottom) return {};
    return {left, top, right - left, bottom - top, 0};
}

// Of areas on a screen.
constexpr bool overlap(const irect &a, const irect &b) {
    return a.x < b.x + b.w && b.x < a.x + a.w && a.y < b.y + b.h && b.y < a.y + a.h;
}

// The smallest area around both; an empty one adds nothing.
constexpr irect joined(const irect &a, const irect &b) {
    if (is_empty(a)) return b;
    if (is_empty(b)) return a;
    const int left = std::min(a.x, b.x), top = std::min(a.y, b.y);
    return {left, top, std::max(a.x + a.w, b.x + b.w) - left, std::max(a.y + a.h, b.y + b.h) - top,
            0};
}

} // namespace hw
