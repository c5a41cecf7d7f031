// SPDX-License-Identifier: MIT
// Title bars, and the frame of lists that are no whole screen.
#pragma once

#include <string>

#include "kelvane/canvas.h"
#include "kelvane/gestures.h"
#include "text/font_ptr.h"
#include "theme/parameters.h"

namespace selectors {

struct TitleBar {
    irect place{};
    text::FontPtr font;
    int background = 0;
    int h = 0, margin = 0, rule = 0;
    int below = 0;       // what stays free: a black row is no part of a black bar
    theme::Picture exit; // where only a finger could use it; else empty
    kv_gestures hand{};

    int height() const { return h; }
    irect exit_place() const;
    // Whether an event ends a tap on the button.
    bool takes_tap(int type, int par1, int par2);
};

// The bar of the theme's captions, without a place.
TitleBar load_title_bar();
// What is left out of a title that is too long: its end, or, of a path, its first folders.
enum class Cut { end, start };
// `title` is a key of the language, or a path.
void draw_title_bar(const TitleBar &bar, const std::string &title, Cut cut);

// Where a window lies, its frame and white rim included: all of it on the screen, as near as may be
// to where it was wanted.
irect window_place(const irect &wanted, const irect &screen);
irect window_inside(const irect &place);
// To be drawn last, as contents reach into its round corners.
void draw_window_border(const irect &place);

} // namespace selectors
