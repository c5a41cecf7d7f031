// SPDX-License-Identifier: MIT
// The one place that reads and writes the interface flags.
#include "runtime/interface_flags.h"

bool has_interface_flag(int flags) {
    return (kvstate.uiflags & flags) != 0;
}

int set_interface_flags(int flags) {
    const int added = flags & ~kvstate.uiflags;
    kvstate.uiflags |= flags;
    return added;
}

void clear_interface_flags(int flags) {
    kvstate.uiflags &= ~flags;
}
