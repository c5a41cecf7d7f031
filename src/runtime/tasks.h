// SPDX-License-Identifier: MIT
// What the runtime asks of the task layer. One task runs on this device, in the foreground.
#pragma once

extern "C" {
// Whether several applications can run side by side: never on the desktop.
int MultitaskingSupported();
// Sends a request to the system on behalf of this task. Returns the system's answer.
int SendGlobalRequest(int code);
}

// Flags given to InitKelvane, for the registration of the task.
void task_set_registration_flags(int flags);
int task_registration_flags();
// Flags of the task in the foreground.
int task_current_flags();
// Work that the task layer does before the first event, and at each step of the loop.
void task_run_startup();
void task_check_messages();
// The counter of partial updates after which the system asks for a full one.
void task_reset_update_counter();
