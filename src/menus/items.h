// SPDX-License-Identifier: MIT
// The arrays that applications hand in, read once: what makes a row, with its label translated.
#pragma once

#include <string>
#include <vector>

#include "kelvane/menus.h"

namespace menus {

// An item that has a row.
struct Item {
    int position; // in the caller's array; -1 for a header that is repeated
    int kind;
    int index;
    std::string text;
    const imenuex *submenu; // of ITEM_SUBMENU alone
    bool is_plain;          // the array was one of imenu, and so is the submenu
    const ibitmap *icon;
    const ifont *font;
};

constexpr bool is_selectable(int kind) {
    return kind == ITEM_ACTIVE || kind == ITEM_SUBMENU || kind == ITEM_BULLET;
}
// The kind of an item's type; 0 for one that has no row.
int kind_of(unsigned type);

// A copy in extended items, which says of each that it was a plain one. Throws bad_alloc.
std::vector<imenuex> extended(const imenu *menu);

enum class OwnFonts { ignored, used };
// The items that have rows, in order. Throws bad_alloc.
std::vector<Item> read_items(const imenuex *menu, OwnFonts fonts);

// The position of the first item that can be chosen; -1 without one.
int first_selectable_position(const imenuex *menu);

} // namespace menus
