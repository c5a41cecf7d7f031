// SPDX-License-Identifier: MIT
#include "text/walker.h"

namespace text {
namespace {

constexpr uint16_t first_cjk = 0x3002;

} // namespace

void Walker::load_font() {
    cache_ = current.cache;
    mode_ = current.mode;
    has_kerning_ = cache_ != nullptr && FT_HAS_KERNING(cache_->face().ft());
    plain_end_ = cache_ == nullptr || cjk_is_used() ? 0 : first_cjk;
    previous_ = 0;
}

void Walker::return_to_line_font() {
    put_aside_for_cjk(nullptr);
    restore_font(line_font_, line_color_);
    switched_ = false;
    load_font();
}

void Walker::switch_font(uint16_t code) {
    ifont *font = code == line_font_code ? line_font_ : registered_font(code);
    if (font == nullptr) return;
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

Advance Walker::special_step(uint16_t c) {
    if (is_font_code(c)) {
        switch_font(c);
        return {0, 0};
    }
    if (is_invisible(c)) return {0, 0};
    if (cache_ == nullptr) return {0, 10};
    if (c < first_printable) {
        previous_ = 0;
        return {0, control_width()};
    }
    choose_cjk(c);
    return plain_step(c);
}

} // namespace text

int SubstBrokenChar(unsigned short *c) {
    if (c == nullptr) return 0;
    switch (*c) {
    case 0x02D0: // a triangular colon
        return *c = ':';
    case 0x02CC: // a low vertical line, which dictionaries set between syllables
        return *c = 0x200B;
    default:
        return 0;
    }
}
