// SPDX-License-Identifier: MIT
// A time at which the device stands still, for whoever runs the loop step by step.
#pragma once

#include <cstdint>

namespace hw {

inline constexpr int64_t no_horizon = INT64_MAX;

// Idle pauses and sleeps end at this time of the boot clock, in microseconds.
void set_horizon(int64_t us);
bool has_horizon();

} // namespace hw
