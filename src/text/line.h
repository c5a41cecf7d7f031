// SPDX-License-Identifier: MIT
// Draws one line.
#pragma once

#include <cstdint>

#include "text/bidi.h"
#include "text/blit.h"

namespace text {

// Draws a line with its top left at (x, y), or upwards with its top at x and its start at y.
// Spaces widen until the line is `width` wide; 0 leaves them. `rtl` is the direction of the text of
// which it is a line, with letters already joined. Returns how far the pen moved.
int64_t kv_textblock(int64_t x, int64_t y, int width, const uint16_t *text, int len, int color,
                     Run run, Direction rtl);

} // namespace text
