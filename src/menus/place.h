// SPDX-License-Identifier: MIT
// Where menus go on the screen.
#pragma once

#include "kelvane/menus.h"

namespace menus {

enum class PlacedBy {
    corner,  // its own top left
    submenu, // the row of a plain menu that opens it
    item     // what a context menu belongs to
};

struct Anchor {
    PlacedBy by = PlacedBy::corner;
    int x = 0, y = 0; // of the corner
    irect item{};     // the row, as wide as its menu, or the item
    int side = MENU_SIDE_AUTO;
    int overlap = 0; // of a submenu and its parent; of a context menu less than 0: the gap
};

// The screen without caption and panel.
irect page_area();
// What menus may cover: that without margins.
irect menu_area();

// The rectangle of a menu. As much of it as fits is inside the area; `flags` is the side that was
// taken.
irect place(const Anchor &anchor, int w, int h, const irect &area);

// What leads to the item from what was placed beside it.
struct Pointer {
    int w, h;           // of the picture
    int border, radius; // of what it belongs to
};
// Above or below, in the middle of the item as far as the corners allow; its base opens the border.
// Empty unless `placed` lies on the side of the item that its flags tell.
irect place_pointer(const irect &placed, const irect &item, const Pointer &pointer);

} // namespace menus
