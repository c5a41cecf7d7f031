// SPDX-License-Identifier: MIT
// Where the parts of the status panel stand, and the pictures and letters they are made of.
#pragma once

#include <array>
#include <memory>
#include <string>

#include "kelvane/canvas.h"
#include "panel/contents.h"
#include "text/font_ptr.h"
#include "theme/parameters.h"

namespace panel {

enum class Part { clock, text, pages, lock, network, plug, percent, battery };
inline constexpr size_t parts = 8;

struct Look {
    text::FontPtr bold, regular;
    std::array<theme::Picture, 6> battery; // by level
    theme::Picture plug, lock, no_network, network;
    int unit = 4;
    int rule = 1; // as thick as the hairlines of the screen

    int gap() const { return 2 * unit; }
    int margin() const { return 6 * unit; }
};

// One part: a text in a font, or a picture.
struct Item {
    irect place{}; // empty: not shown
    std::string text;
    const ifont *font = nullptr;
    const ibitmap *picture = nullptr;
    bool operator==(const Item &other) const;
};
using Items = std::array<Item, parts>;

// That of the open theme, on the screen as it is held.
const Look &look();
void drop_look();

// The parts on the strip: time and text from its start, the others from its end, mirrored where the
// interface runs right to left. What finds no room is left out. Throws bad_alloc.
Items lay_out(const Contents &contents, const irect &strip);

} // namespace panel
