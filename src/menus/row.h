// SPDX-License-Identifier: MIT
// One row: the title, an item or a separator.
#pragma once

#include "menus/stack.h"

namespace menus {

// What lies under a row: what is white already need not be filled.
enum class Ground { any, white };
// Draws it, marked when it is selected, on the current canvas and inside its clip.
void draw_row(const Menu &menu, const Row &row, Ground ground = Ground::any);

} // namespace menus
