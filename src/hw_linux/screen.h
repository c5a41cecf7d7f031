// SPDX-License-Identifier: MIT
// The framebuffer as the areas of the device layer share it.
#pragma once

#include "hw_linux/panel.h"
#include "kelvane/canvas.h"

namespace hw {

// The framebuffer's canvas; null before hw_init and after hw_close.
icanvas *framebuffer();
// How the framebuffer lies on the panel now.
PanelView panel_view();
// How one would lie that is turned so.
PanelView panel_view(int orientation);
// Takes a place on the panel to the nearest one that shows a pixel of the framebuffer.
void move_onto_canvas(int &x, int &y);
// How the device is held, in quarter turns; 0 as well when that is not set.
int held_quarter_turns();
// Set to 1 when the window is being closed, and to 2 once the loop has been told.
int &closing();

} // namespace hw
