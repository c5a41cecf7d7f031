// SPDX-License-Identifier: MIT
// KelvaneMain(): starts the handler and runs the loop.
#include "ground/log.h"
#include "internal.h"
#include "lifecycle/lifecycle.h"
#include "runtime/loop.h"
#include "runtime/tasks.h"
#include "runtime/wake.h"

namespace {

bool prepare(const char *caller, kv_handler h) {
    if (!open_screen(Ownership::process)) {
        kv_warn(caller, "OpenScreen() error\n");
        return false;
    }
    reset_loop();
    kvstate.sleeptime = 0;
    extend_wake_time(wake_after_activity_ms);
    kvstate.mainhproc = kvstate.hproc = h;
    kvstate.allowkeyup = 0;
    SendEvent(h, EVT_INIT, 0, 0);
    SendEvent(h, EVT_SHOW, 0, 0);
    task_run_startup();
    FlushEvents();
    return true;
}

} // namespace

void PrepareForLoop(kv_handler h) {
    prepare("PrepareForLoop", h);
}

void KelvaneMain(kv_handler h) {
    if (!prepare("KelvaneMain", h)) return;
    while (!kvstate.exiting) {
        const KELVANE_LOOP result = kv_process_event_loop();
        if (result == KELVANE_RETURN) {
            reset_loop();
            return;
        }
        if (result == KELVANE_OUT_LOOP) break;
    }
    ClearOnExit();
}
