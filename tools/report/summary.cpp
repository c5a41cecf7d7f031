// SPDX-License-Identifier: MIT
// Adds up a session.
#include "summary.h"

#include <algorithm>
#include <map>
#include <tuple>

namespace report {
namespace {

constexpr int64_t much_larger = 4;
constexpr int64_t small_area = 64 * 64; // costs little, whatever changes in it
constexpr int64_t second_ms = 1000;

bool is_whole_flash(const Update &update) {
    return update.kind == hw::UpdateKind::full || update.kind == hw::UpdateKind::full_hq;
}

// A flash that changes nothing cleans, unless the one before it was a flash of everything.
bool is_wasted(const Update &update, const Update *before) {
    if (update.changed_pixels > 0) return false;
    return !update.flashes() || (before && is_whole_flash(*before));
}

// By call and mode, the most time on the panel first.
std::vector<Summary::Row> rows_of(const std::vector<Update> &updates) {
    std::map<std::tuple<std::string, hw::UpdateKind, int>, Totals> sums;
    for (const Update &u : updates) sums[{u.call, u.kind, u.mode}].add(u);
    std::vector<Summary::Row> rows;
    rows.reserve(sums.size());
    for (const auto &[key, totals] : sums)
        rows.push_back({std::get<0>(key), std::get<1>(key), std::get<2>(key), totals});
    std::stable_sort(rows.begin(), rows.end(), [](const auto &a, const auto &b) {
        return a.totals.panel_ms > b.totals.panel_ms;
    });
    return rows;
}

Summary::Second worst_second(const std::vector<Update> &updates) {
    Summary::Second worst, here;
    auto first = updates.begin();
    for (auto last = updates.begin(); last != updates.end(); ++last) {
        here.totals.add(*last);
        for (; last->time_ms - first->time_ms >= second_ms; ++first) here.totals.remove(*first);
        here.from_ms = first->time_ms;
        if (here.totals.panel_ms > worst.totals.panel_ms) worst = here;
    }
    return worst;
}

} // namespace

bool is_oversized(const Update &update) {
    return !update.flashes() && update.changed_pixels > 0 && update.area.pixels() > small_area &&
           update.area.pixels() >= much_larger * update.changed.pixels();
}

bool is_coarse(const Update &update) {
    return update.waveform().levels == 2 && update.greys > 2;
}

void Totals::add(const Update &update) {
    updates += 1;
    flashes += update.flashes() ? 1 : 0;
    pixels += update.area.pixels();
    panel_ms += update.panel_ms;
}

void Totals::remove(const Update &update) {
    updates -= 1;
    flashes -= update.flashes() ? 1 : 0;
    pixels -= update.area.pixels();
    panel_ms -= update.panel_ms;
}

Summary summarise(const std::string &name, const std::vector<Update> &updates) {
    Summary s;
    s.name = name;
    const Update *before = nullptr;
    for (const Update &update : updates) {
        s.totals.add(update);
        s.end_ms = std::max(s.end_ms, update.start_ms() + update.panel_ms);
        s.longest_wait_ms = std::max(s.longest_wait_ms, update.wait_ms);
        if (is_wasted(update, before)) s.wasted.push_back(update);
        if (is_oversized(update)) s.oversized.push_back(update);
        if (is_coarse(update)) s.coarse.push_back(update);
        if (update.wait_ms > 0) s.waited.push_back(update);
        before = &update;
    }
    s.rows = rows_of(updates);
    s.worst = worst_second(updates);
    return s;
}

} // namespace report
