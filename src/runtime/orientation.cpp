// SPDX-License-Identifier: MIT
// Remembers the last change of the orientation for those who come back to the input.
#include "runtime/orientation.h"

#include "internal.h"

namespace {

OrientationChanges changes;

void queue_last_change() {
    kv_enqueue(kvstate.hproc, EVT_ORIENTATION, changes.par1, changes.par2);
}

} // namespace

const OrientationChanges &orientation_changes() {
    return changes;
}

void queue_orientation_change(int par1, int par2) {
    changes = {changes.count + 1, par1, par2};
    queue_last_change();
}

void repeat_orientation_change(unsigned count) {
    if (count != changes.count) queue_last_change();
}
