// SPDX-License-Identifier: MIT
// Capital letters, digits and a few signs as smooth strokes of any size: enough for labels in an
// application that draws with nothing but the canvas.
#pragma once

#include <string_view>

#include <kelvane.h>

enum class Align { left, centre, right };

struct Ink {
    int height;        // of a capital letter, in pixels
    int color = BLACK; // a grey; edges are blended into `paper`
    int paper = WHITE;
    bool bold = false;
};

// Small letters are drawn as capitals, unknown signs as gaps.
int text_width(std::string_view text, int height);
// `x` is the left end, the middle or the right end, `y` the top of the capitals.
void draw_text(int x, int y, std::string_view text, const Ink &ink, Align align = Align::left);
