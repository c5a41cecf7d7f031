// SPDX-License-Identifier: MIT
// What the handlers of components have in common: which events they look at, and how they answer a
// finger.
#pragma once

#include "raster/box.h"

namespace modal {

// Pointer and multi-touch events, which have a place as their parameters.
bool is_pointer_event(int type);

// Events with which the system opens its screens: none opens above a component.
constexpr bool is_system_event(int type) {
    return type >= 119 && type <= 132;
}

// A tap goes on as this key, so that fingers and keys share one path through the current handler.
// `type` is EVT_KEYPRESS, or EVT_KEYRELEASE for those who act when a key is let go.
void send_key(int type, int key);

// Hatches a pressed button in black.
inline constexpr int button_hatch_step = 4;
void draw_pressed(const raster::Box &box, int step = button_hatch_step);

// Fills a button with rounded lower corners, as it has next to the corner of a frame: `left` and
// `right` are their radii, at most its height and together its width; 0 for a right angle. The clip
// rectangle is the whole canvas afterwards.
void fill_button(const irect &r, int left, int right, int color);

// Shows an area of the screen.
void update(const raster::Box &box);

} // namespace modal
