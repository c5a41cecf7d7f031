// SPDX-License-Identifier: MIT
// Writes times of twelve or twenty-four hours.
#include "lang/clock.h"

#include <array>
#include <cstdio>

#include "internal.h"

namespace lang {
namespace {

constexpr int twelve_hours = 1; // of kvstate.timeformat

} // namespace

std::string time_text(int hour, int minute) {
    std::array<char, 32> text{};
    if (kvstate.timeformat != twelve_hours)
        std::snprintf(text.data(), text.size(), "%02d:%02d", hour, minute);
    else
        std::snprintf(text.data(), text.size(), "%d:%02d %s", (hour + 11) % 12 + 1, minute,
                      hour < 12 ? "AM" : "PM");
    return text.data();
}

} // namespace lang
