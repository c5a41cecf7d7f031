// SPDX-License-Identifier: MIT
// Does what clients of a socket say while the application runs (KELVANE_CONTROL=socket): a line of
// a script, or a question. Each line waits until the application is idle. On the headless device a
// controller owns the clock: time passes when a line asks for it.
#pragma once

#include <cstdint>

namespace hw {

// False after saying on standard error what is wrong.
bool open_control();
void close_control();
bool is_controlled();
// Readable when a client has said something; -1 when there is no control.
int control_fd();
// How long the application may idle from now: at most limit_us, 0 when a line is to be done or time
// stands still. Rests a moment in that case.
int64_t time_to_control(int64_t limit_us);
// Called while the application works. One that always has events waiting never comes to a line:
// after five seconds of that, lines are answered with an error.
void check_unrest();
// Does what is due, if anything, and answers what is done.
void run_due_control();

} // namespace hw
