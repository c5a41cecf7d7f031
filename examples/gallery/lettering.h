// SPDX-License-Identifier: MIT
// Labels: a line of text in the default font.
#pragma once

#include <kelvane.h>

enum class Align { left, centre, right };

struct Ink {
    int height; // of a capital letter, in pixels
    int color = BLACK;
    bool bold = false;
};

// `x` is the left end, the middle or the right end, `y` the top of the capitals.
void draw_text(int x, int y, const char *text, const Ink &ink, Align align = Align::left);
