// SPDX-License-Identifier: MIT
// What the ways to read and write a handle share. Handles and names are not null here.
#pragma once

#include "kelvane/config.h"

namespace config {

// The value that counts: volatile, then unsaved, then the file's. Null when there is none.
const char *find(iconfig *c, const char *name);

// Sets a value to be saved. `value` must not lie in one of the handle's tables.
void write(iconfig *c, const char *name, const char *value);

} // namespace config
