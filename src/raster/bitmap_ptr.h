// SPDX-License-Identifier: MIT
// A bitmap that frees itself, for whoever keeps one inside the library.
#pragma once

#include "ground/heap.h"
#include "kelvane/bitmaps.h"

namespace raster {

using BitmapPtr = ground::HeapPtr<ibitmap>;

} // namespace raster
