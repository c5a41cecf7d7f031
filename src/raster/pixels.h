// SPDX-License-Identifier: MIT
// How colours are stored in a canvas, and the walk over the rows of an area.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "raster/clip.h"

namespace raster {

inline uint8_t red(int color) {
    return static_cast<uint8_t>(color >> 16);
}
inline uint8_t green(int color) {
    return static_cast<uint8_t>(color >> 8);
}
inline uint8_t blue(int color) {
    return static_cast<uint8_t>(color);
}

// The brightness of a colour, 0 black to 255 white.
inline uint8_t grey_of(int r, int g, int b) {
    return static_cast<uint8_t>((r * 77 + g * 151 + b * 28) >> 8);
}
inline uint8_t grey_of(int color) {
    return grey_of(red(color), green(color), blue(color));
}

// The first byte of a pixel of a drawable canvas.
inline uint8_t *pixel_address(const icanvas &c, int x, int y) {
    return c.addr + static_cast<ptrdiff_t>(y) * c.scanline +
           static_cast<ptrdiff_t>(x) * bytes_per_pixel(c);
}

// A colour as the bytes that a canvas stores; at depth 8 only the first one counts.
struct Ink {
    uint8_t bytes[3];
    Ink(const icanvas &c, int color) : bytes{red(color), green(color), blue(color)} {
        if (c.depth == 8) bytes[0] = grey_of(color);
    }
    // All bytes of a pixel are equal, so that a run of pixels is one block.
    bool is_grey(const icanvas &c) const {
        return c.depth == 8 || (bytes[0] == bytes[1] && bytes[1] == bytes[2]);
    }
};

template <int pixel_bytes>
inline void put_pixel(uint8_t *pixel, const Ink &ink) {
    for (int i = 0; i < pixel_bytes; ++i) pixel[i] = ink.bytes[i];
}

inline void put_pixel(const icanvas &c, uint8_t *pixel, const Ink &ink) {
    c.depth == 8 ? put_pixel<1>(pixel, ink) : put_pixel<3>(pixel, ink);
}

// Writes count pixels side by side.
inline void put_run(const icanvas &c, uint8_t *pixel, int64_t count, const Ink &ink) {
    if (ink.is_grey(c)) {
        std::memset(pixel, ink.bytes[0], static_cast<size_t>(count * bytes_per_pixel(c)));
        return;
    }
    for (; count > 0; --count, pixel += 3) put_pixel<3>(pixel, ink);
}

// Calls visit(bytes, count) for the bytes of each row of an area; rows that follow each other
// without a gap come as one.
template <class Visit>
void for_each_row(const icanvas &c, const Area &a, Visit visit) {
    size_t count = static_cast<size_t>(a.w) * static_cast<size_t>(bytes_per_pixel(c));
    size_t rows = static_cast<size_t>(a.h);
    if (count == static_cast<size_t>(c.scanline)) count *= rows, rows = 1;
    uint8_t *row = pixel_address(c, a.x, a.y);
    for (; rows > 0; --rows, row += c.scanline) visit(row, count);
}

} // namespace raster
