// SPDX-License-Identifier: MIT
// Where the parts of a keyboard go. Nothing here draws or asks for a screen.
#pragma once

#include <vector>

#include "kelvane/canvas.h"

namespace keyboard {

// How keys are reached.
enum class Way { finger, keys };

struct Screen {
    int w, h;
    int foot; // the first row below the keyboard
    int orientation;
};

// What a place depends on.
struct Measures {
    Screen screen;
    int unit, border, hairline;
    Way way;
    bool has_title, has_entry;
    int rows;    // of keys, without that of commands
    int columns; // of a layout for fingers
    int buttons; // in the row at the foot; 0 for none
};

struct Place {
    irect whole; // with the rim, which parts it from what lies above
    irect frame; // of the border
    irect title; // w 0 without one, as the next
    irect entry; // with its border
    irect keys;  // all rows
    int row_h, key_h;
    int unit_w; // of a column
    int gap;    // between keys
    int sides;  // what the columns leave free at least
    int rule_y; // of the rule above the buttons
    std::vector<irect> buttons;

    // Shares the width among so many columns.
    void spread(int columns, Way way);
    // Shares the place of the keys among those of a layout for fingers. Where another one of the
    // same keyboard has more rows, keys are higher, and the last row stays where it is.
    void fill(int columns, int rows);
    // A key at a column and row of its layout. Keys may be several columns wide.
    irect key(int column, int row, int width) const;
    // One of so many commands, in the row below all keys for five keys.
    irect command(int index, int count, int row) const;
};

Place place_keyboard(const Measures &m);

} // namespace keyboard
