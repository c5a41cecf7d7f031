// SPDX-License-Identifier: MIT
// Plays one script on a device of its own and judges what comes of it.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "devices.h"
#include "options.h"
#include "scripts.h"

namespace test {

struct Result {
    std::string name;
    double seconds = 0;
    std::vector<std::string> faults; // none: passed
    bool is_updated = false;         // what is expected was changed
};

// Plays in place/NAME.
Result play(const Case &one, const Options &options, Devices &devices,
            const std::filesystem::path &place);

} // namespace test
