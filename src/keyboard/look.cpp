// SPDX-License-Identifier: MIT
// Reads pictures, fonts and lengths as a keyboard opens, so that each has the theme of its time.
#include "keyboard/look.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "kelvane/theme.h"
#include "raster/bitmap.h"

namespace keyboard {
namespace {

constexpr int longest_length = 1 << 8;

int length(const char *name, int deflt, int least) {
    return std::clamp(GetThemeInt(name, deflt), least, longest_length);
}

// A few wide tiles are drawn much faster than many narrow ones. Null for a picture with a mask, and
// for one whose rows are no whole bytes.
raster::BitmapPtr widened(const ibitmap *tile) {
    constexpr int times = 16;
    if (!tile || raster::has_mask(*tile) || tile->width > longest_length) return nullptr;
    const size_t row_bits = size_t{tile->width} * static_cast<unsigned>(raster::depth_of(*tile));
    if (row_bits % 8 != 0 || tile->scanline < row_bits / 8) return nullptr;
    raster::BitmapPtr wide =
        raster::make_bitmap(times * tile->width, tile->height, raster::depth_of(*tile));
    if (!wide) return nullptr;
    for (size_t y = 0; y < tile->height; ++y)
        for (size_t i = 0; i < times; ++i)
            std::memcpy(wide->data + y * wide->scanline + i * (row_bits / 8),
                        tile->data + y * tile->scanline, row_bits / 8);
    return wide;
}

KeyPicture key_picture(const std::string &suffix) {
    const auto piece = [&](const char *name) { return theme::Picture((name + suffix).c_str()); };
    KeyPicture key{piece("kbd_button_left"), piece("kbd_button_center"), piece("kbd_button_right"),
                   nullptr};
    key.wide_center = widened(key.center.get());
    return key;
}

KeySymbol symbol(const std::string &name) {
    return {theme::Picture(name.c_str()), theme::Picture((name + "_a").c_str())};
}

text::FontPtr font(const char *name, int size) {
    return text::FontPtr(OpenFont(name, std::max(size, 1), 1));
}

int size_of(const text::FontPtr &of, int otherwise) {
    return of ? of->size : otherwise;
}

} // namespace

Lengths load_lengths() {
    return {.unit = length("unit.size", 4, 1),
            .border = length("border.size", 3, 1),
            .hairline = length("separator.size", 1, 1),
            .radius = length("border.radius", 8, 0) * 3 / 2};
}

Look load_look() {
    const theme::UiParameters &ui = theme::ui_parameters();
    Look look;
    static_cast<Lengths &>(look) = load_lengths();
    look.key = key_picture("");
    look.special = key_picture("_m");
    look.pressed = key_picture("_a");
    look.shift = symbol("tsk_arrow");
    look.clear = symbol("tsk_clr");
    look.numbers = symbol("tsk_123");
    look.backspace = symbol("tsk_bs");
    look.enter = symbol("tsk_enter");
    look.cancel = symbol("tsk_can");
    look.clear_entry = theme::Picture("kbd_clear");
    look.eye = theme::Picture("kbd_eye");
    look.eye_struck = theme::Picture("kbd_eye_e");
    // Themes with larger text have larger keys too.
    const int body = size_of(ui.window_font, 0), label = size_of(ui.button_font_normal, 0);
    look.title = font("defaultb", std::max(look.units(45), label));
    look.entry = font("default", std::max(look.units(60), body));
    look.letter = font("default", std::max(look.units(65), body));
    look.low_letter = font("default", std::max(look.units(55), label));
    look.special_letter = font("defaultb", std::max(look.units(45), label));
    look.word = font("default", std::max(look.units(45), label));
    look.small_word = font("default", std::max(look.units(40), label * 3 / 4));
    return look;
}

} // namespace keyboard
