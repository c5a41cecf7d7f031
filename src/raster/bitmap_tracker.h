// SPDX-License-Identifier: MIT
// Lets a diagnostic tool hear of bitmaps being drawn and copied. Nothing listens by default.
#pragma once

#include "kelvane/bitmaps.h"

namespace raster {

struct BitmapTracker {
    void (*drawn)(const ibitmap *bm, int x, int y) = nullptr;
    void (*copied)(const ibitmap *from, const ibitmap *to) = nullptr;
};
extern BitmapTracker bitmap_tracker;

} // namespace raster

extern "C" {
void DebugResourceBitmaps_trackBitmapDrawing(const ibitmap *bm, int x, int y);
void DebugResourceBitmaps_trackBitmapCopy(const ibitmap *from, const ibitmap *to);
}
