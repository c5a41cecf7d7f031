// SPDX-License-Identifier: MIT
// The handler of the open keyboard.
#pragma once

#include "keyboard/board.h"

namespace keyboard {

int keyboard_handler(int type, int par1, int par2);
// Nothing else has opened above the keyboard, so that it may draw.
bool has_input();

// A key of the device that was pressed or is held, as `press` says. False for one that means
// nothing.
enum class Press { first, repeat };
bool device_key(Board &b, int key, Press press);

// Pointer events.
void pointer(Board &b, int type, int x, int y);
// What is pressed is shown as it is again.
void let_go(Board &b);
// The time runs out after which a pressed key counts as let go.
void start_idle_timer();
// Nothing is pressed or pending any more.
void stop_pointer_timers();

} // namespace keyboard
