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

// Of a thin picture that covers, next to nothing is seen. Scaling reckons with up to 1024 times a
// side times that of a picture.
constexpr int most_drawn = 1 << 30;

} // namespace

Size resolved(Size wanted, Size own) {
    return {wanted.width == -1 ? own.width : wanted.width,
            wanted.height == -1 ? own.height : wanted.height};
}

Placement place_picture(Size picture, Size wanted, Shape shape) {
    if (shape == Shape::stretched) return {wanted, 0, 0, wanted};
    const bool fills_width =
        int64_t{picture.height} * wanted.width < int64_t{picture.width} * wanted.height;
    const bool keeps_width = fills_width == (shape == Shape::fitted);
    Size drawn = keeps_width
                     ? Size{wanted.width, scaled(picture.height, wanted.width, picture.width)}
                     : Size{scaled(picture.width, wanted.height, picture.height), wanted.height};
    drawn = {std::clamp(drawn.width, 1, most_drawn), std::clamp(drawn.height, 1, most_drawn)};
    if (shape == Shape::fitted) return {drawn, 0, 0, drawn};
    return {wanted, (wanted.width - drawn.width) / 2, (wanted.height - drawn.height) / 2, drawn};
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
