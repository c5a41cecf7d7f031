// SPDX-License-Identifier: MIT
// Tells what reaches the panel: a line of JSON an update (KELVANE_TRACE=file), a picture an update
// (KELVANE_FRAMES=directory), and a call for tests.
#pragma once

#include <cstdint>

namespace hw {

enum class UpdateKind { full, full_hq, partial, refine };

struct UpdateRecord {
    int seq; // from 1
    UpdateKind kind;
    const char *call; // the function of updates.h that asked for it; empty when not known
    int64_t time_ms;  // boot clock at the call
    int x, y, w, h;
    int mode, dynamic;
};

// False after saying on standard error what is wrong.
bool open_trace();
void close_trace();
// Called after the update was painted; numbers it.
void trace_update(UpdateRecord update);

// How many updates there were since the screen was opened.
int updates_traced();

// Receives each update; null stops.
void observe_updates(void (*observer)(const UpdateRecord &));

} // namespace hw
