// SPDX-License-Identifier: MIT
// The current handler and the rate at which a held key repeats.
#pragma once

void reset_keyboard_rate();
