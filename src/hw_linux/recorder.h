// SPDX-License-Identifier: MIT
// Writes what is done to the device as a script (KELVANE_RECORD=file).
#pragma once

namespace hw {

// False after saying on standard error what is wrong.
bool open_recorder();
void close_recorder();
// The application is idle: the first time, the waits begin to count, as those of a script do.
void recorder_idle();
// Adds a line, after a line that waits for the time since the last one. Nothing when not recording.
[[gnu::format(printf, 1, 2)]] void record(const char *format, ...);

} // namespace hw
