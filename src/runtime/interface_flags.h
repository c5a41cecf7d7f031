// SPDX-License-Identifier: MIT
// What is open above the application, as the bits UI_* of the runtime record.
#pragma once

#include "internal.h"

// True when one of these bits is set.
bool has_interface_flag(int flags);
// Sets bits; answers those that were not set before.
int set_interface_flags(int flags);
void clear_interface_flags(int flags);
