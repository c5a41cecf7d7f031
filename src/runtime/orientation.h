// SPDX-License-Identifier: MIT
// Changes of the orientation, which a handler may miss while a component has the input.
#pragma once

struct OrientationChanges {
    unsigned count = 0;     // of all that were queued in this process
    int par1 = 0, par2 = 0; // of the last one
};

const OrientationChanges &orientation_changes();
// Queues a change for the current handler.
void queue_orientation_change(int par1, int par2);
// Queues the last change for the current handler when there was one since `count`.
void repeat_orientation_change(unsigned count);
