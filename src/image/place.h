// SPDX-License-Identifier: MIT
// Where a picture goes in the bitmap that is made for it.
#pragma once

#include "kelvane/canvas.h"

namespace image {

struct Size {
    int width, height;
};

enum class Scaling { stretched, proportional };

inline Scaling scaling_of(int proportional) {
    return proportional != 0 ? Scaling::proportional : Scaling::stretched;
}

struct Placement {
    Size bitmap;
    // Where the picture is drawn; may reach beyond the bitmap and be empty.
    int x, y;
    Size drawn;
};

// A size that may be asked for: each side at least 1, or -1 for the picture's own.
inline bool is_request(Size s) {
    return (s.width >= 1 || s.width == -1) && (s.height >= 1 || s.height == -1);
}

// Sides of -1 replaced by the picture's own.
Size resolved(Size wanted, Size own);

// How LoadPicture() brings a picture to a size.
enum class Shape { fitted, covering, stretched };

// All sides are at least 1.
Placement place_picture(Size picture, Size wanted, Shape shape);

// All sides of `picture` and `wanted` are at least 1; flags are LOAD_ bits.
Placement place(Size picture, Size wanted, Scaling scaling, int flags);

} // namespace image
