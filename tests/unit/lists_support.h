// SPDX-License-Identifier: MIT
// Lists over a picture on the headless device, and what they tell their owner.
#pragma once

#include <set>
#include <string>

#include "dialogs_support.h"
#include "kelvane/languages.h"
#include "kelvane/lists.h"

namespace list_test {

using boxes::screen;

inline std::string told;              // "action:row ", of every callback
inline std::set<int> headings;        // rows that are passed over
inline int fills = 0;                 // how often a row was asked for
inline std::function<void(int)> then; // run at the end of each callback

inline void fill(int row, ilistrow *out, void *) {
    static std::string title;
    title = "Row " + std::to_string(row);
    out->title = title.c_str();
    out->flags = headings.count(row) != 0 ? LIST_ROW_HEADING : 0;
    ++fills;
}
inline void tell(int action, int row, void *) {
    static constexpr const char *names[] = {"",         "chosen",  "context",
                                            "selected", "counter", "closed"};
    told += std::string(names[action]) + ":" + std::to_string(row) + " ";
    if (then) then(action);
}

inline ilistrows rows(int count, int height = LIST_PLAIN_ROWS) {
    ilistrows r{};
    r.count = count;
    r.height = height;
    r.fill = fill;
    r.hproc = tell;
    return r;
}

class Test : public boxes::Test {
  protected:
    Test() {
        told.clear();
        headings.clear();
        fills = 0;
        then = nullptr;
        before = screen();
    }
    ~Test() override {
        then = nullptr;
        headless::on_event(nullptr);
    }
    static std::string take_told() { return std::exchange(told, {}); }
    static void press_all(const std::vector<int> &keys) {
        for (const int key : keys) headless::press(key);
    }
    static void hold(int key, int ms) {
        headless::key_down(key);
        headless::advance(ms);
        headless::key_up(key);
    }
    static void swipe(int x, int y, int to_x, int to_y) {
        headless::pointer(EVT_POINTERDOWN, x, y);
        headless::pointer(EVT_POINTERMOVE, (x + to_x) / 2, (y + to_y) / 2);
        headless::pointer(EVT_POINTERUP, to_x, to_y);
    }

    std::vector<uint8_t> before;
};

} // namespace list_test
