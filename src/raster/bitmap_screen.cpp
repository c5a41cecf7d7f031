// SPDX-License-Identifier: MIT
// Copies parts of the canvas into bitmaps.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "ground/guard.h"
#include "kelvane/bitmaps.h"
#include "kelvane/canvas.h"
#include "raster/bitmap.h"
#include "raster/bitmap_rows.h"
#include "raster/clip.h"

namespace {

using namespace raster;

// The canvas as seen by someone who turned it: the pixel at column c of row r lies at
// origin + c * column_step + r * row_step.
struct TurnedCanvas {
    const icanvas *canvas;
    int width, height;
    const uint8_t *origin;
    ptrdiff_t column_step, row_step;
};

TurnedCanvas turned(const icanvas &c, int rotate) {
    const ptrdiff_t pixel = bytes_per_pixel(c), line = c.scanline;
    const uint8_t *last_column = c.addr + (c.width - 1) * pixel;
    const uint8_t *last_row = c.addr + (c.height - 1) * line;
    switch (rotate) {
    case 1:
        return {&c, c.height, c.width, last_row, -line, pixel};
    case 2:
        return {&c, c.height, c.width, last_column, line, -pixel};
    case 3:
        return {&c, c.width, c.height, last_row + (c.width - 1) * pixel, -pixel, -line};
    default:
        return {&c, c.width, c.height, c.addr, pixel, line};
    }
}

// A canvas row's pixels as bytes whose highest bits are the level: depth 4 takes four of them.
void read_grey(const uint8_t *from, ptrdiff_t step, size_t count, uint8_t *levels) {
    if (step == 1)
        std::memcpy(levels, from, count);
    else
        for (size_t i = 0; i < count; ++i, from += step) levels[i] = *from;
}

// The same of colours. Only the first pixel of a depth-4 byte has the full range; the others are
// read in four levels.
void read_rgb(const uint8_t *from, ptrdiff_t step, size_t first, size_t count, int depth,
              uint8_t *levels) {
    for (size_t i = first; i < first + count; ++i, from += step) {
        const int sum = 3 * from[0] + 6 * from[1] + from[2];
        const int level = depth == 4 && i % 2 == 0 ? sum / 160 : sum / 640;
        levels[i] = static_cast<uint8_t>(level << (8 - depth));
    }
}

// Fills the bitmap from the part of the turned canvas that starts at (x, y); the bitmap keeps its
// white where there is no canvas.
void copy_part(const TurnedCanvas &from, int x, int y, ibitmap &bm) {
    const Area shared =
        clip_area(Bounds{0, 0, from.width - 1, from.height - 1}, x, y, bm.width, bm.height);
    if (shared.empty()) return;
    const size_t first_column = static_cast<size_t>(int64_t{shared.x} - x);
    const size_t first_row = static_cast<size_t>(int64_t{shared.y} - y);
    const size_t columns = static_cast<size_t>(shared.w);
    std::vector<uint8_t> levels(size_t{bm.scanline} * 4, 0xFF);
    const uint8_t *start = from.origin + shared.x * from.column_step + shared.y * from.row_step;
    // Rows of grey bytes that fill the bitmap's rows to the last bit need no buffer.
    const bool whole_rows =
        from.column_step == 1 && shared.w == bm.width && shared.w * depth_of(bm) % 8 == 0;
    for (int r = 0; r < shared.h; ++r, start += from.row_step) {
        if (whole_rows) {
            pack_row(start, bm, first_row + static_cast<size_t>(r));
            continue;
        }
        if (from.canvas->depth == 8)
            read_grey(start, from.column_step, columns, levels.data() + first_column);
        else
            read_rgb(start, from.column_step, first_column, columns, depth_of(bm), levels.data());
        pack_row(levels.data(), bm, first_row + static_cast<size_t>(r));
    }
}

} // namespace

ibitmap *BitmapFromScreen(int x, int y, int w, int h) {
    return BitmapFromScreenR(x, y, w, h, 0);
}

ibitmap *BitmapFromScreenR(int x, int y, int w, int h, int rotate) {
    return ground::guarded(nullptr, [&]() -> ibitmap * {
        BitmapPtr bm = make_white_bitmap(w, h);
        const icanvas *c = GetCanvas();
        if (bm && c && is_drawable(*c)) {
            icanvas readable = *c; // rows hold no more than their bytes
            readable.width = std::min(c->width, c->scanline / bytes_per_pixel(*c));
            if (readable.width > 0) copy_part(turned(readable, rotate), x, y, *bm);
        }
        return bm.release();
    });
}
