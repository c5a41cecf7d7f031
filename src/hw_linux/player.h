// SPDX-License-Identifier: MIT
// Plays a script (KELVANE_SCRIPT=file) and then the monkey (KELVANE_MONKEY=seed:count). Each action
// runs when the application is idle, so that it sees everything the one before it did. After the
// last one the application is asked to quit.
#pragma once

#include <cstdint>

namespace hw {

// False after saying on standard error what is wrong.
bool open_player();
void close_player();
// Something is left to be played.
bool is_playing();
// How long the application may idle from now: at most limit_us, 0 when an action is due. The first
// call starts the play.
int64_t time_to_action(int64_t limit_us);
// Runs one action that is due, if any.
void run_due_action();

} // namespace hw
