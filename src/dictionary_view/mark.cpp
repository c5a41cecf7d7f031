// SPDX-License-Identifier: MIT
// Inverts the word and puts it back.
#include "dictionary_view/mark.h"

#include "internal.h"
#include "raster/rects.h"
#include "raster/screen_scope.h"

namespace dictionary_view {

// Cut to the screen, so that sums of it and a few lengths are an int.
Mark::Mark(const irect *where) {
    const icanvas *screen = kvstate.framebuffer;
    if (!where || !screen || where->w < 1 || where->h < 1) return;
    const raster::Area cut = raster::clip_area({0, 0, screen->width - 1, screen->height - 1},
                                               where->x, where->y, where->w, where->h);
    if (!cut.empty()) where_ = {cut.x, cut.y, cut.w, cut.h, 0};
}

void Mark::show() {
    if (!where()) return;
    under_.save(where_);
    draw();
}

void Mark::draw() const {
    if (!where()) return;
    const raster::ScreenScope screen;
    InvertArea(where_.x, where_.y, where_.w, where_.h);
}

bool Mark::hide() {
    return !where() || under_.restore();
}

} // namespace dictionary_view
