// SPDX-License-Identifier: MIT
// Tells what reaches the panel: a line of JSON an update (KELVANE_TRACE=file), a picture an update
// (KELVANE_FRAMES=directory), and a call for tests.
#pragma once

#include <cstdint>

#include "hw_linux/waveform.h"
#include "kelvane/canvas.h"

namespace hw {

struct UpdateRecord {
    int seq; // from 1
    UpdateKind kind;
    const char *call; // the function of updates.h that asked for it; empty when not known
    int64_t time_ms;  // boot clock at the call
    int x, y, w, h;
    int mode, dynamic;
    // What it does to the panel; 0 where nobody looks.
    int changed = 0;      // pixels
    irect changed_area{}; // the smallest one around them
    int greys = 0;        // of the panel's 16, that stand in its area
    int64_t wait_ms = 0;  // for others to end
    int panel_ms = 0;     // then
    int residue = -1; // mean after it, in hundredths of a grey of 255; -1 where there is no model
};

// False after saying on standard error what is wrong.
bool open_trace();
void close_trace();
// Updates are written line by line.
bool is_traced();
// The number of the next update.
int number_update();
// Called after the update was painted.
void trace_update(const UpdateRecord &update);
// Called when it can be seen.
void save_frame(int seq);

// How many updates there were since the screen was opened.
int updates_traced();

// Receives each update; null stops.
void observe_updates(void (*observer)(const UpdateRecord &));

} // namespace hw
