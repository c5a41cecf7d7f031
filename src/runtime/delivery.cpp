// SPDX-License-Identifier: MIT
// Calls handlers with what is in the queue, for a bounded time.
#include "runtime/delivery.h"

#include <utility>

#include "hw_seam.h"
#include "kelvane/updates.h"
#include "runtime/queue.h"
#include "runtime/tasks.h"

namespace {

constexpr int64_t delivery_budget_us = 50000;
constexpr int64_t event_cost_us = 10; // on an emulated clock
constexpr int evt_full_update_check = 95;

void *current_data;

void before_delivery(int type) {
    if (type == EVT_INIT) kvstate.initialized = 1;
    if (type == evt_full_update_check && !(task_current_flags() & TASK_UPDATES_ITSELF)) {
        WaitForUpdateComplete();
        FullUpdate();
    }
}

} // namespace

void deliver_event(const ievent &event) {
    // A handler may run a loop of its own, so the outer event's data comes back afterwards.
    void *outer = std::exchange(current_data, event.data);
    before_delivery(event.type);
    const bool callable = event.type != 0 && event.hproc;
    const int handled = callable ? event.hproc(event.type, event.par1, event.par2) : 0;
    if (kvstate.isopen) default_action(event, handled);
    current_data = outer;
}

void *GetCurrentEventExData() {
    return current_data;
}

namespace {

bool deliver_next() {
    ievent event;
    if (!hw::is_open() || !queue_take(event)) return false;
    hw::spend_time(event_cost_us);
    deliver_event(event);
    return true;
}

} // namespace

void deliver_queued_events() {
    for (int left = queue_size(); left > 0 && deliver_next();) --left;
}

void handle_pending_events() {
    const int64_t end = hw::boot_time_us() + delivery_budget_us;
    while (hw::boot_time_us() < end && deliver_next()) {
    }
}
