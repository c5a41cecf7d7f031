// SPDX-License-Identifier: MIT
// The finger that a scroll view holds: while it is down, no other component takes its events.
#pragma once

namespace lists {

// A finger went down on the view of that number, which is above 0.
void capture_finger(int view);
// Marks the slot of the finger again at each of its events, until it is lifted. The event goes on
// to the handler: always false.
bool keep_capture(int type, int x, int y);

} // namespace lists
