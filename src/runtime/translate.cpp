// SPDX-License-Identifier: MIT
// Sorts raw events by kind.
#include "hw.h"
#include "hw_seam.h"
#include "internal.h"
#include "runtime/input.h"
#include "runtime/interface_flags.h"
#include "runtime/orientation.h"
#include "runtime/wake.h"

void translate_event(const hw_event_s &event) {
    restart_inactivity_timers();
    extend_wake_time(wake_after_activity_ms);
    const auto &common = event.data.common;
    switch (event.type) {
    case EVT_KEYPRESS:
    case EVT_KEYRELEASE:
        key_input(event.type, common.par1);
        break;
    case EVT_POINTERUP:
    case EVT_POINTERDOWN:
    case EVT_POINTERMOVE:
        pointer_event(event);
        break;
    case EVT_POINTERLONG:
    case EVT_POINTERHOLD:
        pointer_hold_event(event);
        break;
    case EVT_MTSYNC:
        touch_sync(common.par2);
        break;
    case EVT_ORIENTATION:
        queue_orientation_change(common.par1, common.par2);
        break;
    case hw::typed_character:
        if (has_interface_flag(UI_KEYBOARD_OPEN))
            kv_enqueue(kvstate.hproc, event.type, common.par1, 0);
        break;
    case 40:
    case 41:
    case 42:
    case 210:
        kv_enqueue(kvstate.hproc, event.type, common.par1, common.par2);
        break;
    default:
        break;
    }
}
