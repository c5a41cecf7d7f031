// SPDX-License-Identifier: MIT
// The device description: settings of the device that never change while a process runs.
#pragma once

#include <forward_list>
#include <optional>
#include <string>

namespace config {

struct DeviceEntry {
    std::string name, value;
};

// The entries of a file's first 10,000 lines, the last one first; none when there is no such file,
// or it may not be read. Nothing when reading failed for a reason that may pass.
std::optional<std::forward_list<DeviceEntry>> load_device_description(const char *path);

// The value of the first entry of that name, in any case of letters; null when there is none.
const char *find_in_description(const std::forward_list<DeviceEntry> &entries, const char *name);

} // namespace config
