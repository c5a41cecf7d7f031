// SPDX-License-Identifier: MIT
// What the screen shows in an area, to be put back after something was drawn there.
#pragma once

#include <cstdint>
#include <memory>

#include "kelvane/canvas.h"
#include "raster/clip.h"
#include "runtime/night.h"

namespace modal {

class SavedArea {
  public:
    // Keeps what the screen shows, to the last bit, whatever canvas is current. `covered` is what
    // will be drawn above it, where the night has no pictures meanwhile. False when memory is
    // short, or there is no screen or no area of it.
    bool save(const irect &area, const irect &covered);
    bool save(const irect &area) { return save(area, area); }
    // Draws it back, once; false when nothing is kept, or the screen was turned since.
    bool restore();
    // Whether the screen still shows there what was saved, to the last bit.
    bool is_on_screen() const;
    // Leaves on the screen what is there.
    void drop();

  private:
    std::unique_ptr<uint8_t[]> pixels_; // rows without gaps
    night::Cover cover_;
    raster::Area area_;
    int orientation_ = 0;
};

} // namespace modal
