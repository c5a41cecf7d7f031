// SPDX-License-Identifier: MIT
// What the screen shows in an area, to be put back after something was drawn there.
#pragma once

#include "kelvane/canvas.h"
#include "raster/bitmap.h"

namespace modal {

class SavedArea {
  public:
    // Keeps what the screen shows, whatever canvas is current; false when memory is short, or there
    // is no screen or no area.
    bool save(const irect &area);
    // Draws it back, once; false when nothing is kept.
    bool restore();
    // Leaves on the screen what is there.
    void drop() { picture_.reset(); }

  private:
    raster::BitmapPtr picture_;
    int x_ = 0, y_ = 0;
};

} // namespace modal
