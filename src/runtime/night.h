// SPDX-License-Identifier: MIT
// Night: areas of the screen on their way to the panel, turned but for pictures.
#pragma once

#include <vector>

#include "raster/clip.h"

namespace night {

using Areas = std::vector<raster::Area>;

// The screen as the panel is to show it, for as long as it lives: the device has read the
// framebuffer when an update returns. By day, and without a screen, it is as it is.
class Turned {
  public:
    explicit Turned(const raster::Area &area) : area_(area) { turn(); }
    ~Turned() { turn(); }
    Turned(const Turned &) = delete;
    Turned &operator=(const Turned &) = delete;

  private:
    void turn() const;
    raster::Area area_;
};

// For what is drawn above pictures: takes out of their areas those within an area, and puts them
// back with what lay there. Throws bad_alloc; then nothing has changed.
Areas take_pictures(const raster::Area &area);
void put_pictures(const Areas &areas);

// It is day, as when the screen opens.
void reset();

} // namespace night
