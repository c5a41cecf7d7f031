// SPDX-License-Identifier: MIT
// The device's keys and pointer, in the units of the emulated device.
#pragma once

#include <string_view>

namespace hw {

inline constexpr int key_bits = 23; // of the key mask

// Empties the input ring and lets go of every key and of the pointer.
void reset_input();
// The input ring holds something.
bool has_input();
// Some key is down: the device stays awake.
bool a_key_is_held();
// The person turns away: every key that is down goes up, and so does the pointer.
void release_keys();
void lift_pointer();
// pointer_input() in panel pixels.
void panel_pointer_input(int type, int x, int y);
// A character was typed on the workstation's keyboard; 8 is Backspace. Others than those of 16 bits
// are left out.
void type_character(unsigned character);
// The first row of the key table with this code, name or key of the workstation; -1 for none.
int find_code_bit(int code);
int find_name_bit(std::string_view name);
int find_workstation_bit(unsigned key);

} // namespace hw
