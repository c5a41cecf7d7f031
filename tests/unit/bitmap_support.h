// SPDX-License-Identifier: MIT
// Random bitmaps, and what a pixel of a bitmap means.
#pragma once

#include <algorithm>

#include "raster/bitmap.h"
#include "unit/raster_support.h"

namespace bitmaps {

using namespace raster;

inline constexpr int depths[] = {1, 2, 4, 8, 16, 24};

// Descriptions of a device with a panel of 4 and of 2 bits.
inline constexpr const char *panel_of_4 = "0x0010111101013041", *panel_of_2 = "0x0010111101013021";

inline BitmapPtr random_bitmap(Random &random, int w, int h, int depth, bool masked) {
    BitmapPtr bm = make_bitmap(w, h, depth, masked ? MaskRoom::reserved : MaskRoom::none);
    const size_t bytes = pixel_bytes(*bm) + (masked ? mask_bytes(*bm) : 0);
    for (size_t i = 0; i < bytes; ++i) bm->data[i] = static_cast<uint8_t>(random(0, 255));
    if (masked) bm->depth |= BITMAP_MASK;
    return bm;
}

// What the general path makes of a pixel.
inline int grey_at(const ibitmap &bm, int x, int y) {
    const uint8_t *row = bm.data + y * bm.scanline;
    switch (depth_of(bm)) {
    case 1:
        return row[x / 8] >> (7 - x % 8) & 1 ? 255 : 0;
    case 2:
        return (row[x / 4] >> (6 - x % 4 * 2) & 3) * 85;
    case 4:
        return (row[x / 2] >> (x % 2 ? 0 : 4) & 15) * 17;
    case 8:
        return row[x];
    default:
        return (row[3 * x] * 77 + row[3 * x + 1] * 151 + row[3 * x + 2] * 28) >> 8;
    }
}

// The same for any depth, as scaling reads it.
inline int any_grey_at(const ibitmap &bm, int x, int y) {
    if (depth_of(bm) != 16) return grey_at(bm, x, y);
    const uint8_t *pixel = bm.data + y * bm.scanline + 2 * x;
    const int v = pixel[0] | pixel[1] << 8;
    return std::min(255, (v & 31) + 5 * ((v >> 6 & 31) + (v >> 12)));
}

inline bool is_drawn(const ibitmap &bm, int x, int y) {
    const size_t byte = mask_scanline(bm) * static_cast<size_t>(y) + static_cast<size_t>(x / 8);
    return !has_mask(bm) || (mask_of(bm)[byte] >> (7 - x % 8) & 1) != 0;
}

// The number stored for a pixel of at most 8 bits.
inline int raw_at(const ibitmap &bm, int x, int y) {
    const int depth = depth_of(bm), bit = x * depth;
    return bm.data[y * bm.scanline + bit / 8] >> (8 - depth - bit % 8) & ((1 << depth) - 1);
}

} // namespace bitmaps
