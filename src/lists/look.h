// SPDX-License-Identifier: MIT
// What the theme says about lists.
#pragma once

#include <algorithm>
#include <memory>

#include "raster/bitmap_ptr.h"
#include "text/font_ptr.h"
#include "theme/parameters.h"

namespace lists {

struct Look {
    int unit, hairline;
    int margin;     // from the sides of the screen to what is written there
    int row_h;      // of plain rows
    int strip_h;    // of the strip with the counter
    bool has_lines; // between plain rows
    bool is_rtl;
    int disabled_color;
    text::FontPtr body, bold, small, counter;
    theme::Picture bullet, bullet_chosen;
    theme::Picture page_left, page_right; // of the strip, as they stand on the screen
    theme::Picture arrow;
    raster::BitmapPtr mirrored_arrow; // where the interface runs right to left, else null

    int units(int tenths) const { return unit * tenths / 10; }
    // Rows of several lines keep this much above and below free.
    int gap() const { return unit; }
    // Those with covers, which are 20 units high between borders; larger type has larger ones.
    int cover_row_h() const { return std::max(2 * row_h, 24 * unit); }
    // Those with two lines; less high ones have one.
    int lined_row_h() const { return row_h * 4 / 3; }
    bool is_lined(int h) const { return h >= lined_row_h(); }
    // How thick a bar is.
    int bar_h() const { return std::max(unit, 3 * hairline); }
    const ibitmap *row_arrow() const { return mirrored_arrow ? mirrored_arrow.get() : arrow.get(); }
};
using LookPtr = std::shared_ptr<const Look>;

// The look of the theme as it is now; kept as long as nothing changes it. Throws bad_alloc.
LookPtr look();
void drop_look();

} // namespace lists
