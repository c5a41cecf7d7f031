// SPDX-License-Identifier: MIT
// Fits bitmaps into rectangles: tiled, stretched, aligned.
#include <algorithm>
#include <cstdint>

#include "ground/number.h"
#include "kelvane/bitmaps.h"
#include "kelvane/canvas.h"
#include "raster/bitmap.h"
#include "raster/bitmap_tracker.h"
#include "raster/clip.h"

namespace {

using namespace raster;

// The first tile edge whose tile reaches beyond `from`.
int64_t first_tile(int64_t origin, int64_t from, int size) {
    return origin + (from - origin) / size * size;
}

// One axis of a rectangle and of the part of a bitmap that is drawn in it.
struct Span {
    int64_t at, size, source;
};

// Where a bitmap of `own` pixels lies in a span of another size. What does not fit is cut off on
// the side where a smaller bitmap would leave room.
Span align(int64_t at, int size, int own, bool middle, bool end) {
    const auto shift = [=](int64_t room) { return middle ? room / 2 : end ? room : 0; };
    if (size > own) return {at + shift(size - own), own, 0};
    return {at, size, shift(own - size)};
}

void draw_aligned(int x, int y, int w, int h, const ibitmap &bm, int flags) {
    const Span across =
        align(x, w, bm.width, (flags & BITMAP_CENTER) != 0, (flags & BITMAP_RIGHT) != 0);
    const Span down =
        align(y, h, bm.height, (flags & BITMAP_MIDDLE) != 0, (flags & BITMAP_BOTTOM) != 0);
    draw_bitmap_part(across.at, down.at, bm, across.source, down.source, across.size, down.size);
    DebugResourceBitmaps_trackBitmapDrawing(&bm, ground::saturated(across.at),
                                            ground::saturated(down.at));
}

// The whole ratios alone decide which side is filled, so a drawing may grow beyond the rectangle.
void stretch_proportionally(int x, int y, int w, int h, const ibitmap &bm, int flags) {
    if (bm.height / bm.width > h / w) {
        const int width = ground::saturated(int64_t{bm.width} * h / bm.height);
        StretchBitmap(ground::saturated(x + (int64_t{w} - width) / 2), y, width, h, &bm, flags);
    } else {
        const int height = ground::saturated(int64_t{bm.height} * w / bm.width);
        StretchBitmap(x, ground::saturated(y + (int64_t{h} - height) / 2), w, height, &bm, flags);
    }
}

} // namespace

void TileBitmap(int x, int y, int w, int h, const ibitmap *bm) {
    if (!bm || bm->width == 0 || bm->height == 0) return;
    const Area shown = clip_area(GetCanvas(), x, y, w, h);
    const int64_t right = int64_t{x} + w, bottom = int64_t{y} + h;
    if (shown.empty()) return;
    for (int64_t ty = first_tile(y, shown.y, bm->height); ty < shown.y + shown.h; ty += bm->height)
        for (int64_t tx = first_tile(x, shown.x, bm->width); tx < shown.x + shown.w;
             tx += bm->width)
            draw_bitmap_part(tx, ty, *bm, 0, 0, std::min<int64_t>(bm->width, right - tx),
                             std::min<int64_t>(bm->height, bottom - ty));
    DebugResourceBitmaps_trackBitmapDrawing(bm, x, y);
}

void StretchBitmap(int x, int y, int w, int h, const ibitmap *bm, int flags) {
    if (!bm || w < 1 || h < 1) return;
    kv_stretch(bm->data, depth_of(*bm), 0, 0, bm->width, rows_inside(*bm, bm->width), bm->scanline,
               x, y, w, h, flags, has_mask(*bm) ? mask_of(*bm) : nullptr,
               static_cast<int>(mask_scanline(*bm)));
    DebugResourceBitmaps_trackBitmapDrawing(bm, x, y);
}

void DrawBitmapRect(int x, int y, int w, int h, const ibitmap *bm, int flags) {
    if (!bm || w < 1 || h < 1 || bm->width == 0 || bm->height == 0) return;
    if ((flags & BITMAP_FIT) != 0)
        stretch_proportionally(x, y, w, h, *bm, flags);
    else if ((flags & BITMAP_STRETCH) != 0)
        StretchBitmap(x, y, w, h, bm, flags);
    else if ((flags & BITMAP_TILE) != 0)
        TileBitmap(x, y, w, h, bm);
    else
        draw_aligned(x, y, w, h, *bm, flags);
}

void DrawBitmapRect2(const irect *r, const ibitmap *bm) {
    if (r) DrawBitmapRect(r->x, r->y, r->w, r->h, bm, r->flags);
}
