// SPDX-License-Identifier: MIT
// The selectors of times and dates below titles of their own.
#pragma once

#include "kelvane/selectors.h"

namespace selectors {

// `title` is a key of the language, null the usual one. Otherwise as OpenTimeSelector().
int open_time(const char *title, const imoment &start, kv_momenthandler hproc, void *context);
int open_date(const char *title, const imoment &start, kv_momenthandler hproc, void *context);

} // namespace selectors
