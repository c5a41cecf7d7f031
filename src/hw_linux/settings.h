// SPDX-License-Identifier: MIT
// The settings of the emulated device in the global configuration.
#pragma once

namespace hw {

// How the device is held, 0 to 3; -1 when that is not set.
int get_orientation();
// The display mode; 0 when it is missing or unknown.
int get_display_mode();
// Saves one setting at once.
void store_setting(const char *name, int value);

} // namespace hw
