// SPDX-License-Identifier: MIT
#include "file/hooks.h"

#include <ctime>
#include <unistd.h>

FileHooks file_hooks;

namespace file_defaults {

void system_request(int) {}

const char *translate(const char *key) {
    return key;
}

int storage_ready() {
    return 1;
}

long long clock_ms() {
    timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return now.tv_sec * 1000LL + now.tv_nsec / 1000000;
}

long long wall_seconds() {
    return std::time(nullptr);
}

void pause(long long us) {
    usleep(static_cast<useconds_t>(us));
}

} // namespace file_defaults
