// SPDX-License-Identifier: MIT
#include "image/available_memory.h"

#include <cstdio>

#include "image/stream.h"

namespace image {

int64_t available_memory_kb() {
    const Stream table(kv_fopen("/proc/meminfo", "r"));
    if (table == nullptr) return 1028;
    int64_t sum = 0;
    char line[128];
    while (kv_fgets(line, sizeof line, table.get()) != nullptr) {
        unsigned kb;
        if (std::sscanf(line, "MemFree: %u", &kb) == 1 || std::sscanf(line, "Cached: %u", &kb) == 1)
            sum += kb;
    }
    return sum;
}

} // namespace image
