// SPDX-License-Identifier: MIT
// The headless device: no display server, and a clock that advances only when the program pauses.
#include <algorithm>
#include <cstdint>
#include <memory>
#include <new>

#include "hw_linux/device.h"

namespace hw {
namespace {

constexpr int64_t clock_start_us = 60'000'000; // the device was switched on a minute ago

std::unique_ptr<uint8_t[]> memory;
PixelBuffer buffer;
int64_t now_us = clock_start_us;

bool open(const WindowSpec &spec) {
    const int stride = spec.width * 4;
    memory.reset(new (std::nothrow) uint8_t[static_cast<size_t>(stride) * spec.height]);
    if (!memory) return false;
    buffer = {memory.get(), spec.width, spec.height, stride};
    std::fill_n(memory.get(), static_cast<size_t>(stride) * spec.height, uint8_t{255});
    now_us = clock_start_us;
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

void pause(int64_t us) {
    now_us += us;
}

bool sleep(int64_t us, bool) {
    now_us += us;
    return true;
}

} // namespace

const DeviceOps headless_device = {
    .name = "headless",
    .open = open,
    .close = close,
    .pixels = pixels,
    .present = nothing,
    .pump = nothing,
    .clock_us = clock_us,
    .pause = pause,
    .sleep = sleep,
    .spend = pause,
};

} // namespace hw
