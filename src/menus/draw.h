// SPDX-License-Identifier: MIT
// What a menu looks like. Everything is drawn on the screen, whatever canvas is current; canvas,
// clip and font are as before afterwards.
#pragma once

#include "menus/stack.h"

namespace menus {

// The menu with its rim and pointer.
void draw_menu(const Menu &menu);
// What changes with the selection: two rows. Rows of other pages are not drawn.
void draw_selection(const Menu &menu, int former);
// The rows, after a finger moved them or another page was chosen.
void draw_rows(const Menu &menu);
void draw_exit_button(const Menu &menu);

// The exit button in the title bar; empty without one.
irect exit_rect(const Menu &menu);
// What rows may be drawn on: all inside the border.
irect inside_of(const Menu &menu);

// A white area with round corners.
void fill_rounded(const irect &r, int radius);
// The border of a menu of that size. The clip is the whole screen afterwards.
void draw_border(const irect &r, const Look &look);

} // namespace menus
