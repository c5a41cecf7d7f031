// SPDX-License-Identifier: MIT
// Error diffusion: rows of grey bytes brought to a few evenly spaced levels.
#pragma once

#include <cstddef>
#include <cstdint>

namespace raster {

inline constexpr int min_dither_levels = 2, max_dither_levels = 16;

// Level i of n is 256 / 2n + 256 i / n. A pixel p becomes level (p n) >> 8, and of its error 7/16
// go to the right, 3/16, 5/16 and 1/16 to the three pixels below; every sum is limited to a byte.
class Dither {
  public:
    // n is limited to 2 to 16.
    explicit Dither(int n);

    // Brings a row to the levels and passes its errors on to the next row, which is null behind the
    // last one. Rows are treated from the top down, each once.
    void row(uint8_t *row, uint8_t *next, size_t width) const;

    // Treats a rectangle of rows that lie scanline bytes apart.
    void area(uint8_t *pixels, ptrdiff_t scanline, size_t width, size_t height) const;

  private:
    uint8_t level_of_[256];
};

} // namespace raster
