// SPDX-License-Identifier: MIT
// Where the parts of the view go. Nothing here draws or asks for a screen.
#pragma once

#include <array>

#include "dictionary_view/look.h"
#include "kelvane/canvas.h"

namespace dictionary_view {

// What a place depends on.
struct Measures {
    int screen_w;
    int foot;   // the first row below the view
    irect word; // that stays in sight; empty for none
    int unit, border, rule, hairline, rim;
    int tool_w, tool_h;
    int row_h, list_w;
    Sides sides;
};

struct Place {
    irect whole;   // with the rim, which parts it from the page
    irect frame;   // of the border
    irect toolbar; // inside the border
    irect rule, divider;
    std::array<irect, tool_count> tools; // a finger may touch all of it
    irect name;                          // of the dictionary
    irect body;                          // below the rule
    irect list, article;                 // the panes, from border to border
    int row_h, rows;                     // of the list

    irect row(int index) const { return {list.x, list.y + index * row_h, list.w, row_h, 0}; }
};

Place place_view(const Measures &m);

} // namespace dictionary_view
