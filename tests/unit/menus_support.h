// SPDX-License-Identifier: MIT
// Menus over a picture on the headless device, with the fonts of a device.
#pragma once

#include <string>
#include <vector>

#include "dialogs_support.h"
#include "kelvane/languages.h"
#include "kelvane/menus.h"
#include "menus/stack.h"
#include "support/tempdir.h"

namespace menu_test {

using boxes::screen;
using boxes::update_calls;

inline std::string answers; // of callbacks, each followed by a blank
inline void answer(int index) {
    answers += std::to_string(index) + (menus::level_count() > 0 ? "! " : " ");
}

inline void write_right_to_left() {
    write_file("system/language/xx.txt", "Language\n%RTL\n");
    LoadLanguage("xx");
}
inline void write_left_to_right() {
    LoadLanguage("en");
}

class Test : public boxes::Test {
  protected:
    Test() {
        answers.clear();
        before = screen();
    }
    // One callback after everything closed, and the page as it was.
    void expect_closed_with(const std::string &expected) const {
        EXPECT_EQ(answers, expected);
        EXPECT_EQ(menus::level_count(), 0);
        EXPECT_EQ(GetEventHandler(), headless::handler());
        EXPECT_TRUE(screen() == before);
    }
    static void press_all(const std::vector<int> &keys) {
        for (const int key : keys) headless::press(key);
    }
    static irect row_rect(int row) {
        const menus::Menu &menu = *menus::top();
        return menu.row_rect(menu.level().rows[static_cast<size_t>(row)]);
    }
    static void tap_row(int row) {
        const irect r = row_rect(row);
        headless::tap(r.x + r.w / 2, r.y + r.h / 2);
    }
    static int current() { return menus::top()->level().current; }

    std::vector<uint8_t> before;
};

// Items "0", "1", ... of these types, with their position as index, and an end.
struct Items {
    std::vector<std::string> labels;
    std::vector<imenuex> items;
    explicit Items(const std::vector<int> &types) : labels(types.size()) {
        for (size_t i = 0; i < types.size(); ++i) {
            labels[i] = "Item " + std::to_string(i);
            items.push_back({.type = static_cast<unsigned short>(types[i]),
                             .index = static_cast<short>(i),
                             .text = labels[i].c_str(),
                             .submenu = nullptr,
                             .icon = nullptr,
                             .reserved = nullptr,
                             .font = nullptr});
        }
        items.push_back({});
    }
    imenuex *get() { return items.data(); }
    void open(int pos = 0, int x = 24, int y = 58) { OpenMenuEx(get(), pos, x, y, answer); }
};

} // namespace menu_test
