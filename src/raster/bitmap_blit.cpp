// SPDX-License-Identifier: MIT
// Draws bitmaps onto the canvas.
#include <algorithm>
#include <cstdint>

#include "kelvane/bitmaps.h"
#include "kelvane/canvas.h"
#include "raster/bitmap.h"
#include "raster/bitmap_rows.h"
#include "raster/bitmap_tracker.h"
#include "raster/clip.h"
#include "raster/pixels.h"

namespace {

using namespace raster;

using RowConverter = void (*)(const kv_img_conv *);

// What whole-row conversion there is for a depth; null for none.
RowConverter converter_of(int depth) {
    switch (depth) {
    case 4:
        return kv_gs4_to_gs;
    case 8:
        return kv_gs_to_gs;
    case 16:
        return kv_rgb565_to_gs;
    case 24:
        return kv_rgb24_to_gs;
    default:
        return nullptr;
    }
}

// Whether rows may be converted as aligned words. Depths 16 and 24 look different when they are.
bool is_word_aligned(const icanvas &c, const ibitmap &bm, const Area &to, int sx) {
    return c.depth == 8 && !has_mask(bm) && to.w >= 16 &&
           reinterpret_cast<uintptr_t>(bm.data) % 4 == 0 && sx % 8 == 0 && to.x % 4 == 0 &&
           bm.scanline % 4 == 0 && c.scanline % 4 == 0;
}

void convert_rows(const icanvas &c, const ibitmap &bm, const Area &to, int sx, int sy,
                  RowConverter convert) {
    const uint8_t *from = bm.data + size_t{bm.scanline} * static_cast<unsigned>(sy) +
                          static_cast<unsigned>(sx) * static_cast<unsigned>(depth_of(bm)) / 8;
    const kv_img_conv conv{const_cast<uint8_t *>(from),
                           pixel_address(c, to.x, to.y),
                           to.w,
                           to.h,
                           bm.scanline,
                           c.scanline};
    convert(&conv);
}

void put_grey_as_rgb(uint8_t *pixels, const uint8_t *grey, size_t count, const BitRow *mask) {
    for (size_t i = 0; i < count; ++i)
        if (!mask || mask->bit(i)) pixels[3 * i] = pixels[3 * i + 1] = pixels[3 * i + 2] = grey[i];
}

// Draws one row that has a mask or goes to 24-bit pixels, by way of a buffer of greys.
void draw_row_buffered(const icanvas &c, uint8_t *pixels, const uint8_t *row, int depth, size_t sx,
                       size_t count, const uint8_t *mask_row) {
    constexpr size_t piece = 512;
    uint8_t grey[piece];
    for (size_t done = 0; done < count; done += piece) {
        const size_t n = std::min(piece, count - done);
        row_to_grey(row, depth, sx + done, n, grey);
        const BitRow mask(mask_row, mask_row ? sx + done : 0);
        if (c.depth == 24)
            put_grey_as_rgb(pixels + 3 * done, grey, n, mask_row ? &mask : nullptr);
        else
            put_masked(pixels + done, grey, n, mask);
    }
}

void draw_rows(const icanvas &c, const ibitmap &bm, const Area &to, int sx, int sy) {
    const size_t x = static_cast<size_t>(sx), count = static_cast<size_t>(to.w);
    const bool masked = has_mask(bm);
    for (int i = 0; i < to.h; ++i) {
        const size_t y = static_cast<size_t>(sy) + static_cast<size_t>(i);
        const uint8_t *row = bm.data + y * bm.scanline;
        uint8_t *pixels = pixel_address(c, to.x, to.y + i);
        if (!masked && c.depth == 8)
            row_to_grey(row, depth_of(bm), x, count, pixels);
        else
            draw_row_buffered(c, pixels, row, depth_of(bm), x, count,
                              masked ? mask_of(bm) + y * mask_scanline(bm) : nullptr);
    }
}

} // namespace

void raster::draw_bitmap_part(int64_t x, int64_t y, const ibitmap &bm, int64_t sx, int64_t sy,
                              int64_t w, int64_t h) {
    const icanvas *c = GetCanvas();
    if (!c || !is_known_depth(depth_of(bm))) return;
    const int64_t left = std::max<int64_t>(-sx, 0), top = std::max<int64_t>(-sy, 0);
    x += left, sx += left, w -= left;
    y += top, sy += top, h -= top;
    w = std::min(w, bm.width - sx);
    h = std::min(h, rows_inside(bm, sx + w) - sy);
    const Area to = clip_area(c, x, y, w, h);
    if (to.empty()) return;
    const int from_x = static_cast<int>(sx + to.x - x), from_y = static_cast<int>(sy + to.y - y);
    if (is_word_aligned(*c, bm, to, from_x) && converter_of(depth_of(bm)))
        convert_rows(*c, bm, to, from_x, from_y, converter_of(depth_of(bm)));
    else if (depth_of(bm) != 16)
        draw_rows(*c, bm, to, from_x, from_y);
}

void DrawBitmap(int x, int y, const ibitmap *bm) {
    if (!bm) return;
    draw_bitmap_part(x, y, *bm, 0, 0, bm->width, bm->height);
    DebugResourceBitmaps_trackBitmapDrawing(bm, x, y);
}

void DrawBitmapArea(int x, int y, const ibitmap *bm, int sx, int sy, int w, int h) {
    if (!bm || w < 1 || h < 1) return;
    draw_bitmap_part(x, y, *bm, sx, sy, w, h);
    DebugResourceBitmaps_trackBitmapDrawing(bm, x, y);
}
