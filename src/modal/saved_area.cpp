// SPDX-License-Identifier: MIT
// Copies areas of the screen and draws them back.
#include "modal/saved_area.h"

#include "internal.h"
#include "raster/screen_scope.h"

namespace modal {

bool SavedArea::save(const irect &area) {
    if (!kvstate.framebuffer) return false;
    const raster::ScreenScope screen;
    picture_.reset(BitmapFromScreen(area.x, area.y, area.w, area.h));
    x_ = area.x;
    y_ = area.y;
    return picture_ != nullptr;
}

bool SavedArea::restore() {
    if (!picture_ || !kvstate.framebuffer) return false;
    const raster::ScreenScope screen;
    DrawBitmap(x_, y_, picture_.get());
    picture_.reset();
    return true;
}

} // namespace modal
