// SPDX-License-Identifier: MIT
// The timer table: slots in kvstate that are reused but never removed.
#pragma once

#include <cstdint>

void timers_open();
void timers_close();
// When the first timer of either kind is due, in ms of the boot clock; INT64_MAX when none is.
int64_t timers_first_due();
