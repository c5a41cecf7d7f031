// SPDX-License-Identifier: MIT
// Rows of packed bitmap pixels as grey bytes, grey bytes put through a mask or packed.
#pragma once

#include <cstddef>
#include <cstdint>

#include "kelvane/bitmaps.h"

namespace raster {

// Bits of a bitmap row from any position, highest bit of each byte first.
class BitRow {
  public:
    BitRow(const uint8_t *row, size_t first_bit)
        : row_(row + first_bit / 8), shift_(first_bit % 8) {}
    bool bit(size_t i) const { return (row_[(shift_ + i) / 8] << ((shift_ + i) % 8) & 0x80) != 0; }
    // Bits 8 n to 8 n + 7, all of which must exist.
    unsigned octet(size_t n) const {
        if (shift_ == 0) return row_[n];
        return (row_[n] << shift_ | row_[n + 1] >> (8 - shift_)) & 0xFF;
    }

  private:
    const uint8_t *row_;
    size_t shift_;
};

// Depths that pixels can have.
bool is_known_depth(int depth);

// Writes the greys of pixels sx to sx + count - 1 of a row of a known depth.
void row_to_grey(const uint8_t *row, int depth, size_t sx, size_t count, uint8_t *grey);

// Copies count grey bytes onto 8-bit pixels where the mask has a 1.
void put_masked(uint8_t *pixels, const uint8_t *grey, size_t count, const BitRow &mask);

// Fills a row of a bitmap of depth 4 or 2 from bytes whose highest bits are the level: as many
// bytes as the row has room for.
void pack_row(const uint8_t *levels, ibitmap &bm, size_t row);

} // namespace raster
