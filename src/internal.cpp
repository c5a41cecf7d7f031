// SPDX-License-Identifier: MIT
// The runtime record, below everyone who reads it.
#include "internal.h"

kv_state kvstate;
