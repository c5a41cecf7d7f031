// SPDX-License-Identifier: MIT
// Lets a diagnostic tool hear of bitmaps being drawn, copied and found in a theme. Nothing listens
// by default.
#pragma once

#include "kelvane/bitmaps.h"

namespace raster {

struct BitmapTracker {
    void (*drawn)(const ibitmap *bm, int x, int y) = nullptr;
    void (*copied)(const ibitmap *from, const ibitmap *to) = nullptr;
    // While it is set, a default is never handed out itself, but as a copy.
    void (*found)(const ibitmap *bm, const char *name) = nullptr;
};
extern BitmapTracker bitmap_tracker;

} // namespace raster

extern "C" {
void DebugResourceBitmaps_trackBitmapDrawing(const ibitmap *bm, int x, int y);
void DebugResourceBitmaps_trackBitmapCopy(const ibitmap *from, const ibitmap *to);
}
