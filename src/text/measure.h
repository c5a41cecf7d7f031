// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>

namespace text {

// The width of a line in the current font.
int64_t measure(const uint16_t *text, int len);

// Without a font a string is as wide as its bytes tell.
int width_without_face(size_t bytes);

inline int saturated(int64_t v) {
    return static_cast<int>(std::clamp<int64_t>(v, INT_MIN, INT_MAX));
}

} // namespace text
