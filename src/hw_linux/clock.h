// SPDX-License-Identifier: MIT
// What scripts and tests set of the clocks: the time of day, and a time at which the device stands
// still, for whoever runs the loop step by step.
#pragma once

#include <cstdint>

namespace hw {

// It is this time now, in seconds of the wall clock, and goes on with the boot clock.
void set_wall_clock(int64_t s);

inline constexpr int64_t no_horizon = INT64_MAX;

// Idle pauses and sleeps end at this time of the boot clock, in microseconds.
void set_horizon(int64_t us);
bool has_horizon();

} // namespace hw
