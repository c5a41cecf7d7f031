// SPDX-License-Identifier: MIT
// One task among others, or alone on a device that runs one.
#include "runtime/tasks.h"

#include <cerrno>

#include "hw.h"
#include "internal.h"
#include "runtime/delivery.h"
#include "runtime/queue.h"

namespace {

constexpr int system_task = 0;
constexpr int evt_full_update_check = 95;
int registration_flags;
int partial_updates;

} // namespace

int MultitaskingSupported() {
    return hw_task_supported();
}

int SendGlobalRequest(int code) {
    return hw_task_sendrequest(system_task, code, nullptr, 0, 0, 0, 1);
}

void task_set_registration_flags(int flags) {
    registration_flags = flags;
}

int task_registration_flags() {
    return task_current_flags();
}

int task_current_flags() {
    if (!MultitaskingSupported()) return registration_flags;
    const itaskinfo *info = hw_task_info(hw_task_current());
    return info ? static_cast<int>(info->flags) : registration_flags;
}

void task_join() {
    kvstate.taskid = -1;
    if (!MultitaskingSupported()) return;
    kvstate.taskid = hw_task_current();
    if (kvstate.taskid >= 0) return;
    const char *name = program_invocation_short_name;
    kvstate.taskid = hw_task_register(name, name, nullptr, registration_flags);
}

void task_run_startup() {
    partial_updates = 0;
    if (MultitaskingSupported()) hw_task_initmqueue();
}

void task_check_messages() {
    if (MultitaskingSupported()) hw_task_checkmessages();
}

void task_reset_update_counter() {
    partial_updates = 0;
}

bool task_take_event(int type, int par1, int par2) {
    if (queue_is_full()) return false;
    SendEvent(kvstate.mainhproc, type, par1, par2);
    return true;
}

void task_take_event_at_once(int type, int par1, int par2) {
    deliver_queued_events(); // what was sent before it
    deliver_event({kvstate.mainhproc, static_cast<uint16_t>(type), 0, static_cast<uint16_t>(par1),
                   static_cast<uint16_t>(par2), nullptr});
}

void task_came_to_foreground() {
    kv_foreground_event();
    SendEvent(kvstate.mainhproc, EVT_FOREGROUND, 0, 0);
    SendEvent(kvstate.mainhproc, evt_full_update_check, 0, 0);
}

void task_went_to_background() {
    kv_background_event();
    SendEvent(kvstate.mainhproc, EVT_BACKGROUND, 0, 0);
}
