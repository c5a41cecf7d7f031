// SPDX-License-Identifier: MIT
// The task layer of a device that runs one task.
#include "runtime/tasks.h"

#include "hw.h"

namespace {

constexpr int system_task = 0;
int registration_flags;
int partial_updates;

} // namespace

int MultitaskingSupported() {
    return 0;
}

int SendGlobalRequest(int code) {
    return hw_task_sendrequest(system_task, code, nullptr, 0, 0, 0, 1);
}

void task_set_registration_flags(int flags) {
    registration_flags = flags;
}

int task_registration_flags() {
    return registration_flags;
}

int task_current_flags() {
    return registration_flags;
}

void task_run_startup() {
    partial_updates = 0;
}

void task_check_messages() {
    if (MultitaskingSupported()) hw_task_checkmessages();
}

void task_reset_update_counter() {
    partial_updates = 0;
}
