// SPDX-License-Identifier: MIT
// What the theme says about boxes.
#pragma once

#include <array>

#include "dialogs/layout.h"
#include "theme/parameters.h"

namespace dialogs {

// Loaded with the first box and kept until the screen closes.
struct Look {
    int separator_color;
    std::array<theme::Picture, 5> icons;
    theme::Picture bar_left, bar_right, bar_left_empty, bar_right_empty, bar_middle;
    text::FontPtr label_font; // null where the theme's button font serves
};
const Look &look();
void drop_look();

const ifont *window_font();
const ifont *label_font();

// The icon of a flag word; null for an unknown kind and where the theme has none.
const ibitmap *icon_of(int flags);

// A length of the theme, cut so that sums of a few are an int.
int theme_length(const char *name, int deflt);

Measures measures_with(const ibitmap *icon);

// Selected buttons are black with an inverted label; otherwise they get a marker.
bool inverts_selection();

} // namespace dialogs
