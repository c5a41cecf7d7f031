// SPDX-License-Identifier: MIT
#include "runtime/loop.h"

#include <algorithm>

#include "hw.h"
#include "hw_linux/device.h"
#include "runtime/delivery.h"
#include "runtime/input.h"
#include "runtime/queue.h"
#include "runtime/screens.h"
#include "runtime/tasks.h"
#include "runtime/timers.h"
#include "runtime/wake.h"

namespace {

constexpr int64_t idle_pause_us = 20000;
constexpr int64_t long_step_ms = 1500;
constexpr int64_t shallow_sleep_ms = 60000;
constexpr int64_t recent_activity_ms = 300000;
constexpr int64_t longest_sleep_ms = 7200000;

struct State {
    KELVANE_LOOP event_loop_state = KELVANE_CONTINUE;
    bool leave = false;
    int64_t previous_step = 0; // ms of the boot clock
    int64_t last_activity = 0; // the last device event
};
State state;

struct SleepPlan {
    int64_t until; // ms of the boot clock
    bool deep;
};

bool platform_sleeps_only_locked(int platform) {
    return platform == 9 || platform == 11 || platform == 12 || platform == 14 || platform == 4 ||
           platform == 16;
}

bool platform_sleeps_whenever_locked(int platform) {
    return platform == 14 || platform == 4 || platform == 16;
}

SleepPlan plan_sleep(int64_t now) {
    const bool locked = hw_get_keylock();
    const int platform = device_platform();
    SleepPlan plan{kv_get_first_timer(), false};
    if (plan.until - now > shallow_sleep_ms) {
        if (now - state.last_activity < recent_activity_ms && !locked) {
            plan.until = std::min(plan.until, state.last_activity + recent_activity_ms);
            plan.until = std::max(plan.until, now + shallow_sleep_ms);
        } else {
            plan.deep = locked || !platform_sleeps_only_locked(platform);
            plan.until = std::min(plan.until, now + longest_sleep_ms);
        }
    }
    if (locked && platform_sleeps_whenever_locked(platform)) plan.deep = true;
    return plan;
}

// Input ends the pause early, and so does a timer that comes due.
void idle_pause() {
    const int64_t until_timer_ms = timers_first_due() - hw_boottime_ms();
    const bool timer_first = until_timer_ms < idle_pause_us / 1000;
    hw_pause(timer_first ? std::max<int64_t>(until_timer_ms, 0) * 1000 : idle_pause_us);
}

bool go_to_sleep(const SleepPlan &plan, int64_t now) {
    const int64_t ms = std::clamp<int64_t>(plan.until - now, 0, longest_sleep_ms);
    if (!hw_sleep(static_cast<int>(ms), plan.deep)) return false;
    kvstate.waketime = hw_boottime_ms();
    extend_wake_time(wake_after_activity_ms);
    return true;
}

bool must_stay_awake(int64_t now) {
    return !queue_is_empty() || now < kvstate.sleeptime || !kvstate.sleepenable || hw_update_busy();
}

void check_orientation_sensor() {
    const int turned = hw_read_gsensor();
    if (!kvstate.gsense || turned == hw_last_orientation()) return;
    kv_enqueue(kvstate.hproc, EVT_ORIENTATION, turned, 0);
}

void check_user_query() {
    if (!MultitaskingSupported()) kvstate.uiquery = hw_uiquery() != 0;
}

void house_keeping() {
    check_orientation_sensor();
    check_power_low();
    screens.refresh_panel();
    task_check_messages();
}

bool next_device_event(hw_event &event) {
    if (kvstate.hproc) return hw_nextevent(&event);
    // Without a handler input waits in the device, which still has to be let work.
    if (hw::device()) hw::device()->pump();
    return false;
}

void take_device_event(const hw_event &event) {
    kv_process_event(event);
    state.last_activity = hw_boottime_ms();
}

// Rests until something may have happened; true when a device event came.
bool rest(int64_t now, hw_event &event) {
    const SleepPlan plan = plan_sleep(now);
    if (must_stay_awake(now) || !go_to_sleep(plan, now)) {
        idle_pause();
        return false;
    }
    return next_device_event(event);
}

KELVANE_LOOP end_or(KELVANE_LOOP otherwise) {
    if (!kvstate.isopen || kvstate.exiting) return KELVANE_OUT_LOOP;
    return otherwise;
}

KELVANE_LOOP leave_loop() {
    hide_current_handler();
    return KELVANE_RETURN;
}

KELVANE_LOOP loop_step() {
    if (state.event_loop_state != KELVANE_CONTINUE) return state.event_loop_state;
    if (state.leave) return leave_loop();
    handle_pending_events();
    if (end_or(KELVANE_CONTINUE) == KELVANE_OUT_LOOP) return KELVANE_OUT_LOOP;
    check_user_query();
    kv_process_timers();
    if (!kvstate.isopen) return KELVANE_OUT_LOOP;
    const int64_t now = hw_boottime_ms();
    if (now - state.previous_step > long_step_ms) extend_wake_time(wake_after_activity_ms);
    state.previous_step = now;
    house_keeping();
    hw_event event;
    if (next_device_event(event) || rest(now, event)) take_device_event(event);
    return KELVANE_CONTINUE;
}

KELVANE_LOOP quick_step() {
    if (state.event_loop_state != KELVANE_CONTINUE) return state.event_loop_state;
    if (state.leave) return leave_loop();
    handle_pending_events();
    if (end_or(KELVANE_CONTINUE) == KELVANE_OUT_LOOP) return KELVANE_OUT_LOOP;
    hw_event event;
    if (next_device_event(event)) take_device_event(event);
    return KELVANE_CONTINUE;
}

} // namespace

void loop_start() {
    state = {};
}

void hide_current_handler() {
    if (kvstate.exiting != EXIT_BY_SIGNAL && kvstate.hproc) kvstate.hproc(EVT_HIDE, 0, 0);
}

void LeaveKelvaneMain() {
    state.leave = true;
}

KELVANE_LOOP kv_process_event_loop() {
    return state.event_loop_state = loop_step();
}

KELVANE_LOOP kv_process_event_loop_quick() {
    return state.event_loop_state = quick_step();
}

KELVANE_LOOP ProcessEventLoop() {
    return kv_process_event_loop();
}

KELVANE_LOOP ProcessEventLoopQuick() {
    return kv_process_event_loop_quick();
}

void FlushEvents() {
    if (!hw::device()) return;
    if (!MultitaskingSupported()) {
        hw_uiclear();
        kvstate.uiquery = 0;
    }
    hw_event event;
    while (hw_nextevent(&event)) {
    }
}

int IsAnyEvents() {
    if (queue_has_plain_run()) return 1;
    hw_event event;
    if (!hw::device() || !hw_nextevent(&event)) return 0;
    take_device_event(event);
    return 1;
}
