// SPDX-License-Identifier: MIT
// The change of levels behind Transparent(), for tests of every level.
#pragma once

#include "kelvane/bitmaps.h"

namespace chrome {

// Replaces every level of a depth-4 bitmap as Transparent() says.
void replace_levels(ibitmap &bm, int percent);

} // namespace chrome
