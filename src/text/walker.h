// SPDX-License-Identifier: MIT
// Goes along a line character by character: which font each one has, and how far the pen moves.
//
// Measuring, layout and drawing all walk lines this way, so that they agree. A walk may make other
// fonts current; the end of its scope restores the font and colour.
#pragma once

#include <array>
#include <cstdint>

#include "text/current.h"
#include "text/font_scope.h"

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

// After which characters a line may break.
inline constexpr auto break_table = [] {
    std::array<bool, 128> breaks{};
    for (size_t c = 0; c < '0'; ++c) breaks[c] = true;
    for (unsigned char c : {'"', '\'', '(', ')', '.'}) breaks[c] = false;
    for (size_t c = '['; c <= '_'; ++c) breaks[c] = true;
    return breaks;
}();

inline bool breaks_after(uint16_t c) {
    return c < break_table.size() && break_table[c];
}

// The pen moves by the kerning before the character and by its width after it.
struct Advance {
    int kerning, width;
    int total() const { return kerning + width; }
};

// Where a walk is: the tables of the current font and the character before. Loops keep it in a
// local variable.
struct Pace {
    const AdvanceEntry *const *pages = nullptr;
    const int16_t *steps = nullptr;
    uint8_t number = AdvanceEntry::line_start; // of the character before
    uint16_t previous = 0;                     // that character; 0: the next one kerns with none

    // The step to a character, if the tables know it.
    bool find(uint16_t c, int &step) {
        const uint8_t next = pages[c >> 8][c & 255].number;
        const int16_t found = steps[number << 8 | next];
        if (found == AdvanceCache::unknown) [[unlikely]]
            return false;
        step = found;
        number = next;
        previous = c;
        return true;
    }
};

class Walker {
  public:
    Walker() { load_font(); }

    // The advance of the next character of the line.
    Advance step(uint16_t c) {
        int step;
        if (!pace_.find(c, step)) return slow_step(c);
        const int width = pace_.pages[c >> 8][c & 255].width;
        return {step - width, width};
    }
    // For loops that step by their own copy of the pace: begins a line, and makes the step that
    // the tables do not know.
    Pace start_line() {
        restart();
        return pace_;
    }
    int slow_step(Pace &pace, uint16_t c) {
        pace_ = pace;
        const Advance advance = slow_step(c);
        pace = pace_;
        return advance.total();
    }
    // A new line begins, in the font in which the walk began.
    void restart();
    // The font in which the walk began is current again.
    void end_line() {
        if (switched_ || kvstate.current_font != line_font_) return_to_line_font();
    }
    // A code of the line has switched the font.
    bool is_switched() const { return switched_; }

  private:
    Advance slow_step(uint16_t c);
    Advance character_step(uint16_t c);
    void load_font();
    void load_tables();
    void end_pair();
    void switch_font(uint16_t code);
    void return_to_line_font();
    void choose_cjk(uint16_t c);

    FontScope scope_;
    ifont *const line_font_ = kvstate.current_font;
    const int line_color_ = kvstate.current_color;
    Pace pace_;
    bool switched_ = false;
};

} // namespace text
