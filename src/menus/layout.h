// SPDX-License-Identifier: MIT
// How wide and high a menu is, and where the parts of its rows are. Nothing is drawn here.
#pragma once

#include "menus/look.h"

namespace menus {

// From the side at which lines of text begin: the indent, bullets, icons, the text, arrows, the
// indent. A part that no row has takes no room.
struct Columns {
    int indent = 0, bullet_w = 0, icon_w = 0, arrow_w = 0;
    int scroll_w = 0; // of the scroll bar, between the last indent and the border
    int text_offset() const { return indent + bullet_w + icon_w; }
    int beyond_text() const { return arrow_w + indent + scroll_w; }
};

struct Layout {
    Level level;
    Columns columns;
    int w = 0, h = 0;
    int content_h = 0; // more than h where a finger moves the rows
};

enum class ExitButton { none, in_header };

struct Fonts {
    const ifont *all = nullptr; // what SetMenuFont() chose; null: the look's
};

// The font of a label. The selected one counts where it fills its row; titles are as bold.
enum class LabelState { plain, selected, disabled, title };
const ifont *label_font(const Look &look, const Fonts &fonts, const Item &item, LabelState state);

struct Request {
    const imenuex *menu;
    int position; // of the item selected first
    OwnFonts own_fonts;
    ExitButton exit;
    Fonts fonts;
};
// "2 / 3", of pages that count from 0.
struct Counter {
    char text[32];
};
Counter counter(int page, int last_page);

// Lays out a menu that gets at most this room. Throws bad_alloc.
Layout lay_out(const Request &request, const Look &look, int room_w, int room_h);

} // namespace menus
