// SPDX-License-Identifier: MIT
// Markers in a style that is given rather than looked up.
#pragma once

#include "kelvane/theme.h"

namespace chrome {

// Marks a rectangle in a given style.
void draw_selection(const irect &rect, const iselection_style &style);

// Marks what has been drawn in a rectangle in the common style. A plain background would hide it,
// so that is inverted.
void mark_drawn(const irect &rect);

} // namespace chrome
