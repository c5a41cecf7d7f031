// SPDX-License-Identifier: MIT
// One rectangle of a text in UTF-8, as all functions of the interface lay it out.
#pragma once

#include <cstdint>

#include "kelvane/canvas.h"
#include "text/layout.h"

namespace text {

struct Rect {
    const char *end; // of what is laid out; of the text without a font
    int64_t height;
    Marks marks; // in force at the end
};

// Lays out, and draws, what fits into a rectangle by its flags, vertical alignment included.
// `marks` are those in force at the beginning.
Rect place_rect(const irect &r, const char *utf8, Draw draw, Marks marks);

} // namespace text
