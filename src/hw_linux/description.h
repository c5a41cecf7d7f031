// SPDX-License-Identifier: MIT
// The description word's layout. The fields lie on hexadecimal digits, and the default uses only
// digits that fromStringToLongLong() can read (1 to 8, b to e; the rest count as 0).
#pragma once

#include <cstdint>

namespace hw {

struct DescriptionField {
    unsigned shift, bits;
};

inline constexpr DescriptionField panel_kind{0, 4}, grey_depth{4, 4}, panel_position{8, 4},
    touch_kind{12, 4}, keyboard_kind{16, 8}, platform_number{24, 8}, light_kind{32, 4},
    audio_kind{36, 4}, bluetooth{40, 4}, wifi{44, 4}, modem{48, 4}, orientation_sensor{52, 4};

// A 6-inch panel of 600x800 with 16 greys, like display mode 0; multi-touch, direction and page
// keys, platform 1, one-colour front light, headphones, Bluetooth, Wi-Fi, orientation sensor.
inline constexpr uint64_t default_description = 0x0010111101013041;

// The field's value in the word in effect.
int described(DescriptionField field);

} // namespace hw
