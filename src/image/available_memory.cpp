// SPDX-License-Identifier: MIT
// Asks the system for free memory, so that a huge picture is refused and does not exhaust it.
#include "image/available_memory.h"

#include <cstdio>

#include "image/stream.h"

namespace image {

int64_t available_memory_kb() {
    const Stream table(kv_fopen("/proc/meminfo", "r"));
    if (!table) return 1028;
    unsigned free_kb = 0, cached_kb = 0;
    char line[128];
    while (kv_fgets(line, sizeof line, table.get())) {
        std::sscanf(line, "MemFree: %u", &free_kb);
        if (std::sscanf(line, "Cached: %u", &cached_kb) == 1) break; // MemFree stands before it
    }
    return int64_t{free_kb} + cached_kb;
}

} // namespace image
