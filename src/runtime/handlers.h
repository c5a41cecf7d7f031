// SPDX-License-Identifier: MIT
// The current handler and the rate at which a held key repeats.
#pragma once

struct KeyRate {
    int first_ms, next_ms; // to the first repeat, and from one to the next
};
KeyRate key_rate();
void reset_keyboard_rate();
