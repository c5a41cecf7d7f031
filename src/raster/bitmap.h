// SPDX-License-Identifier: MIT
// What the bitmap sources share: sizes and parts of the one-block bitmap.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "kelvane/bitmaps.h"
#include "raster/bitmap_ptr.h"

static_assert(sizeof(ibitmap) == 8, "pixels start 8 bytes into the block");

namespace raster {

inline constexpr int max_bitmap_side = 0xFFFF;
inline constexpr size_t bitmap_spare_bytes = 4; // behind the last row

enum class MaskRoom { none, reserved };

inline int depth_of(const ibitmap &bm) {
    return bm.depth & BITMAP_DEPTH;
}
inline bool has_mask(const ibitmap &bm) {
    return (bm.depth & BITMAP_MASK) != 0;
}
inline size_t mask_scanline(const ibitmap &bm) {
    return (size_t{bm.width} + 7) / 8;
}
inline size_t pixel_bytes(const ibitmap &bm) {
    return size_t{bm.scanline} * bm.height;
}
inline size_t mask_bytes(const ibitmap &bm) {
    return mask_scanline(bm) * bm.height;
}
// Where the mask is, or would be.
inline uint8_t *mask_of(ibitmap &bm) {
    return bm.data + pixel_bytes(bm);
}
inline const uint8_t *mask_of(const ibitmap &bm) {
    return bm.data + pixel_bytes(bm);
}

// How many rows have `columns` pixels inside the block. Rows may be shorter than the width says:
// their last pixels are then the first ones of the next row, or spare bytes.
inline int rows_inside(const ibitmap &bm, int64_t columns) {
    const int64_t row_bytes = (columns * depth_of(bm) + 7) / 8;
    if (row_bytes <= bm.scanline) return bm.height;
    const int64_t last = static_cast<int64_t>(pixel_bytes(bm) + bitmap_spare_bytes) - row_bytes;
    if (last < 0) return 0;
    return bm.scanline == 0
               ? bm.height
               : static_cast<int>(std::min<int64_t>(bm.height, last / bm.scanline + 1));
}

// How many bytes of data its pixels and its mask take. In rows shorter than the width says, the
// last pixels may take spare bytes; other bitmaps need not have any.
inline size_t used_bytes(const ibitmap &bm) {
    const size_t pixels = pixel_bytes(bm);
    if (has_mask(bm)) return pixels + mask_bytes(bm);
    const size_t row = (size_t{bm.width} * static_cast<unsigned>(depth_of(bm)) + 7) / 8;
    const size_t too_short = row > bm.scanline && bm.height > 0 ? row - bm.scanline : 0;
    return pixels + std::min(too_short, bitmap_spare_bytes);
}

// The depth of new bitmaps: 4, or 2 on a panel of four greys.
int native_depth();

// A bitmap of a given packed depth whose pixels, and mask bytes when room for them is asked for,
// are not set; null for a side or a row that the record cannot hold, or when memory runs out.
BitmapPtr make_bitmap(int w, int h, int depth, MaskRoom mask = MaskRoom::none);

// make_bitmap() of the panel's depth, all white.
BitmapPtr make_white_bitmap(int w, int h);

// A copy that is turned over, with the bits of MirrorBitmap(). Null for no picture, or when memory
// runs out.
BitmapPtr mirrored(const ibitmap *bm, int flags);

// Hands a copy to the caller; the bitmap tracker hears of it.
ibitmap *release_copy(const ibitmap &from, BitmapPtr copy);

// Draws a part of the bitmap, which may reach beyond it on any side, at (x, y).
void draw_bitmap_part(int64_t x, int64_t y, const ibitmap &bm, int64_t sx, int64_t sy, int64_t w,
                      int64_t h);

} // namespace raster
