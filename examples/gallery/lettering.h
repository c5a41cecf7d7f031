// SPDX-License-Identifier: MIT
// Labels: a line of text in the default font.
#pragma once

#include <kelvane.hpp>

enum class Align { left, centre, right };

// Sizes of type in pixels; nothing is smaller than small.
enum class Type { small, label, body, title };
int size_of(Type type);
// Of a capital letter.
int capital_height(int size);

struct Ink {
    int size = size_of(Type::small);
    int color = BLACK;
    bool bold = false;
};

int text_width(const char *text, const Ink &ink);
// `x` is the left end, the middle or the right end, `y` the top of the capitals.
void draw_text(int x, int y, const char *text, const Ink &ink, Align align = Align::left);
