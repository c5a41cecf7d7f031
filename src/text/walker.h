// SPDX-License-Identifier: MIT
// Goes along a line character by character: which font each one has, and how far the pen moves.
//
// Measuring, layout and drawing all walk lines this way, so that they agree. A walk may make other
// fonts current; the end of its scope restores the font and colour.
#pragma once

#include <cstdint>

#include "text/current.h"

namespace text {

// Codes of the text. Code 0, which no string contains, goes back to the font of the line.
inline constexpr uint16_t line_font_code = 0, last_font_code = 9, newline = 10,
                          carriage_return = 13, first_symbol_code = 17, last_symbol_code = 23,
                          first_printable = 32, soft_hyphen = 173;

inline bool is_font_code(uint16_t c) {
    return c <= last_font_code;
}
inline bool is_symbol_code(uint16_t c) {
    return c >= first_symbol_code && c <= last_symbol_code;
}
inline bool is_invisible(uint16_t c) {
    return c == newline || c == carriage_return || c == soft_hyphen;
}

// The width of a character below 32, which is that of a symbol and its gap.
inline int control_width() {
    return static_cast<int>(int64_t{current.baseline} * 2 / 3 + 2);
}

// The pen moves by the kerning before the character and by its width after it.
struct Advance {
    int kerning, width;
    int total() const { return kerning + width; }
};

class Walker {
  public:
    Walker() { load_font(); }

    // The advance of the next character of the line.
    Advance step(uint16_t c) {
        if (c >= first_printable && c < plain_end_ && c != soft_hyphen) [[likely]]
            return plain_step(c);
        return special_step(c);
    }
    // A new line begins, in the font in which the walk began.
    void restart() {
        previous_ = 0;
        if (switched_ || kvstate.current_font != line_font_) return_to_line_font();
    }
    // A code of the line has switched the font.
    bool is_switched() const { return switched_; }

  private:
    Advance plain_step(uint16_t c) {
        const int kerning = has_kerning_ && previous_ != 0 ? cache_->kerning(previous_, c) : 0;
        previous_ = c;
        return {kerning, cache_->width(mode_, c)};
    }
    Advance special_step(uint16_t c);
    void load_font();
    void switch_font(uint16_t code);
    void return_to_line_font();
    void choose_cjk(uint16_t c);

    FontScope scope_;
    ifont *const line_font_ = kvstate.current_font;
    const int line_color_ = kvstate.current_color;
    // Of the current font.
    SizeCache *cache_;
    Mode mode_;
    bool has_kerning_;
    uint16_t plain_end_;    // characters from 32 to this one need nothing but their advance
    uint16_t previous_ = 0; // 0: none that the next one kerns with
    bool switched_ = false;
};

} // namespace text
