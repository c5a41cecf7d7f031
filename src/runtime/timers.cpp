// SPDX-License-Identifier: MIT
// Sets, clears and runs timers. A callback may do any of it.
#include "runtime/timers.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <span>

#include "hw.h"
#include "internal.h"

namespace {

constexpr int initial_slots = 16;
constexpr int growth_slots = 8;
constexpr int64_t far_future_ms = 999999999;
constexpr int64_t due_slack_ms = 1;
constexpr int64_t never = std::numeric_limits<int64_t>::max();

std::span<itimer> slots() {
    return {kvstate.timers, static_cast<size_t>(kvstate.ntimers)};
}

bool grow_table(int added) {
    void *grown = std::realloc(kvstate.timers, sizeof(itimer) * (kvstate.ntimers + added));
    if (!grown) return false;
    kvstate.timers = static_cast<itimer *>(grown);
    std::fill_n(kvstate.timers + kvstate.ntimers, added, itimer{});
    kvstate.ntimers += added;
    return true;
}

itimer *find_timer(kv_timerproc proc, void *context) {
    for (itimer &timer : slots())
        if (timer.tp == proc && timer.context == context) return &timer;
    return nullptr;
}

itimer *find_free_slot() {
    for (itimer &timer : slots())
        if (!timer.tp) return &timer;
    const int first_new = kvstate.ntimers;
    return grow_table(growth_slots) ? kvstate.timers + first_new : nullptr;
}

// A time that was given when the clock stood at `before`, now that it stands at `now`; the nearest
// time there is when that one is out of range.
int64_t moved(int64_t time, int64_t before, int64_t now) {
    using Wide = __int128;
    const Wide there = Wide{time} - before + now;
    return static_cast<int64_t>(std::clamp<Wide>(there, INT64_MIN, INT64_MAX));
}

void free_slot(itimer &timer) {
    timer.tp = nullptr;
    timer.extime = 0;
}

} // namespace

void timers_open() {
    timers_close();
    grow_table(initial_slots);
}

void timers_close() {
    std::free(kvstate.timers);
    kvstate.timers = nullptr;
    kvstate.ntimers = 0;
}

int64_t timers_first_due() {
    int64_t first = never;
    for (const itimer &timer : slots())
        if (timer.tp) first = std::min<int64_t>(first, timer.extime);
    return first;
}

void kv_settimer(const char *name, kv_timerproc proc, int ms, int weak, void *context) {
    if (!proc || !kvstate.timers) return;
    itimer *timer = find_timer(proc, context);
    if (!timer) timer = find_free_slot();
    if (!timer) return;
    const int64_t now = hw_boottime_ms();
    *timer = itimer{};
    std::strncpy(timer->name, name ? name : "", sizeof timer->name - 1);
    timer->tp = proc;
    timer->weak = weak;
    timer->extime = now + ms;
    timer->context = context;
    timer->lastchecktime = now;
}

void SetHardTimer(const char *name, kv_timerproc proc, int ms) {
    kv_settimer(name, proc, ms, 0, nullptr);
}

void SetHardTimerEx(const char *name, kv_timerproc proc, void *context, int ms) {
    kv_settimer(name, proc, ms, 0, context);
}

void SetWeakTimer(const char *name, kv_timerproc proc, int ms) {
    kv_settimer(name, proc, ms, 1, nullptr);
}

void SetWeakTimerEx(const char *name, kv_timerproc proc, void *context, int ms) {
    kv_settimer(name, proc, ms, 1, context);
}

void kv_cleartimer(kv_timerproc proc, void *context) {
    if (!proc) return;
    if (itimer *timer = find_timer(proc, context)) free_slot(*timer);
}

void ClearTimer(kv_timerproc proc) {
    kv_cleartimer(proc, nullptr);
}

void ClearTimerEx(kv_timerproc proc, void *context) {
    kv_cleartimer(proc, context);
}

void ClearTimerByName(const char *name) {
    if (!name) return;
    for (itimer &timer : slots()) {
        if (std::strcmp(timer.name, name) == 0) {
            free_slot(timer);
            return;
        }
    }
}

long long kv_querytimer(kv_timerproc proc, void *context) {
    const itimer *timer = proc ? find_timer(proc, context) : nullptr;
    return timer ? timer->extime : 0;
}

long long QueryTimer(kv_timerproc proc) {
    return kv_querytimer(proc, nullptr);
}

long long QueryTimerEx(kv_timerproc proc, void *context) {
    return kv_querytimer(proc, context);
}

void kv_process_timers() {
    const int64_t now = hw_boottime_ms();
    // A callback may grow the table, move it, or close the screen: nothing is kept across calls.
    for (int i = 0; i < kvstate.ntimers; i++) {
        itimer &timer = kvstate.timers[i];
        if (!timer.tp || timer.extime > now + due_slack_ms) continue;
        const kv_timerproc proc = timer.tp;
        void *context = timer.context;
        free_slot(timer);
        proc(context);
    }
}

long long kv_get_first_timer() {
    int64_t first = never;
    for (const itimer &timer : slots())
        if (timer.tp && !timer.weak && timer.extime != 0)
            first = std::min<int64_t>(first, timer.extime);
    return first == never ? hw_boottime_ms() + far_future_ms : first;
}

void kv_validate_timer_state(itimer *timer, long long now) {
    if (!timer) return;
    if (timer->lastchecktime > now) timer->extime = moved(timer->extime, timer->lastchecktime, now);
    timer->lastchecktime = now;
}
