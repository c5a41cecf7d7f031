// SPDX-License-Identifier: MIT
// The handler of open menus: keys, and what a finger does.
#pragma once

#include "menus/stack.h"

namespace menus {

int menu_handler(int type, int par1, int par2);

// Acts on a key that was pressed or, with `is_repeat`, is held. False for one that means nothing.
enum class Press { first, repeat };
bool key(int code, Press press);
// The key that closes one level, as it is before left and right change places.
int back_key();
// The key that means a direction where the interface runs left to right.
int mirrored_key(int code);

// Selects a row and shows it, on its page or under the finger.
void change_item(Menu &menu, int row);

// What a point of the screen is: a row, 0 and above, or one of these.
inline constexpr int no_item = -3, on_header = -2, out_of_border = -1;
int item_at(const Menu &menu, int x, int y);
// Pointer and multi-touch events.
void pointer(Menu &menu, int type, int x, int y);
// Moves the rows of a finger-driven menu up by so many pixels.
void scroll_by(Menu &menu, int rows_up);
// Forgets the finger: no timer of it runs on.
void drop_touch();

} // namespace menus
