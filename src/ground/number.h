// SPDX-License-Identifier: MIT
// Numbers that stay in the range of int, whatever is computed or read.
#pragma once

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdlib>

namespace ground {

inline int saturated(int64_t value) {
    return static_cast<int>(std::clamp<int64_t>(value, INT_MIN, INT_MAX));
}

// How far apart two times are, or the farthest there is.
inline int64_t saturated_difference(int64_t a, int64_t b) {
    int64_t difference;
    if (!__builtin_sub_overflow(a, b, &difference)) return difference;
    return b < 0 ? INT64_MAX : INT64_MIN;
}

// The number that a text begins with, as strtol() reads it, or the nearest int.
inline int parse_int(const char *text, char **end = nullptr, int base = 0) {
    return saturated(std::strtol(text, end, base));
}

} // namespace ground
