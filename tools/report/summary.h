// SPDX-License-Identifier: MIT
// What a session did to the panel, and what of it was more than it needed.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "trace.h"

namespace report {

struct Totals {
    int64_t updates = 0, flashes = 0, pixels = 0, panel_ms = 0;
    void add(const Update &update);
    void remove(const Update &update);
};

struct Summary {
    struct Row {
        std::string call;
        hw::UpdateKind kind;
        int mode;
        Totals totals;
    };
    struct Second {
        int64_t from_ms = 0;
        Totals totals;
    };

    std::string name; // of the trace
    Totals totals;
    int64_t end_ms = 0;            // of the last update on the panel
    std::vector<Row> rows;         // the most time on the panel first
    std::vector<Update> wasted;    // changed nothing, and cleaned nothing
    std::vector<Update> oversized; // their area is much larger than what changed
    std::vector<Update> coarse;    // greys through a mode of two levels
    std::vector<Update> waited;    // for another update to end
    int64_t longest_wait_ms = 0;
    Second worst; // in it begin the updates with the most time on the panel
};

// Of updates in the order of their times.
Summary summarise(const std::string &name, const std::vector<Update> &updates);

bool is_oversized(const Update &update);
bool is_coarse(const Update &update);

} // namespace report
