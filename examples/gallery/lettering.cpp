// SPDX-License-Identifier: MIT
// Draws and aligns the labels of all pages.
#include "lettering.h"

#include "page.h"

namespace {

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

kelvane::Font font_of(const Ink &ink) {
    return {ink.bold ? "defaultb" : "default", ink.size};
}

} // namespace

int size_of(Type type) {
    constexpr int quarters[] = {16, 18, 20, 24}; // of a unit
    return (quarters[size_t(type)] * unit() + 2) / 4;
}

// As the default font has it.
int capital_height(int size) {
    return size * 8 / 11;
}

int text_width(const char *text, const Ink &ink) {
    const kelvane::Font font = font_of(ink);
    const kelvane::FontGuard current(font, ink.color);
    return font ? StringWidth(text) : 0;
}

void draw_text(int x, int y, const char *text, const Ink &ink, Align align) {
    const kelvane::Font font = font_of(ink);
    if (!font) return;
    const kelvane::FontGuard current(font, ink.color);
    DrawString(start_of(x, StringWidth(text), align), y + capital_height(ink.size) - font->baseline,
               text);
}
