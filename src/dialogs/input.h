// SPDX-License-Identifier: MIT
// What keys and places mean to a box.
#pragma once

#include <cstdint>

#include "dialogs/layout.h"

namespace dialogs {

enum class Meaning { nothing, previous, next, choose, cancel };

// On a multi-touch panel only the key for OK means something.
enum class Panel { keys_and_touch, multi_touch };
Panel panel();
Meaning meaning_of(int key, Panel panel);

// The button before or after the selected one, round and round. From no button it is the first.
int button_before(const Present &present, int selected);
int button_after(const Present &present, int selected);

// Edges are outside.
bool is_inside(const irect &r, int x, int y);
// The button at a place, 1 to 3, a little larger than drawn; 0 on the rest of the box, -1 beside
// it. All of a box with one button is that button.
int item_at(const Layout &layout, const Present &present, int x, int y);

// An event that a box takes from the device itself, turned as the loop turns them. The type is 0
// for one that means nothing to boxes.
struct RawEvent {
    int type = 0, par1 = 0, par2 = 0;
};
// False when none waits.
bool take_raw_event(RawEvent &event);

// Rests for a while, or less when input arrives; some time passes in any case.
void rest_ms(int64_t ms);

} // namespace dialogs
