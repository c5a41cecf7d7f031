// SPDX-License-Identifier: MIT
// Applies formatting codes and fallback fonts on the way along a line.
#include "text/walker.h"

namespace text {
namespace {

// Characters that the tables must not know: codes, those to be replaced, those with a font of
// their own.
bool needs_care(uint16_t c) {
    return c < first_printable || c == soft_hyphen || c == 0x02CC || c == 0x02D0 || is_cjk(c);
}

// What is in the tables when every step needs care: nothing.
const AdvanceCache no_tables;

} // namespace

void Walker::load_tables() {
    const bool is_plain = current.cache && !cjk_is_used();
    const AdvanceCache &advances = is_plain ? current.cache->advances(current.mode) : no_tables;
    pace_.pages = advances.pages();
    pace_.steps = advances.steps();
}

void Walker::end_pair() {
    pace_.number = AdvanceEntry::line_start;
    pace_.previous = 0;
}

void Walker::load_font() {
    load_tables();
    end_pair();
}

// Other walks since the last line may have added to the tables, or dropped them.
void Walker::restart() {
    end_line();
    load_font();
}

void Walker::return_to_line_font() {
    put_aside_for_cjk(nullptr);
    restore_font(line_font_, line_color_);
    switched_ = false;
}

void Walker::switch_font(uint16_t code) {
    ifont *font = code == line_font_code ? line_font_ : registered_font(code);
    if (!font) return;
    put_aside_for_cjk(nullptr);
    restore_font(font, code == line_font_code || font->color == -1 ? line_color_ : font->color);
    switched_ = code != line_font_code;
    load_font();
}

void Walker::choose_cjk(uint16_t c) {
    const ifont *before = kvstate.current_font;
    select_need_font(c, kvstate.current_font, kvstate.current_color);
    if (kvstate.current_font != before) load_font();
}

// Measures a character, and enters it into the tables if it may be there.
Advance Walker::character_step(uint16_t c) {
    SizeCache &cache = *current.cache;
    Advance advance = {0, cache.width(current.mode, c)};
    if (!needs_care(c) && advance.width != AdvanceEntry::unknown_width)
        cache.add_number(current.mode, c);
    if (pace_.previous != 0) advance.kerning = cache.kerning(current.mode, pace_.previous, c);
    load_tables();
    pace_.previous = c;
    pace_.number = pace_.pages[c >> 8][c & 255].number; // one of the tables that are looked up
    return advance;
}

Advance Walker::slow_step(uint16_t c) {
    if (is_font_code(c)) {
        switch_font(c);
        return {0, 0};
    }
    if (is_invisible(c)) return {0, 0};
    if (has_face() && c < first_printable) {
        end_pair();
        return {0, control_width()};
    }
    if (has_face()) choose_cjk(c);
    return has_face() ? character_step(c) : Advance{0, 10};
}

} // namespace text

int SubstBrokenChar(unsigned short *c) {
    if (!c) return 0;
    switch (*c) {
    case 0x02D0: // a triangular colon
        return *c = ':';
    case 0x02CC: // a low vertical line, which dictionaries set between syllables
        return *c = 0x200B;
    default:
        return 0;
    }
}
