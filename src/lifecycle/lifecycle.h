// SPDX-License-Identifier: MIT
// The life of the process: opens every area in order and closes them all.
#pragma once

enum class Ownership { process, external };

// Opens the screen; 1, also when it is open already, 0 when there is no device.
int open_screen(Ownership ownership);
// Undoes open_screen, so that the process may open the screen again.
void close_screen();

// Reads the settings of the runtime from the global configuration and the device description.
void load_settings();

// Sends EVT_EXIT and closes the screen. Does nothing in any process but the one that opened it.
void leave_application();
// The same; then the process ends at once, without its exit handlers.
[[noreturn]] void end_process(int status);

void install_signal_handlers();
void restore_signal_handlers();
