// SPDX-License-Identifier: MIT
// What a session may cost: options that make a check of the report.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "summary.h"

namespace report {

enum class Bound { most, least };

struct Measure {
    std::string_view option;
    const char *what;
    int64_t (*value)(const Summary &summary);

    Bound bound() const { return option.starts_with("--min") ? Bound::least : Bound::most; }
    // A number follows the option; otherwise there is to be none of it.
    bool takes_number() const { return !option.starts_with("--no"); }
};

std::span<const Measure> measures();

struct Limit {
    const Measure *measure;
    int64_t number;

    bool holds(int64_t value) const {
        return measure->bound() == Bound::least ? value >= number : value <= number;
    }
};

} // namespace report
