// SPDX-License-Identifier: MIT
#include "lettering.h"

namespace {

// In the default font a capital letter is 8/11 as high as the font's size.
int size_of(int capital_height) {
    return (capital_height * 11 + 4) / 8;
}

int start_of(int x, int width, Align align) {
    switch (align) {
    case Align::centre:
        return x - width / 2;
    case Align::right:
        return x - width;
    default:
        return x;
    }
}

} // namespace

void draw_text(int x, int y, const char *text, const Ink &ink, Align align) {
    ifont *font = OpenFont(ink.bold ? "defaultb" : "default", size_of(ink.height), 1);
    if (font == nullptr) return;
    ifont *before = GetFont();
    SetFont(font, ink.color);
    DrawString(start_of(x, StringWidth(text), align), y + ink.height - font->baseline, text);
    SetFont(before, -1);
    CloseFont(font);
}
