// SPDX-License-Identifier: MIT
// What LoadPicture() asks of each format: true greys, and no say of flags and themes.
#pragma once

#include <cstdint>
#include <cstdio>
#include <span>

#include "image/pipeline.h"
#include "image/place.h"
#include "raster/bitmap_ptr.h"

namespace image {

struct Request {
    Size wanted; // -1: the picture's own
    Shape shape;
    Finish finish;

    Placement place(Size picture) const {
        return place_picture(picture, resolved(wanted, picture), shape);
    }
};

// Null when the picture is damaged or of a kind that is not read. Each throws bad_alloc, also for
// a picture that is unreasonably large.
raster::BitmapPtr decode_png(std::span<const uint8_t> file, const Request &request);
raster::BitmapPtr decode_jpeg(std::FILE *file, const Request &request);
raster::BitmapPtr decode_tiff(const char *path, const Request &request);
raster::BitmapPtr decode_bmp(std::span<const uint8_t> file, const Request &request);

} // namespace image
