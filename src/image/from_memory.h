// SPDX-License-Identifier: MIT
// Pictures that are part of another file.
#pragma once

#include <cstdint>
#include <span>

#include "image/place.h"
#include "raster/bitmap_ptr.h"

namespace image {

// A PNG or JPEG, told apart by its first bytes, in its shape in the middle of a bitmap. Null,
// without a word, for anything else and for one that is damaged. Throws bad_alloc.
raster::BitmapPtr load_from_memory(std::span<const uint8_t> bytes, Size wanted);

// The two kinds. `path` is for messages; without one there are none.
raster::BitmapPtr load_png(std::span<const uint8_t> bytes, const char *path, Size wanted,
                           Scaling scaling);
raster::BitmapPtr load_jpeg(std::span<const uint8_t> bytes, Size wanted);

} // namespace image
