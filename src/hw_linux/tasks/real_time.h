// SPDX-License-Identifier: MIT
// The time that processes share; the device's own clock may stand still or leap.
#pragma once

#include <cstdint>
#include <ctime>

namespace hw::tasks {

inline int64_t real_time_ms() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1'000'000;
}

} // namespace hw::tasks
