// SPDX-License-Identifier: MIT
// What the theme says about dictionaries: the type of articles, and the tools.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>

#include "keyboard/look.h"
#include "raster/bitmap_ptr.h"
#include "text/font_ptr.h"
#include "theme/parameters.h"

namespace dictionary_view {

// The fonts of an article and of what stands beside it.
struct Type {
    text::FontPtr headword, body, number;
    text::FontPtr grammar, oblique; // of one size
    text::FontPtr label, small;
    int body_size, leading;

    // The oblique font, or the upright one of its size where that lacks letters of a text.
    const ifont *oblique_for(const std::string &text) const;
};

struct Look : keyboard::Lengths {
    Type type;
    int rim() const { return 2 * unit; }
    int rule() const { return 2 * hairline; }
    int list_row_h() const { return std::max(units(110), type.body_size * 11 / 5); }
    int list_w() const { return 46 * type.body_size / 5; }
    // What numbers hang in.
    int hang() const { return 13 * type.body_size / 10; }
};
// The look of the theme at this moment. Lengths are cut so that sums of a few are an int.
Look load_look();

// Where lines begin: on the left, or mirrored.
enum class Sides { as_written, mirrored };

// The pictures of the toolbar, in the order of enum Tool.
enum class Tool { word_list, article, voice, keyboard, dictionaries, close };
inline constexpr size_t tool_count = 6;

struct ToolPicture {
    theme::Picture plain, pressed;
};
struct Toolbar {
    theme::Picture ground;
    std::array<ToolPicture, tool_count> tools;
    int tool_w() const { return tools[0].plain.width(); }
    int tool_h() const { return tools[0].plain.height(); }
};
Toolbar load_toolbar();

// What leads from the box to its word.
struct PointerPictures {
    theme::Picture up;
    raster::BitmapPtr down;
};
PointerPictures load_pointer();

} // namespace dictionary_view
