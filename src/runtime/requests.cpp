// SPDX-License-Identifier: MIT
// Requests to the system monitor, and the application's way to and from the foreground.
#include <unistd.h>

#include "ground/log.h"
#include "hw.h"
#include "internal.h"
#include "runtime/loop.h"
#include "runtime/screens.h"
#include "runtime/wake.h"

namespace {

constexpr int request_task_started = 1300;
constexpr int wake_after_foreground_ms = 3000;
constexpr int no_flags = 0;
constexpr int no_timeout = 0;

} // namespace

int kv_ipc_request(int cmd, int param, unsigned char *data, int insize, int outsize) {
    return hw_ipcrequest(cmd, param, data, insize, outsize, no_flags, no_timeout);
}

int kv_ipc_request_with_timeout(int cmd, int param, unsigned char *data, int insize, int outsize,
                                int timeout_ms) {
    return hw_ipcrequest(cmd, param, data, insize, outsize, no_flags, timeout_ms);
}

int kv_ipc_request_secure(int cmd, int param, unsigned char *data, int insize, int outsize) {
    return hw_ipcrequest_secure(cmd, param, data, insize, outsize);
}

void SignalTaskStarted() {
    kv_ipc_request(request_task_started, getpid(), nullptr, 0, 0);
}

void kv_foreground_event() {
    if (!kvstate.isopen) return;
    note_activity();
    extend_wake_time(wake_after_foreground_ms);
    restart_inactivity_timers();
    screens.refresh_panel();
    SetOrientation(hw_get_fb_orientation());
    tq_print_log2(LOG_INFO_LEVEL, "[pid:%d]kv_foreground_event kvstate.orientation =  %d\n",
                  static_cast<int>(getpid()), kvstate.orientation);
}

void kv_background_event() {
    clear_inactivity_timers();
}
