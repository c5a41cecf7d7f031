// SPDX-License-Identifier: MIT
// Inner parts of the screen updates, for the runtime and for tests.
#pragma once

#include <cstdint>

#include "internal.h"

struct ibitmap_s;

// One scheduled area.
struct UpdateInfo {
    int x, y, w, h;
    int bw;        // update mode
    int64_t utime; // ms when due
    int await;     // 1 while scheduled
    int merged;
};

// Values for hw_switch_dynamic.
enum Dynamic : int { DYNAMIC_OFF = 0, DYNAMIC_PARTIAL = 1, DYNAMIC_FAST = 2 };

// Widens an area to multiples of 4, or to the whole screen when a full update is pending; `mode`,
// when given, then becomes 0. Clears the pending full update.
void check_update_area(int *x, int *y, int *w, int *h, int *mode);
// Clips and shows an area together with the scheduled areas it touches.
// Returns the device's answer, 0 for an area outside the screen.
int do_partial_update(int x, int y, int w, int h, int mode, Dynamic dynamic);
// Shows an area `delay_ms` from now unless another update covers it first.
void schedule_area(int x, int y, int w, int h, int mode, int delay_ms);
// Forgets all state of updates; the screen is being opened or closed.
void updates_reset();
