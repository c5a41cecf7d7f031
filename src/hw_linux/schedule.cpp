// SPDX-License-Identifier: MIT
// Keeps the area and the end of the updates that run or wait.
#include "hw_linux/schedule.h"

#include <algorithm>

#include "hw_linux/area.h"

namespace hw {
namespace {

constexpr auto ends_first = [](const auto &a, const auto &b) { return a.end_us < b.end_us; };

} // namespace

int64_t Schedule::add(const irect &area, int64_t now_us, int64_t duration_us) {
    const auto place = std::min_element(places_.begin(), places_.end(), ends_first);
    int64_t start_us = std::max(now_us, place->end_us);
    for (const Place &other : places_)
        if (overlap(other.area, area)) start_us = std::max(start_us, other.end_us);
    *place = {area, start_us + duration_us};
    return start_us;
}

int64_t Schedule::free_us() const {
    return std::min_element(places_.begin(), places_.end(), ends_first)->end_us;
}

int64_t Schedule::idle_us() const {
    return std::max_element(places_.begin(), places_.end(), ends_first)->end_us;
}

} // namespace hw
