// SPDX-License-Identifier: MIT
// Draws keys: three pieces of a picture, and on them a letter, a word or a symbol.
#include <algorithm>

#include "ground/utf8.h"
#include "kelvane/languages.h"
#include "kelvane/text.h"
#include "keyboard/draw.h"
#include "raster/bitmap.h"
#include "text/font_scope.h"

namespace keyboard {
namespace {

constexpr int capital_percent = 73; // of the size of a font
constexpr int word_margin = 4;      // pixels
constexpr uint16_t dotted_circle = 0x25CC;

// Some rows of a picture, repeated over a width.
void draw_rows(const ibitmap &picture, const irect &to, int from_row) {
    for (int x = to.x; x < to.x + to.w; x += picture.width) {
        const int w = std::min<int>(picture.width, to.x + to.w - x);
        raster::draw_bitmap_part(x, to.y, picture, 0, from_row, w, to.h);
    }
}

// Of another height than the picture's: its upper and its lower half, and between them its middle
// row as often as needed.
void draw_piece(const ibitmap *picture, const irect &r) {
    if (!picture || picture->width == 0 || r.w < 1) return;
    const int h = std::min<int>(picture->height, r.h), upper = h / 2, lower = h - upper;
    if (r.h == picture->height) {
        TileBitmap(r.x, r.y, r.w, r.h, picture);
        return;
    }
    draw_rows(*picture, {r.x, r.y, r.w, upper, 0}, 0);
    for (int y = r.y + upper; y < r.y + r.h - lower; ++y)
        draw_rows(*picture, {r.x, y, r.w, 1, 0}, picture->height / 2);
    draw_rows(*picture, {r.x, r.y + r.h - lower, r.w, lower, 0}, picture->height - lower);
}

const KeyPicture &picture_of(const Look &look, Face face) {
    switch (face) {
    case Face::special:
        return look.special;
    case Face::pressed:
        return look.pressed;
    case Face::plain:
        break;
    }
    return look.key;
}

const KeySymbol *symbol_of(const Board &b, uint16_t key) {
    switch (key) {
    case code::shift:
        return &b.look.shift;
    case code::clear:
        return &b.look.clear;
    case code::numbers:
        return &b.look.numbers;
    case code::backspace:
        return &b.look.backspace;
    case code::enter:
        return b.enter_is_ok ? &b.look.enter : nullptr;
    case code::cancel:
        return &b.look.cancel;
    default:
        return nullptr;
    }
}

bool is_combining(uint16_t c) {
    return (c >= 0x300 && c < 0x370) || (c >= 0x591 && c < 0x5C8) || (c >= 0x64B && c < 0x660) ||
           c == 0x670;
}

// A mark that stands above or below others gets something to stand at.
std::string letter_of(uint16_t c) {
    return is_combining(c) ? utf8::encoded(dotted_circle) + utf8::encoded(c) : utf8::encoded(c);
}

// In the middle; capitals are as far from the top as from the foot.
void draw_middle(const irect &r, const ifont *font, const char *text, bool is_black) {
    if (!font) return;
    SetFont(font, is_black ? WHITE : BLACK);
    const int capital = font->size * capital_percent / 100;
    DrawString(r.x + (r.w - StringWidth(text)) / 2, r.y + (r.h + capital) / 2 - font->baseline,
               text);
}

// In a smaller font where it needs that, and else in lines: no word covers the keys beside it.
void draw_word(const Board &b, const irect &r, const char *text, bool is_bold, bool is_black) {
    const ifont *const fonts[] = {is_bold ? b.look.special_letter.get() : b.look.word.get(),
                                  b.look.small_word.get()};
    const int room = std::max(r.w - word_margin, 1);
    for (const ifont *font : fonts) {
        SetFont(font, is_black ? WHITE : BLACK);
        if (StringWidth(text) <= room) return draw_middle(r, font, text, is_black);
    }
    DrawTextRect(r.x + word_margin / 2, r.y, room, r.h, text,
                 ALIGN_CENTER | VALIGN_MIDDLE | TEXT_DOTS);
}

// In the middle, as much as there is room for: symbols may be as high as a low key, whose edge goes
// first. Returns where it is.
irect draw_picture(const ibitmap &picture, const irect &r, int edge) {
    const int w = std::clamp<int>(r.w - 2 * edge, 0, picture.width);
    const int h = std::clamp<int>(r.h - 2 * edge, 0, picture.height);
    const irect at{r.x + (r.w - w) / 2, r.y + (r.h - h) / 2, w, h, 0};
    raster::draw_bitmap_part(at.x, at.y, picture, (picture.width - w) / 2, (picture.height - h) / 2,
                             w, h);
    return at;
}

// Symbols have a ground of their own.
void draw_symbol(const KeySymbol &symbol, const irect &r, int edge, bool is_black) {
    const ibitmap *picture = is_black ? symbol.pressed.get() : symbol.plain.get();
    if (picture) draw_picture(*picture, r, edge);
}

// It has none, and is black.
void draw_eye(const Board &b, const irect &r, bool is_black) {
    const ibitmap *eye = b.look.eye.get();
    if (!eye) return;
    const irect at = draw_picture(*eye, r, b.look.hairline);
    if (!is_black) return;
    FillAreaRect(&at, WHITE);
    draw_picture(*eye, r, b.look.hairline);
    InvertArea(at.x, at.y, at.w, at.h);
}

} // namespace

void draw_face(const Look &look, const irect &r, Face face) {
    const KeyPicture &p = picture_of(look, face);
    const int left = std::min(p.left.width(), r.w / 2), right = std::min(p.right.width(), r.w / 2);
    draw_piece(p.left.get(), {r.x, r.y, left, r.h, 0});
    draw_piece(p.middle(), {r.x + left, r.y, r.w - left - right, r.h, 0});
    draw_piece(p.right.get(), {r.x + r.w - right, r.y, right, r.h, 0});
}

void draw_legend(const Board &b, const irect &r, uint16_t key, bool is_black,
                 const text::FontPtr &letters) {
    if (const KeySymbol *symbol = symbol_of(b, key))
        return draw_symbol(*symbol, r, b.look.hairline, is_black);
    const text::FontScope scope;
    switch (key) {
    case code::language:
        return draw_word(b, r, b.language().code.c_str(), true, is_black);
    case code::eye:
        return draw_eye(b, r, is_black);
    case code::wide_space:
    case code::space:
        return draw_word(b, r, GetLangText("@KeySpace"), false, is_black);
    case code::enter:
        return draw_word(b, r, b.enter_label.c_str(), true, is_black);
    case code::next:
        return draw_word(b, r, GetLangText("@Next"), true, is_black);
    default:
        return draw_middle(r, letters.get(), letter_of(key).c_str(), is_black);
    }
}

} // namespace keyboard
