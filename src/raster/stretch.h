// SPDX-License-Identifier: MIT
// The arithmetic of scaling, one axis at a time: shrinking averages what a target pixel covers,
// enlarging interpolates between the two source pixels whose centres are nearest.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace raster {

// How target pixels are made along one axis: pixel i is the sum of weights[i * taps + k] times
// source pixel begin + first[i] + k, for k below taps. The weights of a pixel have a fixed sum;
// those of source pixels past end are 0.
struct StretchAxis {
    int taps = 0;
    int begin = 0, end = 0; // the source pixels that count
    std::vector<int> first;
    std::vector<uint16_t> weights;
};

// The pass over rows comes first. Few rows are added in 16 bits, more in 32.
enum class RowPass { few_rows, many_rows };

// Both axes for `count` target pixels from number `from` on, when `source` pixels (1 to 65535)
// become `target` pixels (at least 1).
RowPass row_pass_of(int source, int target);
StretchAxis make_row_axis(int source, int target, int from, int count);
StretchAxis make_column_axis(int source, int target, int from, int count);

inline constexpr int most_few_rows = 4;

// Between the passes a grey is 256 * grey - 32768.
inline int grey_times_256(int16_t value) {
    return value + 32768;
}

// Adds up 1 to most_few_rows rows of greys.
void blend_few_rows(const uint8_t *const *rows, const uint16_t *weights, int taps, size_t count,
                    int16_t *out);

// The same for any number of rows: sums start as 0, and each row is added by itself.
void add_row(const uint8_t *row, uint16_t weight, size_t count, uint32_t *sums);
void finish_rows(const uint32_t *sums, size_t count, int16_t *out);

// The pass along a row. `in` has values to read, whatever they are, for `taps` pixels past the end;
// `out` has room for a multiple of 4 pixels.
void blend_columns(const StretchAxis &axis, const int16_t *in, int16_t *out);

} // namespace raster
