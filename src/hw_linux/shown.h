// SPDX-License-Identifier: MIT
// What a person sees of the updates: each at once, as it is asked for, or the way a panel of
// e-paper would show it (KELVANE_PANEL=epaper).
#pragma once

#include "hw_linux/trace.h"
#include "kelvane/canvas.h"

namespace hw {

// After the device was opened. False after saying on standard error what is wrong.
bool open_shown();
void close_shown();

// The other way from now on; the key of the window for it.
void switch_panel();

// An update of an area that may reach anywhere: compares it with what was shown, and fills in what
// the trace tells of that. On e-paper it may first wait for a free place.
// @return whether the panel shows it from now on, and its picture is saved when it has
bool begin_update(UpdateRecord &update);
// Paints the area, where the panel shows updates at once.
void paint_update(const irect &area);
// The same once more, as a flash has it: the pixels are those of before.
void repeat_update();

// Lets the pixels that a person sees move on, as far as somebody looks at them now.
void play_panel();
// The pixels are those of the present time.
void refresh_pixels();

// An update runs on e-paper; where updates are shown at once none does.
bool panel_is_busy();
// Returns when none does, or when the device was closed meanwhile.
void wait_for_panel();

// The canvas will be turned: what runs comes to its end at once.
void prepare_turn();
// The canvas was turned, from `before` to `after` as PanelView has it.
void turn_shown(int before, int after);

} // namespace hw
