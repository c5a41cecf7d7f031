// SPDX-License-Identifier: MIT
// The folders of the device that hold dictionaries.
#pragma once

#include <string>
#include <string_view>

namespace dictionary {

// The path of a dictionary, by its name in any case of letters; empty when there is none. Throws
// bad_alloc.
std::string find_path(const char *name);

// The name of the dictionary at a path.
std::string name_of(std::string_view path);

} // namespace dictionary
