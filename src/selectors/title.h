// SPDX-License-Identifier: MIT
// Title bars, and the frame of lists that are no whole screen.
#pragma once

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
void draw_title_bar(const TitleBar &bar, const char *title);

// As much of a window as lies on the screen, its frame and white rim included.
irect window_place(const irect &wanted, const irect &screen);
irect window_inside(const irect &place);
// To be drawn last, as contents reach into its round corners.
void draw_window_border(const irect &place);

} // namespace selectors
