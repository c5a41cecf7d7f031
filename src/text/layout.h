// SPDX-License-Identifier: MIT
// Breaks text into lines and places them in a rectangle.
#pragma once

#include <cstdint>

#include "text/marks.h"
#include "text/reader.h"

namespace text {

enum class Draw { no, yes };

struct Layout {
    int64_t height = 0;
    int end;                     // the first character that was not laid out
    int64_t last_line_width = 0; // before alignment
    Marks marks = {};            // in force at the end
};

// More characters than this are not laid out at once.
inline constexpr int most_characters = 100000;

// Lays out, and draws, what fits of a text from a character on, in the current font and colour,
// with the flags of kelvane/text.h; vertical alignment is the caller's. At least one character of
// the text counts as laid out, though its place may be taken by dots. Broken characters are
// replaced in `text`. `marks` are those in force at the beginning.
// Without a font the height is that of the screen, and all of the text counts as laid out.
Layout kv_textrect(int64_t x, int64_t y, int w, int h, Reader &text, int begin, int flags,
                   Draw draw, Marks marks = {});

} // namespace text
