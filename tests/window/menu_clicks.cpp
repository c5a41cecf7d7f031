// SPDX-License-Identifier: MIT
// Finds the rows of the menu where the window shows them, and clicks them.
#include "menu_clicks.h"

#include <algorithm>
#include <vector>

#include <gtest/gtest.h>

#include "hw_linux/menu.h"

namespace {

// "/AVRCP Events/Set volume/0" in "/AVRCP Events" stands as "/AVRCP Events/Set volume".
std::string cut_path(const std::string &path, size_t parent_length) {
    return path.substr(0, path.find('/', parent_length + 1));
}

} // namespace

MenuRow find_menu_row(const std::string &path) {
    const std::string parent = path.substr(0, path.rfind('/'));
    std::vector<std::string> rows;
    for (const hw::MenuItem &item : hw::menu_items()) {
        if (!std::string(item.path).starts_with(parent + "/")) continue;
        const std::string row = cut_path(item.path, parent.size());
        if (std::find(rows.begin(), rows.end(), row) == rows.end()) rows.push_back(row);
    }
    const auto found = std::find(rows.begin(), rows.end(), path);
    EXPECT_NE(found, rows.end()) << "no such item: " << path;
    return {static_cast<int>(found - rows.begin()), static_cast<int>(rows.size())};
}

unsigned long choose_from_menu(const desktop::Server &server, int x, int y,
                               const std::string &path) {
    EXPECT_TRUE(desktop::await([&] { return server.popups().empty(); }));
    server.click(3, x, y);
    size_t open = 1, end = 0;
    const auto opened = [&] { return server.popups().size() >= open; };
    while (end != path.size()) {
        if (!desktop::await(opened)) break;
        end = std::min(path.find('/', end + 1), path.size());
        const MenuRow at = find_menu_row(path.substr(0, end));
        const auto menu = server.place_of(server.popups().back());
        server.click(1, menu.x + menu.width / 2,
                     menu.y + menu.height * (2 * at.row + 1) / (2 * at.rows));
        ++open;
    }
    const auto items = hw::menu_items();
    const bool is_submenu = std::none_of(items.begin(), items.end(),
                                         [&](const auto &item) { return item.path == path; });
    if (!is_submenu) return 0;
    EXPECT_TRUE(desktop::await(opened));
    return server.popups().back();
}
