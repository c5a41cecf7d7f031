// SPDX-License-Identifier: MIT
// The pages of a list and which of its rows is selected. Nothing is drawn here.
#pragma once

#include <algorithm>
#include <cstdint>

namespace lists {

struct Paging {
    int count = 0;
    int per_page = 1;
    int page = 0;
    int selected = -1;

    int last_page() const { return count > 0 ? (count - 1) / per_page : 0; }
    int page_of(int row) const { return row / per_page; }
    int first() const { return page * per_page; }
    // How many rows are shown.
    int shown() const { return std::min(per_page, count - first()); }
    bool shows(int row) const { return row >= first() && row - first() < shown(); }

    // The nearest row there is, on its page; -1 for none.
    void select(int row) {
        selected = count > 0 && row >= 0 ? std::min(row, count - 1) : -1;
        if (selected >= 0) page = page_of(selected);
        page = std::clamp(page, 0, last_page());
    }
    // Keeps the selection in sight.
    void set_count(int rows) {
        count = std::max(rows, 0);
        select(selected);
    }
    void set_per_page(int rows) {
        const int top = selected >= 0 ? selected : first();
        per_page = std::max(rows, 1);
        page = std::clamp(page_of(top), 0, last_page());
    }
    // The page so many pages on; the row in the same place of it, or the last one.
    int row_after_turn(int pages) const {
        const auto to =
            static_cast<int>(std::clamp<int64_t>(int64_t{page} + pages, 0, last_page()));
        const int place = selected >= 0 ? selected - first() : 0;
        return static_cast<int>(
            std::min<int64_t>(int64_t{to} * per_page + place, int64_t{count} - 1));
    }
    // Round and round.
    int row_after_step(int row, int step) const {
        if (count < 1) return -1;
        return static_cast<int>((int64_t{row} + step + count) % count);
    }
};

} // namespace lists
