// SPDX-License-Identifier: MIT
// What the theme says about keyboards.
#pragma once

#include "raster/bitmap_ptr.h"
#include "text/font_ptr.h"
#include "theme/parameters.h"

namespace keyboard {

// The three pieces of a key.
struct KeyPicture {
    theme::Picture left, center, right;
    raster::BitmapPtr wide_center; // the same several times; null where that cannot be

    const ibitmap *middle() const { return wide_center ? wide_center.get() : center.get(); }
};

// What a key shows instead of a letter, on its own ground and on black.
struct KeySymbol {
    theme::Picture plain, pressed;
};

struct Lengths {
    int unit = 0;
    int border = 0, hairline = 0;
    int radius = 0; // of the sheet

    int units(int tenths) const { return unit * tenths / 10; }
};

struct Look : Lengths {
    KeyPicture key, special, pressed;
    KeySymbol shift, clear, numbers, backspace, enter, cancel;
    theme::Picture clear_entry, eye, eye_struck;
    text::FontPtr title, entry;
    text::FontPtr letter, low_letter; // of keys for fingers, and of those for five keys
    text::FontPtr special_letter, word, small_word;
};

// The look of the theme at this moment. Lengths are cut so that sums of a few are an int.
Lengths load_lengths();
Look load_look();

} // namespace keyboard
