// SPDX-License-Identifier: MIT
// Computes where a picture goes, whole pixels in both directions.
#include "image/place.h"

#include <algorithm>
#include <climits>
#include <cstdint>

#include "kelvane/pictures.h"

namespace image {

namespace {

int scaled(int side, int to, int from) {
    return static_cast<int>(std::min<int64_t>(int64_t{side} * to / from, INT_MAX));
}

Size fitted(Size picture, Size room) {
    const bool fills_width =
        int64_t{picture.height} * room.width < int64_t{picture.width} * room.height;
    return fills_width ? Size{room.width, scaled(picture.height, room.width, picture.width)}
                       : Size{scaled(picture.width, room.height, picture.height), room.height};
}

int start(int room, int drawn, bool at_start, bool at_end) {
    if (at_start) return 0;
    return at_end ? room - drawn : (room - drawn) / 2;
}

} // namespace

Size resolved(Size wanted, Size own) {
    return {wanted.width == -1 ? own.width : wanted.width,
            wanted.height == -1 ? own.height : wanted.height};
}

Placement place(Size picture, Size wanted, Scaling scaling, int flags) {
    if (scaling == Scaling::stretched) return {wanted, 0, 0, wanted};
    Placement p{wanted, 0, 0, {}};
    if (flags & LOAD_FIT_WIDTH) {
        p.drawn = {wanted.width, scaled(picture.height, wanted.width, picture.width)};
        p.bitmap.height = std::min(wanted.height, p.drawn.height);
    } else {
        p.drawn = fitted(picture, wanted);
    }
    p.y = start(p.bitmap.height, p.drawn.height, flags & LOAD_TOP, flags & LOAD_BOTTOM);
    const int left_over = p.bitmap.width - p.drawn.width;
    if (flags & LOAD_LEFT) return p;
    // The right edge was never reached: applications count on the picture moving down instead.
    if (flags & LOAD_RIGHT)
        p.y = left_over;
    else
        p.x = left_over / 2;
    return p;
}

} // namespace image
