// SPDX-License-Identifier: MIT
// Look-ups in "./system/config/device.cfg", which configuration reads.
#pragma once

extern "C" {
const char *cfg_read_string(const char *name, const char *fallback);
int cfg_read_int(const char *name, int fallback);
}
