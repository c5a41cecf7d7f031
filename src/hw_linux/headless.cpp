// SPDX-License-Identifier: MIT
// The headless device: no display server, and a clock that advances only when the program pauses.
#include <algorithm>
#include <atomic>
#include <cstdint>
#include <ctime>
#include <memory>
#include <new>

#include <poll.h>

#include "hw_linux/clock.h"
#include "hw_linux/control.h"
#include "hw_linux/device.h"
#include "hw_linux/player.h"
#include "hw_linux/tasks/session.h"

namespace hw {
namespace {

constexpr int64_t clock_start_us = 60'000'000;  // the device was switched on a minute ago
constexpr int64_t clock_end_us = INT64_MAX / 4; // and no sum of times leaves the range
constexpr int64_t nap_us = 50'000;              // a sleep that a signal just missed lasts no longer

std::unique_ptr<uint8_t[]> memory;
PixelBuffer buffer;
std::atomic<int64_t> now_us = clock_start_us; // any thread may ask for the time

bool open(const WindowSpec &spec) {
    const int stride = spec.width * 4;
    memory.reset(new (std::nothrow) uint8_t[static_cast<size_t>(stride) * spec.height]);
    if (!memory) return false;
    buffer = {memory.get(), spec.width, spec.height, stride};
    now_us = (now_us + 999) / 1000 * 1000; // every start sees the same fractions
    std::fill_n(memory.get(), static_cast<size_t>(stride) * spec.height, uint8_t{255});
    return true;
}

void close() {
    buffer = {};
    memory.reset();
}

PixelBuffer pixels() {
    return buffer;
}

void nothing() {}

int64_t clock_us() {
    return now_us;
}

// With nobody to drive the clock, or with other tasks, it keeps the pace of the wall clock, in naps
// that a signal ends.
bool keeps_pace() {
    return tasks::is_supported() || (!is_playing() && !has_horizon() && !is_controlled());
}

void pass(int64_t us) {
    now_us += std::min<int64_t>(us, clock_end_us - now_us);
}

int64_t real_time_us() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return int64_t{now.tv_sec} * 1'000'000 + now.tv_nsec / 1000;
}

// What a signal left of a nap has not passed.
int64_t nap(int64_t us) {
    timespec time{static_cast<time_t>(us / 1'000'000), static_cast<long>(us % 1'000'000 * 1000)};
    if (nanosleep(&time, &time) == 0) return us;
    return us - (time.tv_sec * 1'000'000 + time.tv_nsec / 1000);
}

void pause(int64_t us) {
    pass(keeps_pace() ? nap(us) : us);
}

// What another task sends ends it.
void idle(int64_t us) {
    if (tasks::wake_descriptor() < 0) return pause(us);
    const timespec time{static_cast<time_t>(us / 1'000'000),
                        static_cast<long>(us % 1'000'000 * 1000)};
    pollfd news = {tasks::wake_descriptor(), POLLIN, 0};
    const int64_t before = real_time_us();
    ppoll(&news, 1, &time, nullptr);
    pass(std::clamp<int64_t>(real_time_us() - before, 0, us));
}

bool sleep(int64_t us, bool) {
    idle(keeps_pace() ? std::min(us, nap_us) : us);
    return true;
}

} // namespace

const DeviceOps headless_device = {
    .name = "headless",
    .is_watched = false,
    .open = open,
    .close = close,
    .pixels = pixels,
    .present = nothing,
    .pump = nothing,
    .clock_us = clock_us,
    .pause = pause,
    .idle = idle,
    .sleep = sleep,
    .spend = pass,
    .set_visible = [](bool) {},
};

} // namespace hw
