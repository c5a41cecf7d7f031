// SPDX-License-Identifier: MIT
// Filled areas, for the shapes made of them.
#pragma once

#include <cstdint>

#include "raster/clip.h"
#include "raster/pixels.h"

namespace raster {

// Fills an area that lies inside the canvas.
void fill(const icanvas &c, const Area &a, const Ink &ink);

// Fills what may be written of a rectangle; nothing without a canvas.
void fill_clipped(const icanvas *c, int64_t x, int64_t y, int64_t w, int64_t h, int color);

} // namespace raster
