// SPDX-License-Identifier: MIT
// The table of limits.
#include "measures.h"

namespace report {
namespace {

template <auto Member>
int64_t total(const Summary &s) {
    return s.totals.*Member;
}

template <auto Member>
int64_t count(const Summary &s) {
    return static_cast<int64_t>((s.*Member).size());
}

constexpr Measure table[] = {
    {"--max-updates", "updates", total<&Totals::updates>},
    {"--min-updates", "updates", total<&Totals::updates>},
    {"--max-flashes", "flashes", total<&Totals::flashes>},
    {"--max-panel-ms", "ms on the panel", total<&Totals::panel_ms>},
    {"--max-wait-ms", "ms of waiting for another update",
     [](const Summary &s) { return s.longest_wait_ms; }},
    {"--no-wasted", "updates changed nothing", count<&Summary::wasted>},
    {"--no-oversized", "updates are much larger than what changed", count<&Summary::oversized>},
    {"--no-coarse", "updates bring greys through a mode of two levels", count<&Summary::coarse>},
    {"--no-waits", "updates waited for another one", count<&Summary::waited>},
};

} // namespace

std::span<const Measure> measures() {
    return table;
}

} // namespace report
