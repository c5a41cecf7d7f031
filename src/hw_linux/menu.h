// SPDX-License-Identifier: MIT
// The device window's menu: one table for the window, scripts and the monkey.
#pragma once

#include <span>

namespace hw {

// What the items of a kind do with their values.
struct MenuAction {
    void (*run)(int value);
    // The value that is in force, for items that show it with a mark; null for others. The marked
    // items of one submenu form a group.
    int (*present)() = nullptr;
};

struct MenuItem {
    const char *path; // parts divided by '/'
    int command;
    const MenuAction &action;
    int value = 0;

    bool has_mark() const { return action.present != nullptr; }
    // Its mark shows the present state of the device.
    bool is_marked() const { return has_mark() && action.present() == value; }
};

inline constexpr int command_quit = 901;
inline constexpr int command_orientation = 800; // and the three after it

// In the order in which the window shows them.
std::span<const MenuItem> menu_items();
// Null when there is none.
const MenuItem *find_menu_item(int command);

} // namespace hw
