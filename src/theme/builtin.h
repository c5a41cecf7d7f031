// SPDX-License-Identifier: MIT
// The pictures compiled into the library, from the files under cimages/.
#pragma once

#include <span>

#include "kelvane/bitmaps.h"

namespace theme {

// A picture's name and its bytes in the form of an ibitmap.
struct BuiltinImage {
    const char *name;
    const void *bitmap;
};

// Sorted by name.
extern const std::span<const BuiltinImage> builtin_images;

// The built-in picture of that name, or null. It is never freed and never written to; the pointer
// is not const because it serves as the default of GetResource().
ibitmap *builtin_image(const char *name);

} // namespace theme
