// SPDX-License-Identifier: MIT
// The default values that a table of a settings screen supplies.
#pragma once

#include <vector>

#include "kelvane/config.h"

namespace config {

// The rows of a table of the earlier layout, in the current one, with their end; empty for a table
// of the current one. They lead to the same texts. Throws bad_alloc.
std::vector<iconfigedit> converted(const iconfigedit *table);

// Adds the defaults of a table in either layout, and of the tables nested in it. Null is ignored.
// Throws bad_alloc.
void add_defaults(const iconfigedit *table, ihash values);

} // namespace config
