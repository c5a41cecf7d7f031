// SPDX-License-Identifier: MIT
// The lock that stands on the screen while an update is shown and the keys are locked. The
// lifecycle hands these functions to the screen updates.
#pragma once

namespace chrome {

// Draws the icon onto the screen canvas; false when there is none, and nothing was drawn.
bool show_keylock_icon();
// Puts back what was there before.
void restore_under_keylock_icon();

} // namespace chrome
