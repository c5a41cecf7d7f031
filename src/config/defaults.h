// SPDX-License-Identifier: MIT
// The default values that a table of a settings screen supplies.
#pragma once

#include "kelvane/config.h"

namespace config {

// Adds the defaults of a table in either layout, and of the tables nested in it. Null is ignored.
// Throws bad_alloc.
void add_defaults(iconfigedit *table, ihash values);

} // namespace config
