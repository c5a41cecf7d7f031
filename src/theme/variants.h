// SPDX-License-Identifier: MIT
// The names of a picture's variants, cut where they have always been cut.
#pragma once

#include <string>
#include <string_view>

namespace theme {

// For landscape.
inline std::string turned_name(std::string_view name) {
    return std::string("^").append(name.substr(0, 62));
}
// For many greys.
inline std::string deep_name(std::string_view name) {
    return std::string(name.substr(0, 61)).append(":4");
}

} // namespace theme
