// SPDX-License-Identifier: MIT
// The status panel on the screen. The lifecycle hands these functions to the runtime.
#pragma once

namespace panel {

// Draws it when an update of this area is about to show some of its rows.
void draw_for_update(int x, int y, int w, int h);
// Shows what has changed since it was shown, with one update; not in the background, and not while
// the paper is in its fastest mode, which another update would end.
void refresh();
// Takes a finger that goes down on it until it is lifted; true when the event is the panel's.
bool pointer(int type, int x, int y);
// Forgets what is shown and set, as the screen closes.
void reset();

} // namespace panel
