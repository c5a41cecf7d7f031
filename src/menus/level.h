// SPDX-License-Identifier: MIT
// The rows of one level and their pages, and where the selection goes. Nothing is drawn here and no
// screen is asked.
#pragma once

#include <vector>

#include "menus/items.h"

namespace menus {

// Pages, or one long page under a finger.
enum class Flow { pages, scrolled };
// Whether lines stand where the items say, or between all items.
enum class Lines { as_items, between_items };

struct Rules {
    int border; // of the menu
    int indent; // above the first row and below the last one
    int limit;  // the greatest height of a menu
    int header_h, item_h, separator_h;
    Lines lines;
    Flow flow;
};

struct Row {
    Item item;
    int y; // below the top of the menu
    int h;
    int page;
    bool has_line; // below it; where lines are between all items
};

struct Level {
    std::vector<Row> rows;
    int current = -1; // the selected row, or -1
    int page = 0;     // the one shown
    int last_page = 0;
    int height = 0; // of the menu: that of its longest page

    bool is_paged() const { return last_page > 0; }
    const Row *selected() const;
    // At the top of the page shown; null without one.
    const Row *title() const;
    bool is_selectable_at(int row) const;
};

// How high a row of this kind is.
int row_height(int kind, const Rules &rules);

// The height of a menu that has them all on one page.
int unbroken_height(const std::vector<Item> &items, const Rules &rules);

// Puts the items on pages and selects the one at `position` of the caller's array, or the nearest
// before it that can be chosen. Throws bad_alloc.
Level build_level(std::vector<Item> items, const Rules &rules, int position);

enum class Direction { back = -1, forward = 1 };

// The next row that can be chosen, round and round; from none forward only to the end. The
// selected one where there is no other.
int next_selectable(const Level &level, Direction direction);
// The first row that can be chosen on the next page in this direction that has one; -1 without.
int first_of_next_page(const Level &level, Direction direction);
// The row itself, or the nearest before it that can be chosen, wrapping to the last row; or -1.
int nearest_selectable(const Level &level, int row);

} // namespace menus
