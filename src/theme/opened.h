// SPDX-License-Identifier: MIT
// The theme that is open.
#pragma once

#include <string>

#include "theme/container.h"

namespace theme {

// A resource of the theme file as it is; none without a theme.
Block unpack_resource(const std::string &name);

// Closes the theme; without one nothing has a value.
void reset();

} // namespace theme
