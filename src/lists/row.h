// SPDX-License-Identifier: MIT
// One row of a list.
#pragma once

#include "kelvane/lists.h"
#include "lists/look.h"

namespace lists {

enum class Mark { none, selected };

// A row on the screen.
struct RowPlace {
    irect area; // with the gaps of rows of several lines
    int margin; // from its sides to what is written there
    irect inside(const Look &look) const;
};

// Draw on the current canvas, inside its clip; the area is white already.
void draw_row(const Look &look, const RowPlace &place, const ilistrow &row, Mark mark);
// Marks a row that somebody else has drawn.
void mark_row(const Look &look, const RowPlace &place);
// The line between two rows, at the foot of the upper one.
void draw_line_below(const Look &look, const RowPlace &place);

// Draws a text on one line, centred vertically: as much as fits. The current font counts.
void draw_line_of_text(const irect &r, const char *text, int flags);

} // namespace lists
