// SPDX-License-Identifier: MIT
// Pictures the way they are shown.
#pragma once

#include "raster/bitmap_ptr.h"

namespace image {

// A bitmap of the panel's depth turned and mirrored: by an orientation of picture_header.h. Throws
// bad_alloc.
raster::BitmapPtr turned(raster::BitmapPtr stored, int orientation);

} // namespace image
