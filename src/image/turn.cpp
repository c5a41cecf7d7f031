// SPDX-License-Identifier: MIT
// Turns bitmaps pixel by pixel.
#include "image/turn.h"

#include <cstddef>
#include <cstdint>
#include <new>
#include <utility>
#include <vector>

#include "image/picture_header.h"
#include "raster/bitmap.h"
#include "raster/bitmap_rows.h"

namespace image {
namespace {

constexpr uint8_t white = 255;

// Which way the columns and the rows of a stored picture run.
struct Turn {
    bool stands, from_right, from_bottom;
};

Turn turn_of(int orientation) {
    constexpr Turn turns[] = {{false, false, false}, {false, true, false}, {false, true, true},
                              {false, false, true},  {true, false, false}, {true, false, true},
                              {true, true, true},    {true, true, false}};
    return turns[orientation - upright];
}

std::vector<uint8_t> greys_of(const ibitmap &bm) {
    std::vector<uint8_t> greys(size_t{bm.width} * bm.height);
    for (size_t y = 0; y < bm.height; ++y)
        raster::row_to_grey(bm.data + y * bm.scanline, raster::depth_of(bm), 0, bm.width,
                            greys.data() + y * bm.width);
    return greys;
}

} // namespace

raster::BitmapPtr turned(raster::BitmapPtr stored, int orientation) {
    if (!stored || orientation == upright) return stored;
    const Turn turn = turn_of(orientation);
    const size_t w = stored->width, h = stored->height;
    const std::vector<uint8_t> greys = greys_of(*stored);
    raster::BitmapPtr shown =
        raster::make_bitmap(static_cast<int>(turn.stands ? h : w),
                            static_cast<int>(turn.stands ? w : h), raster::depth_of(*stored));
    if (!shown) throw std::bad_alloc();
    stored.reset();
    std::vector<uint8_t> row(size_t{shown->scanline} * 4, white);
    for (size_t y = 0; y < shown->height; ++y) {
        for (size_t x = 0; x < shown->width; ++x) {
            size_t sx = turn.stands ? y : x, sy = turn.stands ? x : y;
            if (turn.from_right) sx = w - 1 - sx;
            if (turn.from_bottom) sy = h - 1 - sy;
            row[x] = greys[sy * w + sx];
        }
        raster::pack_row(row.data(), *shown, y);
    }
    return shown;
}

} // namespace image
