// SPDX-License-Identifier: MIT
// Clocks and pauses.
#include <algorithm>
#include <cstdint>
#include <ctime>

#include "hw.h"
#include "hw_linux/device.h"

namespace {

int64_t boot_clock_us() {
    if (hw::device()) return hw::device()->clock_us();
    timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return int64_t{now.tv_sec} * 1000000 + now.tv_nsec / 1000;
}

} // namespace

extern "C" {

void hw_gettime(timeval *tv) {
    if (tv) gettimeofday(tv, nullptr);
}

long long hw_boottime() {
    return boot_clock_us() / 1000000;
}

long long hw_boottime_ms() {
    return boot_clock_us() / 1000;
}

long long hw_timeinms() {
    return hw_boottime_ms();
}

void hw_pause(long long us) {
    if (hw::device() && us > 0) hw::device()->pause(us);
}

int hw_sleep(int ms, int deep) {
    if (!hw::device()) return 0;
    return hw::device()->sleep(int64_t{std::max(ms, 0)} * 1000, deep != 0);
}

} // extern "C"
