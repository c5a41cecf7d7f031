// SPDX-License-Identifier: MIT
// One row: the title, an item or a separator.
#pragma once

#include "menus/stack.h"

namespace menus {

// Draws it, marked when it is selected, on the current canvas and inside its clip.
void draw_row(const Menu &menu, const Row &row);

} // namespace menus
