// SPDX-License-Identifier: MIT
// Themes for denser screens.
#pragma once

#include "folder.h"

namespace tool {

inline constexpr int least_percent = 25, most_percent = 800;

// Lengths, font sizes and pictures of a theme in percent of what they are.
void scale(Theme &theme, int percent);

} // namespace tool
