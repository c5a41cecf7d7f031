// SPDX-License-Identifier: MIT
// What the theme says about menus.
#pragma once

#include <array>
#include <memory>

#include "kelvane/theme.h"
#include "menus/level.h"
#include "theme/parameters.h"

namespace menus {

inline constexpr int thumb_w = 5; // of the scroll bar

struct Look {
    icontext_menu_properties p{};
    std::array<text::FontPtr, 3> fonts; // those of `p`, unless a context menu owns them
    text::FontPtr small_font;           // of the counter of pages
    theme::Picture bullet, bullet_selected, arrow, arrow_open, exit, exit_pressed, pointer;
    raster::BitmapPtr mirrored_arrow; // where the interface runs right to left, else null
    raster::BitmapPtr pointer_down;   // the pointer itself points upwards
    int unit;                         // what lengths that have no parameter are measured in
    int exit_x, exit_y;               // from the corner of the header

    int rim() const { return 2 * unit; }
    int rim_radius() const { return p.border_radius > 0 ? p.border_radius + rim() : 0; }
    int rule() const { return 2 * p.separator_height; }
    int separator_h() const { return p.separator_height + 2 * p.separator_indent_vertical; }
    bool fills_selection() const { return p.marker_style == 1; }
    const ibitmap *closed_arrow() const {
        return mirrored_arrow ? mirrored_arrow.get() : arrow.get();
    }
};
using LookPtr = std::shared_ptr<const Look>;

// The look of the theme, or of the properties when they are given. Lengths are cut so that sums of
// a few are an int. That of the theme is kept as long as nothing changes it. Throws bad_alloc.
LookPtr load_look(const icontext_menu_properties *properties);
void drop_look();

} // namespace menus
