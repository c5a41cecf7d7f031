// SPDX-License-Identifier: MIT
// Where messages go: warnings to standard error, information through the leveled logger.
#pragma once

#include "kelvane/api.h"

// Writes "[pid : program] (function)" and the message to standard error.
[[gnu::format(printf, 2, 3)]] void kv_warn(const char *function, const char *format, ...);

extern "C" {
// The leveled logger: 1 fatal, 2 error, 3 warning, 4 information, 5 debugging. Lines above the
// level in the environment variable KELVANE_LOG (3 when unset) are dropped; the rest goes to
// standard error.
[[gnu::format(printf, 2, 3)]] void tq_print_log2(int level, const char *format, ...);
}

inline constexpr int LOG_INFO_LEVEL = 4;
