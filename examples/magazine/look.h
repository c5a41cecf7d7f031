// SPDX-License-Identifier: MIT
// What everything is measured, written and drawn with.
#ifndef MAGAZINE_LOOK_H
#define MAGAZINE_LOOK_H

#include <algorithm>
#include <string>

#include <kelvane.hpp>

constexpr int turns_per_flash = 6;

inline int size_of_body() {
    const kelvane::Font font = kelvane::Font::of_theme("window.font", "default,20,0");
    return font ? font->size : 20;
}

// Everything is measured in the theme's unit, which is as large to the eye on each panel, and in
// its size of text.
struct Look {
    // `size` of the articles, in fifths of the theme's.
    explicit Look(int size)
        : text("DejaVuSerif", em * size / 5), heading("DejaVuSerif-Bold", em * size / 5) {
        for (const kelvane::Font *font : {&text, &heading})
            if (*font) (*font)->linespacing = (*font)->size * 7 / 5;
        ifont *fonts[] = {heading.get()};
        RegisterFontList(fonts, 1);
    }

    int u = GetThemeInt("unit.size", std::min(ScreenWidth(), ScreenHeight()) / 150);
    int em = size_of_body();
    int line = std::max(GetThemeInt("separator.size", 1), 1);
    kelvane::Font small{"default", em * 4 / 5}, headline{"DejaVuSerif-Bold", em + 3 * u};
    kelvane::Font text, heading;
};

// The part of `r` from one row of pixels to another one.
inline irect part(const irect &r, int from, int to) {
    return iRect(r.x, r.y + from, r.w, to - from, 0);
}

inline void write(const irect &r, const kelvane::Font &font, const std::string &text, int flags) {
    const kelvane::FontGuard current(font, BLACK);
    DrawTextRect(r.x, r.y, r.w, r.h, text.c_str(), flags | TEXT_DOTS);
}

#endif
