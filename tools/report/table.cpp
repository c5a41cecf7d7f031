// SPDX-License-Identifier: MIT
// The report for people.
#include "print.h"

#include <algorithm>
#include <cinttypes>
#include <cstdarg>
#include <cstdio>

namespace report {
namespace {

constexpr size_t most_listed = 10;

void add_place(std::string &out, const Update &u) {
    add(out, "  %" PRId64 " at %" PRId64 " ms, %s %" PRId64 ",%" PRId64 " %" PRId64 "x%" PRId64,
        u.seq, u.time_ms, caller(u.call).c_str(), u.area.x, u.area.y, u.area.w, u.area.h);
}

void add_wasted(std::string &, const Update &) {}

void add_change(std::string &out, const Update &u) {
    add(out, ": changed %" PRId64 ",%" PRId64 " %" PRId64 "x%" PRId64, u.changed.x, u.changed.y,
        u.changed.w, u.changed.h);
}

void add_greys(std::string &out, const Update &u) {
    add(out, ": %" PRId64 " greys in mode %d", u.greys, u.mode);
}

void add_wait(std::string &out, const Update &u) {
    add(out, ": %" PRId64 " ms", u.wait_ms);
}

void add_list(std::string &out, const char *title, const std::vector<Update> &updates,
              void (*add_reason)(std::string &, const Update &)) {
    if (updates.empty()) return;
    add(out, "%s: %zu\n", title, updates.size());
    for (size_t i = 0; i < std::min(updates.size(), most_listed); ++i) {
        add_place(out, updates[i]);
        add_reason(out, updates[i]);
        out += '\n';
    }
    if (updates.size() > most_listed) add(out, "  and %zu more\n", updates.size() - most_listed);
}

void add_row(std::string &out, const std::string &call, const std::string &mode, const Totals &t) {
    add(out, "  %-20s %6s %8" PRId64 " %8" PRId64 " %12" PRId64 " %10" PRId64 "\n", call.c_str(),
        mode.c_str(), t.updates, t.flashes, t.pixels, t.panel_ms);
}

} // namespace

void add(std::string &out, const char *format, ...) {
    char text[1024]; // more than the longest title of an update
    va_list args;
    va_start(args, format);
    std::vsnprintf(text, sizeof text, format, args);
    va_end(args);
    out += text;
}

std::string caller(const std::string &call) {
    return call.empty() ? "the device" : call;
}

std::string as_table(const Summary &s) {
    std::string out;
    out.append(s.name).append("\n");
    add(out, "  %-20s %6s %8s %8s %12s %10s\n", "call", "mode", "updates", "flashes", "pixels",
        "panel ms");
    for (const Summary::Row &row : s.rows)
        add_row(out, caller(row.call), std::to_string(row.mode), row.totals);
    add_row(out, "all", "", s.totals);
    add_list(out, "changed nothing", s.wasted, add_wasted);
    add_list(out, "much larger than what changed", s.oversized, add_change);
    add_list(out, "greys through a mode of two levels", s.coarse, add_greys);
    add_list(out, "waited for another update", s.waited, add_wait);
    const Totals &worst = s.worst.totals;
    if (worst.updates > 0)
        add(out,
            "worst second: from %" PRId64 " ms, %" PRId64 " updates, %" PRId64 " flashes, %" PRId64
            " ms on the panel\n",
            s.worst.from_ms, worst.updates, worst.flashes, worst.panel_ms);
    return out;
}

} // namespace report
