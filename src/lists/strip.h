// SPDX-License-Identifier: MIT
// The strip below the rows: the counter of pages between two arrows.
#pragma once

#include "lists/look.h"

namespace lists {

enum class StripPart { nothing, previous, counter, next };

// Draws it on the current canvas for a page that counts from 0.
void draw_strip(const Look &look, const irect &strip, int page, int last_page);
// What a point of the screen lies on.
StripPart strip_part_at(const Look &look, const irect &strip, int x, int y);

} // namespace lists
