// SPDX-License-Identifier: MIT
// Bitmap records: making and copying.
#include "raster/bitmap.h"

#include <cstring>
#include <utility>

#include "hw.h"
#include "raster/bitmap_tracker.h"

namespace raster {

BitmapTracker bitmap_tracker;

int native_depth() {
    return hw_depth() == 2 ? 2 : 4;
}

BitmapPtr make_bitmap(int w, int h, int depth, MaskRoom mask) {
    if (w < 1 || h < 1 || w > max_bitmap_side || h > max_bitmap_side) return nullptr;
    const size_t scanline =
        (size_t{static_cast<unsigned>(w)} * static_cast<unsigned>(depth) + 7) / 8;
    if (scanline > 0xFFFF) return nullptr;
    const ibitmap head{static_cast<uint16_t>(w), static_cast<uint16_t>(h),
                       static_cast<uint16_t>(depth), static_cast<uint16_t>(scanline)};
    const size_t bytes = pixel_bytes(head) + (mask == MaskRoom::reserved ? mask_bytes(head) : 0);
    BitmapPtr bm(static_cast<ibitmap *>(std::malloc(sizeof head + bytes + bitmap_spare_bytes)));
    if (!bm) return nullptr;
    std::memcpy(bm.get(), &head, sizeof head);
    std::memset(bm->data + bytes, 0, bitmap_spare_bytes);
    return bm;
}

BitmapPtr make_white_bitmap(int w, int h) {
    BitmapPtr bm = make_bitmap(w, h, native_depth());
    if (bm) std::memset(bm->data, 0xFF, pixel_bytes(*bm));
    return bm;
}

ibitmap *release_copy(const ibitmap &from, BitmapPtr copy) {
    DebugResourceBitmaps_trackBitmapCopy(&from, copy.get());
    return copy.release();
}

} // namespace raster

using namespace raster;

ibitmap *NewBitmap(int w, int h) {
    return make_white_bitmap(w, h).release();
}

ibitmap *CopyBitmapNoTrack(const ibitmap *bm) {
    if (!bm) return nullptr;
    const size_t used = sizeof *bm + used_bytes(*bm);
    void *copy = std::calloc(1, used + bitmap_spare_bytes);
    if (!copy) return nullptr;
    return static_cast<ibitmap *>(std::memcpy(copy, bm, used));
}

ibitmap *CopyBitmap(const ibitmap *bm) {
    BitmapPtr copy(CopyBitmapNoTrack(bm));
    return copy ? release_copy(*bm, std::move(copy)) : nullptr;
}

void DebugResourceBitmaps_trackBitmapDrawing(const ibitmap *bm, int x, int y) {
    if (bitmap_tracker.drawn) bitmap_tracker.drawn(bm, x, y);
}

void DebugResourceBitmaps_trackBitmapCopy(const ibitmap *from, const ibitmap *to) {
    if (bitmap_tracker.copied) bitmap_tracker.copied(from, to);
}
