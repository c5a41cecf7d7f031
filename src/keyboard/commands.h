// SPDX-License-Identifier: MIT
// What keys do, however they were reached.
#pragma once

#include "keyboard/board.h"

namespace keyboard {

// Types a character or does what a code of a layout stands for. The board may be gone afterwards.
void type(Board &b, uint16_t code);
// Whether the keys look different afterwards, so that a pressed one need not be drawn before.
bool changes_keys(uint16_t code);

// Moves the cursor, and shows that.
void move_cursor(Board &b, size_t position);
void step_cursor(Board &b, bool to_the_left);
// The sign at the end of the entry line: empties it, or shows a password.
void touch_icon(Board &b);

void show_entry(Board &b);
// Takes away the letter above a pressed key.
void hide_hint(Board &b);
void stop_timers();

} // namespace keyboard
