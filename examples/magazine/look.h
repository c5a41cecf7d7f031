// SPDX-License-Identifier: MIT
// What everything is measured, written and drawn with.
#ifndef MAGAZINE_LOOK_H
#define MAGAZINE_LOOK_H

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include <kelvane.hpp>

constexpr int turns_per_flash = 6;

// What the settings choose.
constexpr int sizes[] = {4, 5, 6, 8}; // fifths of the size of the theme's text
constexpr const char *faces[] = {"DejaVuSerif", "DejaVuSans"};

inline int size_of_body() {
    const kelvane::Font font = kelvane::Font::of_theme("window.font", "default,20,0");
    return font ? font->size : 20;
}

// What everything is measured and written in: the theme's unit, which is as large to the eye on
// each panel, and its size of text.
struct Look {
    explicit Look(const kelvane::Config &settings)
        : text_size(em * sizes[std::clamp(settings.read("size", 1), 0, 3)] / 5),
          face(faces[std::clamp(settings.read("face", 0), 0, 1)]), text(face.c_str(), text_size),
          heading((face + "-Bold").c_str(), text_size) {
        for (const kelvane::Font *font : {&text, &heading})
            if (*font) (*font)->linespacing = text_size * 7 / 5;
        ifont *fonts[] = {heading.get()};
        RegisterFontList(fonts, 1);
    }

    int u = GetThemeInt("unit.size", std::min(ScreenWidth(), ScreenHeight()) / 150);
    int em = size_of_body();
    int line = std::max(GetThemeInt("separator.size", 1), 1);
    kelvane::Font small{"default", em * 4 / 5}, small_bold{"defaultb", em * 4 / 5};
    kelvane::Font headline{"DejaVuSerif-Bold", em + 3 * u};
    int text_size;
    std::string face;
    kelvane::Font text, heading;
};

// Where it is when the interface runs from right to left.
inline irect mirrored(irect r) {
    if (IsRTL()) r.x = ScreenWidth() - r.x - r.w;
    return r;
}

inline irect inset(const irect &r, int by) {
    return iRect(r.x + by, r.y + by, r.w - 2 * by, r.h - 2 * by, 0);
}

// The part of `r` from one row of pixels to another one.
inline irect part(const irect &r, int from, int to) {
    return iRect(r.x, r.y + from, r.w, to - from, 0);
}

inline bool is_inside(const irect &r, int x, int y) {
    return x >= r.x && x < r.x + r.w && y >= r.y && y < r.y + r.h;
}

inline void write(const irect &r, const kelvane::Font &font, const std::string &text, int flags) {
    const kelvane::FontGuard current(font, BLACK);
    DrawTextRect(r.x, r.y, r.w, r.h, text.c_str(), flags);
}

inline std::string text_of(const char *format, int a, int b = 0) {
    char text[100];
    std::snprintf(text, sizeof text, format, a, b);
    return text;
}

inline std::vector<irect> night_pictures; // those that are on the screen

inline void draw_picture(const irect &r, const kelvane::Bitmap &picture) {
    picture.draw(r.x, r.y);
    night_pictures.push_back(r);
}

template <class Screen>
void draw_screen(Screen &screen) {
    ClearScreen();
    night_pictures.clear();
    screen.draw();
    SetNightPictures(night_pictures.data(), int(night_pictures.size()));
}

#endif
