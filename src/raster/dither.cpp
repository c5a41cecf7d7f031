// SPDX-License-Identifier: MIT
// Diffuses what a pixel loses to its neighbours.
#include "raster/dither.h"

#include <algorithm>

namespace raster {

namespace {

uint8_t limited(int grey) {
    return static_cast<uint8_t>(std::clamp(grey, 0, 255));
}

} // namespace

Dither::Dither(int n) {
    n = std::clamp(n, min_dither_levels, max_dither_levels);
    for (int grey = 0; grey < 256; ++grey)
        level_of_[grey] = static_cast<uint8_t>(256 / (2 * n) + (grey * n >> 8) * 256 / n);
}

void Dither::row(uint8_t *row, uint8_t *next, size_t width) const {
    const auto pass = [](uint8_t &pixel, int part) { pixel = limited(pixel + (part >> 4)); };
    for (size_t x = 0; x < width; ++x) {
        const int error = row[x] - level_of_[row[x]];
        row[x] = level_of_[row[x]];
        const bool last = x + 1 == width;
        if (!last) pass(row[x + 1], error * 7);
        if (!next) continue;
        if (x > 0) pass(next[x - 1], error * 3);
        pass(next[x], error * 5);
        if (!last) pass(next[x + 1], error);
    }
}

void Dither::area(uint8_t *pixels, ptrdiff_t scanline, size_t width, size_t height) const {
    for (size_t y = 0; y < height; ++y, pixels += scanline)
        row(pixels, y + 1 < height ? pixels + scanline : nullptr, width);
}

} // namespace raster
