// SPDX-License-Identifier: MIT
// Codes that say something of their whole paragraph, where a text has such: which font its lines go
// on in, and that it is a heading.
#pragma once

#include <cstdint>

#include "text/walker.h"

namespace text {

inline constexpr uint16_t hold_code = 14, heading_code = 15;

inline bool is_mark(uint16_t c) {
    return c == hold_code || c == heading_code;
}

// What holds where a line begins, from codes of its paragraph before.
struct Marks {
    uint16_t font = line_font_code; // the code of the font that the line goes on in
    bool holds = false;             // the fonts of this paragraph go on from line to line
    bool is_heading = false;

    // Goes over a part of the paragraph. All codes are single bytes, so it may be UTF-8.
    template <class Character>
    void read(const Character *begin, const Character *end) {
        for (; begin < end; ++begin) read(static_cast<uint16_t>(*begin));
    }

  private:
    void read(uint16_t c) {
        if (c == hold_code) holds = true;
        if (c == heading_code) is_heading = true;
        if (holds && is_font_code(c) && registered_font(c)) font = c;
    }
};

} // namespace text
