// SPDX-License-Identifier: MIT
// How long the device stays awake, and the two timers that end its work: key lock and power-off.
#pragma once

#include <cstdint>

// A setting of never, as kvstate.keylocktm and powerofftm have it.
inline constexpr int never_ms = 2147483647;
inline constexpr int wake_after_activity_ms = 1500;

// The device must not sleep for `ms` from now.
void extend_wake_time(int ms);
// Somebody is using the device: both inactivity timers start again.
void restart_inactivity_timers();
void clear_inactivity_timers();
// Warns about an empty battery, at most every ten minutes.
void check_power_low();
// The screen is being opened: no reminder has been given.
void reset_power_low_reminder();
// The first such warning comes no sooner than `ms` from now.
void delay_power_low_reminder(int ms);
