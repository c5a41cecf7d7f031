// SPDX-License-Identifier: MIT
// The lock that stands on the screen while an update is shown and the keys are locked. The
// lifecycle hands these functions to the screen updates.
#pragma once

namespace keylock {

// Draws the icon onto the screen; false when there is none, and nothing was drawn.
bool show_icon();
// Puts back what was there before.
void restore_under_icon();
// Forgets the theme's icon.
void reset();

} // namespace keylock
