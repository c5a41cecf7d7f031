// SPDX-License-Identifier: MIT
// What the runtime asks of the task layer, and what of other tasks reaches the application.
#pragma once

#include "kelvane/tasks.h"

// Flags given to InitKelvane, for the registration of the task.
void task_set_registration_flags(int flags);
// The flags this task was registered with, by itself or by whoever started it.
int task_registration_flags();
// Flags of this task now.
int task_current_flags();
// Makes this process a task, where there are tasks. Comes before the device is opened.
void task_join();
// Work that the task layer does before the first event, and at each step of the loop.
void task_run_startup();
void task_check_messages();
// The counter of partial updates after which the system asks for a full one.
void task_reset_update_counter();

// What arrives for the main handler. Nothing is lost: false while the queue has no room.
bool task_take_event(int type, int par1, int par2);
// The handler is called before this returns.
void task_take_event_at_once(int type, int par1, int par2);
// The task became the active one, or is no longer.
void task_came_to_foreground();
void task_went_to_background();
