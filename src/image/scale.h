// SPDX-License-Identifier: MIT
// Bilinear scaling of a grey picture whose rows come one at a time, in 10-bit fixed point.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "image/place.h"

namespace image {

// A position in the source: a pixel and how far it is to the next, in 1/1024.
struct Sample {
    int first;
    int fraction;
};

// Where the pixels of a side of `to` lie on a side of `from`: the first on the first and, unless
// there is only one, the last on the last or a little before.
class Axis {
  public:
    Axis(int from, int to);
    Sample at(int i) const {
        const int64_t position = i * step_;
        return {static_cast<int>(position >> 10), static_cast<int>(position & 1023)};
    }

  private:
    int64_t step_;
};

// Makes target rows from two neighbouring source rows.
class RowScaler {
  public:
    // Throws std::bad_alloc.
    RowScaler(int from, int to);

    // `fraction` is how far the target row is from `upper` to `lower`, in 1/1024; with 0 `lower` is
    // not read. Rows of the source have one byte behind their last pixel that may be read.
    void scale(const uint8_t *upper, const uint8_t *lower, int fraction, uint8_t *target) const;

  private:
    void blend(const uint8_t *upper, const uint8_t *lower, int fraction, uint8_t *target) const;
    void stretch(const uint8_t *source, uint8_t *target) const;

    std::vector<Sample> samples_;
    bool identity_;
};

} // namespace image
