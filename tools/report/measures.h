// SPDX-License-Identifier: MIT
// What a session may cost: options that make a check of the report.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "summary.h"

namespace report {

struct Measure {
    std::string_view option;
    const char *what;
    int64_t (*value)(const Summary &summary);

    // A number follows the option; otherwise there is to be none of it.
    bool takes_number() const { return option.starts_with("--max"); }
};

std::span<const Measure> measures();

struct Limit {
    const Measure *measure;
    int64_t most;
};

} // namespace report
