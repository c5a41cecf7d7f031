// SPDX-License-Identifier: MIT
// One step of the loop: deliver, run timers, keep house, look at the device, rest.
#include "runtime/loop.h"

#include <algorithm>
#include <atomic>
#include <utility>

#include "ground/number.h"
#include "hw.h"
#include "hw_seam.h"
#include "runtime/delivery.h"
#include "runtime/input.h"
#include "runtime/orientation.h"
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
    int orientation = -1;      // as the sensor last said; -1 before the first reading
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
    if (ground::saturated_difference(plan.until, now) > shallow_sleep_ms) {
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
    const int64_t until_timer_ms =
        ground::saturated_difference(timers_first_due(), hw_boottime_ms());
    // A pause that ended a millisecond short of the timer would let it fire that much early.
    const bool timer_first = until_timer_ms <= idle_pause_us / 1000 + 1;
    hw_pause(timer_first ? std::max<int64_t>(until_timer_ms, 0) * 1000 : idle_pause_us);
}

// False when the device refuses, as it may.
bool go_to_sleep(const SleepPlan &plan, int64_t now) {
    const int64_t ms =
        std::clamp<int64_t>(ground::saturated_difference(plan.until, now), 0, longest_sleep_ms);
    if (!hw_sleep(static_cast<int>(ms), plan.deep)) return false;
    std::atomic_ref(kvstate.waketime) = hw_boottime_ms();
    extend_wake_time(wake_after_activity_ms);
    return true;
}

bool must_stay_awake(int64_t now) {
    return now < kvstate.sleeptime || !kvstate.sleepenable || hw_update_busy();
}

void check_orientation_sensor() {
    if (!kvstate.gsense) return;
    const int before = std::exchange(state.orientation, hw_read_gsensor());
    if (before >= 0 && before != state.orientation) queue_orientation_change(state.orientation, 0);
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
    hw::let_work();
    return false;
}

void take_device_event(const hw_event &event) {
    translate_event(event);
    note_activity();
}

enum class Queue { drained, left_over };

// Rests until something may have happened; true when a device event came. Events that were queued
// after delivery, by timers or other threads, end the rest before it begins.
bool rest(int64_t now, Queue queue, hw_event &event) {
    if (queue == Queue::drained && !queue_is_empty()) return false;
    if (queue == Queue::left_over || must_stay_awake(now) || !go_to_sleep(plan_sleep(now), now)) {
        idle_pause();
        return false;
    }
    return next_device_event(event);
}

// The flag and the state are settled before the handler hears of it: it may run a loop itself.
KELVANE_LOOP leave_loop() {
    state.leave = false;
    state.event_loop_state = KELVANE_RETURN;
    hide_current_handler();
    return KELVANE_RETURN;
}

// What ends this step after handlers have run: they may close the screen or run inner loops.
KELVANE_LOOP state_after_handlers() {
    if (state.event_loop_state != KELVANE_CONTINUE) return state.event_loop_state;
    return !kvstate.isopen || kvstate.exiting ? KELVANE_OUT_LOOP : KELVANE_CONTINUE;
}

KELVANE_LOOP start_step() {
    if (!kvstate.isopen) return KELVANE_OUT_LOOP;
    if (state.event_loop_state != KELVANE_CONTINUE) return state.event_loop_state;
    if (state.leave) return leave_loop();
    handle_pending_events();
    return state_after_handlers();
}

KELVANE_LOOP loop_step() {
    if (const KELVANE_LOOP end = start_step(); end != KELVANE_CONTINUE) return end;
    const Queue queue = queue_is_empty() ? Queue::drained : Queue::left_over;
    check_user_query();
    kv_process_timers();
    if (!kvstate.isopen || state.event_loop_state != KELVANE_CONTINUE)
        return state_after_handlers();
    const int64_t now = hw_boottime_ms();
    if (now - state.previous_step > long_step_ms) extend_wake_time(wake_after_activity_ms);
    state.previous_step = now;
    house_keeping();
    hw_event event;
    if (next_device_event(event) || rest(now, queue, event)) take_device_event(event);
    return KELVANE_CONTINUE;
}

KELVANE_LOOP quick_step() {
    if (const KELVANE_LOOP end = start_step(); end != KELVANE_CONTINUE) return end;
    hw_event event;
    if (next_device_event(event)) take_device_event(event);
    return KELVANE_CONTINUE;
}

// A closed screen has no loop to end: the next one opened starts afresh.
KELVANE_LOOP keep(KELVANE_LOOP result) {
    if (kvstate.isopen) state.event_loop_state = result;
    return result;
}

} // namespace

void reset_loop() {
    state = {};
}

void note_activity() {
    state.last_activity = hw_boottime_ms();
}

void hide_current_handler() {
    if (kvstate.exiting != EXIT_BY_SIGNAL && kvstate.hproc) kvstate.hproc(EVT_HIDE, 0, 0);
}

void LeaveKelvaneMain() {
    state.leave = true;
}

KELVANE_LOOP kv_process_event_loop() {
    return keep(loop_step());
}

KELVANE_LOOP kv_process_event_loop_quick() {
    return keep(quick_step());
}

KELVANE_LOOP ProcessEventLoop() {
    return kv_process_event_loop();
}

KELVANE_LOOP ProcessEventLoopQuick() {
    return kv_process_event_loop_quick();
}

void FlushEvents() {
    if (!kvstate.isopen) return;
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
    if (!kvstate.isopen || !hw_nextevent(&event)) return 0;
    take_device_event(event);
    return 1;
}
