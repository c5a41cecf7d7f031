// SPDX-License-Identifier: MIT
// Numbers in settings.
#pragma once

#include <algorithm>
#include <climits>
#include <cstdlib>

namespace config {

// strtol() with base 0, limited to the range of int.
inline int parse_int(const char *text) {
    return static_cast<int>(std::clamp<long>(std::strtol(text, nullptr, 0), INT_MIN, INT_MAX));
}

} // namespace config
