// SPDX-License-Identifier: MIT
// The runtime frees the slot of a finger with each event, so the mark is renewed.
#include "lists/capture.h"

#include "internal.h"
#include "kelvane/events.h"

namespace lists {
namespace {

int captured_by = 0;

} // namespace

void capture_finger(int view) {
    captured_by = view;
    if (kvstate.tsc) kvstate.tsc[0].captured = view;
}

bool keep_capture(int type, int, int) {
    if (type == EVT_POINTERDOWN) captured_by = 0; // it may be another one's
    if (kvstate.tsc) kvstate.tsc[0].captured = captured_by;
    if (type == EVT_POINTERUP) captured_by = 0;
    return false;
}

} // namespace lists
