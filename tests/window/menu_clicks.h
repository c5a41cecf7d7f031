// SPDX-License-Identifier: MIT
// A hand that chooses from the menu of the device window.
#pragma once

#include <string>

#include "harness.h"

// The row of a menu that the item at `path` stands in, and how many rows that menu has.
struct MenuRow {
    int row, rows;
};
MenuRow find_menu_row(const std::string &path);

// Opens the menu with the right button at this place of the root window and clicks its way to an
// item or, when the path is that of a submenu, to the open submenu, whose window it returns.
unsigned long choose_from_menu(const desktop::Server &server, int x, int y,
                               const std::string &path);
