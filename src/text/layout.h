// SPDX-License-Identifier: MIT
// Breaks text into lines and places them in a rectangle.
#pragma once

#include <cstdint>

#include "text/bidi.h"

namespace text {

enum class Draw { no, yes };

struct Layout {
    int64_t height = 0;
    int end = 0;                 // the first character that was not laid out
    int64_t last_line_width = 0; // before alignment
};

// Lays out, and draws, what fits of a text in the current font and colour, with the flags of
// kelvane/text.h; vertical alignment is the caller's. `direction` is that of the text, with letters
// already joined. Broken characters are replaced in `text`.
// Without a font the height is that of the screen, and all of the text counts as laid out.
Layout kv_textrect(int64_t x, int64_t y, int w, int h, uint16_t *text, int len, int flags,
                   Direction direction, Draw draw);

} // namespace text
