// SPDX-License-Identifier: MIT
// Any bytes as a device description.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

#include "config/device_description.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static const int fd = memfd_create("device.cfg", 0);
    static const std::string path = "/proc/self/fd/" + std::to_string(fd);
    if (ftruncate(fd, 0) != 0 || pwrite(fd, data, size, 0) != static_cast<ssize_t>(size))
        std::abort();
    const auto entries = config::load_device_description(path.c_str()).value();
    for (const auto &entry : entries) {
        // Every name is found, and nothing blank ends it.
        if (!config::find_in_description(entries, entry.name.c_str())) std::abort();
        if (!entry.name.empty() && static_cast<unsigned char>(entry.name.back()) <= ' ')
            std::abort();
    }
    return 0;
}
