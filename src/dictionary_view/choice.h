// SPDX-License-Identifier: MIT
// Which dictionary is shown: the one that is open, the user's, or any.
#pragma once

#include <string>
#include <vector>

namespace dictionary_view {

// Opens one unless one is open. False when there is none that can be opened. Throws bad_alloc.
bool open_any();
// Opens that one and remembers it in the settings. When it cannot be opened, the one before is open
// again. Throws bad_alloc.
bool choose(const std::string &name);
// The name of the open one; empty without any. Throws bad_alloc.
std::string open_name();
// All names, in order. Throws bad_alloc.
std::vector<std::string> all_names();

} // namespace dictionary_view
