// SPDX-License-Identifier: MIT
// Bilinear scaling of a grey picture whose rows come one at a time, in 10-bit fixed point.
#pragma once

#include <array>
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
// there is only one, the last on the last or a little before. All steps are the same, as long as
// the side is one that a picture may have.
class Axis {
  public:
    Axis(int from, int to);
    Sample at(int i) const {
        const int64_t position = i * length_ / steps_;
        return {static_cast<int>(position >> 10), static_cast<int>(position & 1023)};
    }

  private:
    int64_t length_, steps_; // so many steps are as long as that
};

// Makes target rows from two neighbouring source rows, which are reduced to the needed pixels
// first.
class RowScaler {
  public:
    // For each target pixel two neighbouring source pixels.
    struct Pair {
        uint8_t left, right;
    };
    using Pairs = std::vector<Pair>;

    // Of a side of `from` scaled to `to` the pixels from `first` on, before `end`. Throws
    // std::bad_alloc.
    RowScaler(int from, int to, int first, int end);

    Pairs make_pairs() const { return Pairs(first_.size()); }

    // Rows are read beyond their last pixel, by up to so many bytes.
    static constexpr size_t row_slack = 16;
    void pick(const uint8_t *row, Pairs &pairs) const;

    // The target row at `fraction` of 1024 from the upper to the lower row.
    void blend(const Pairs &upper, const Pairs &lower, int fraction, uint8_t *target) const;

  private:
    // Where the eight pairs that start here lie in the sixteen bytes from the first one.
    using Shuffle = std::array<uint8_t, 16>;
    void prepare_shuffles();
    size_t pick_groups(const uint8_t *row, Pairs &pairs) const;

    std::vector<int> first_;         // of each target pixel's two
    std::vector<uint16_t> fraction_; // and how far it is to the second
    std::vector<Shuffle> shuffles_;  // of each eight pixels; empty when they lie too far apart
};

} // namespace image
