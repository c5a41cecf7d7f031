// SPDX-License-Identifier: MIT
// Clocks and pauses.
#include "hw_linux/clock.h"

#include <algorithm>
#include <cstdint>
#include <ctime>

#include "hw.h"
#include "hw_linux/control.h"
#include "hw_linux/device.h"
#include "hw_linux/input.h"
#include "hw_linux/player.h"
#include "hw_linux/recorder.h"
#include "hw_linux/services/state.h"
#include "hw_linux/tasks/session.h"

namespace hw {
namespace {

int64_t horizon_us = no_horizon;

// How long the application may idle: until the next action of a script or a controller, or the
// horizon.
int64_t idle_time(int64_t us) {
    recorder_idle();
    const int64_t until_action = time_to_control(time_to_action(us));
    if (!has_horizon()) return until_action;
    const int64_t until_horizon = std::max<int64_t>(horizon_us - boot_time_us(), 0);
    return std::min(until_action, until_horizon);
}

void run_what_is_due() {
    run_due_action();
    if (device()) run_due_control();
}

} // namespace

int64_t boot_time_us() {
    if (device()) return device()->clock_us();
    timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return int64_t{now.tv_sec} * 1000000 + now.tv_nsec / 1000;
}

void pass_time(int64_t us) {
    if (device()) device()->pause(us);
}

void spend_time(int64_t us) {
    if (device()) device()->spend(us);
}

void set_wall_clock(int64_t s) {
    services().clock_ahead_us = s * 1000000 - boot_time_us();
    services().clock_is_set = true;
}

void set_horizon(int64_t us) {
    horizon_us = us;
}

bool has_horizon() {
    return horizon_us != no_horizon;
}

} // namespace hw

using namespace hw;

void hw_gettime(timeval *tv) {
    if (!tv) return;
    if (!services().clock_is_set) {
        gettimeofday(tv, nullptr);
        return;
    }
    const int64_t now_us = boot_time_us() + services().clock_ahead_us;
    *tv = {now_us / 1000000, now_us % 1000000};
}

long long hw_boottime() {
    return boot_time_us() / 1000000;
}

long long hw_boottime_ms() {
    return boot_time_us() / 1000;
}

long long hw_timeinms() {
    return hw_boottime_ms();
}

void hw_pause(long long us) {
    if (!device() || us <= 0 || tasks::has_arrivals()) return;
    const int64_t time = idle_time(us);
    if (time > 0) return device()->idle(time);
    run_what_is_due();
}

int hw_sleep(int ms, int deep) {
    if (!device() || a_key_is_held() || tasks::has_arrivals()) return 0;
    const int64_t time = idle_time(int64_t{std::max(ms, 0)} * 1000);
    if (!device()->sleep(time, deep != 0)) return 0;
    if (time == 0) run_what_is_due();
    return 1;
}
