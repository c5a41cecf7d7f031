// SPDX-License-Identifier: MIT
// The positions and weights along one side of a picture that is stretched.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "ground/vectors.h"
#include "raster/stretch.h"

namespace raster {
namespace {

// What the weights of a pixel sum to. 256 * 255 fits 16 bits, 32768 * 255 and the products of the
// second pass 32.
constexpr int few_rows_one = 256, many_rows_one = 32768, columns_one = 16384;
constexpr int column_group = 4; // the pass along a row takes so many taps at once
constexpr int middle = 32768;

struct Window {
    int first, count;
};

// A target pixel covers the source from start to start + source, in units of 1 / target of a source
// pixel. Not each weight is rounded but what is covered up to the end of each source pixel.
Window covered(int64_t source, int64_t target, int64_t i, int one, uint16_t *weights) {
    const int64_t start = i * source, end = start + source;
    const int64_t first = start / target, last = (end - 1) / target;
    int64_t before = 0;
    for (int64_t k = first; k <= last; ++k) {
        const int64_t part = std::min((k + 1) * target, end) - start;
        const int64_t sum = (2 * part * one + source) / (2 * source);
        *weights++ = static_cast<uint16_t>(sum - before);
        before = sum;
    }
    return {static_cast<int>(first), static_cast<int>(last - first + 1)};
}

// The two source pixels whose centres enclose the centre of a target pixel; one at the edges.
Window enclosing(int64_t source, int64_t target, int64_t i, int one, uint16_t *weights) {
    const int64_t unit = 2 * target;
    const int64_t at = std::clamp<int64_t>((2 * i + 1) * source - target, 0, (source - 1) * unit);
    const int64_t second = (at % unit * one + target) / unit;
    weights[0] = static_cast<uint16_t>(one - second);
    if (at % unit == 0) return {static_cast<int>(at / unit), 1};
    weights[1] = static_cast<uint16_t>(second);
    return {static_cast<int>(at / unit), 2};
}

int most_taps(int source, int target) {
    return target >= source ? 2 : (source - 1) / target + 2;
}

StretchAxis make_axis(int source, int target, int from, int count, int one, int group) {
    StretchAxis axis;
    axis.taps = (most_taps(source, target) + group - 1) / group * group;
    const size_t pixels = static_cast<size_t>(count), taps = static_cast<size_t>(axis.taps);
    axis.first.resize(pixels);
    axis.weights.resize(pixels * taps);
    const auto make_window = target >= source ? enclosing : covered;
    for (size_t i = 0; i < pixels; ++i) {
        const Window window = make_window(source, target, from + static_cast<int64_t>(i), one,
                                          &axis.weights[i * taps]);
        if (i == 0) axis.begin = window.first;
        axis.first[i] = window.first - axis.begin;
        axis.end = window.first + window.count;
    }
    return axis;
}

template <int taps>
void blend(const uint8_t *const *rows, const uint16_t *weights, size_t count, int16_t *out) {
    const uint8_t *row[taps];
    uint16_t weight[taps];
    std::copy_n(rows, taps, row);
    std::copy_n(weights, taps, weight);
    for (size_t i = 0; i < count; ++i) {
        uint16_t sum = middle;
        for (int k = 0; k < taps; ++k) sum = static_cast<uint16_t>(sum + row[k][i] * weight[k]);
        out[i] = static_cast<int16_t>(sum);
    }
}

} // namespace

RowPass row_pass_of(int source, int target) {
    return most_taps(source, target) <= most_few_rows ? RowPass::few_rows : RowPass::many_rows;
}

StretchAxis make_row_axis(int source, int target, int from, int count) {
    const bool few = row_pass_of(source, target) == RowPass::few_rows;
    return make_axis(source, target, from, count, few ? few_rows_one : many_rows_one, 1);
}

StretchAxis make_column_axis(int source, int target, int from, int count) {
    return make_axis(source, target, from, count, columns_one, column_group);
}

void blend_few_rows(const uint8_t *const *rows, const uint16_t *weights, int taps, size_t count,
                    int16_t *out) {
    constexpr decltype(&blend<1>) by_taps[] = {blend<1>, blend<2>, blend<3>, blend<4>};
    static_assert(std::size(by_taps) == most_few_rows);
    by_taps[taps - 1](rows, weights, count, out);
}

void add_row(const uint8_t *row, uint16_t weight, size_t count, uint32_t *sums) {
    for (size_t i = 0; i < count; ++i) sums[i] += uint32_t{row[i]} * weight;
}

void finish_rows(const uint32_t *sums, size_t count, int16_t *out) {
    constexpr uint32_t scale = many_rows_one / few_rows_one;
    for (size_t i = 0; i < count; ++i)
        out[i] = static_cast<int16_t>((sums[i] + scale / 2) / scale - middle);
}

#ifdef KELVANE_X86_64
namespace {

// Two pairs of four 16-bit values from anywhere.
template <class Value>
__m128i load_pair(const Value *low, const Value *high) {
    const __m128i half = _mm_loadl_epi64(reinterpret_cast<const __m128i *>(low));
    return _mm_castpd_si128(
        _mm_loadh_pd(_mm_castsi128_pd(half), reinterpret_cast<const double *>(high)));
}

__m128i load(const uint16_t *values) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i *>(values));
}

// The four sums of neighbouring pairs.
__m128i add_pairs(__m128i a, __m128i b) {
    const __m128 x = _mm_castsi128_ps(a), y = _mm_castsi128_ps(b);
    return _mm_add_epi32(_mm_castps_si128(_mm_shuffle_ps(x, y, _MM_SHUFFLE(2, 0, 2, 0))),
                         _mm_castps_si128(_mm_shuffle_ps(x, y, _MM_SHUFFLE(3, 1, 3, 1))));
}

// Four pixels from the sums of their products, each in two parts.
void put_four(__m128i low, __m128i high, int16_t *out) {
    const __m128i sums = _mm_add_epi32(add_pairs(low, high), _mm_set1_epi32(columns_one / 2));
    const __m128i values = _mm_srai_epi32(sums, 14);
    _mm_storel_epi64(reinterpret_cast<__m128i *>(out), _mm_packs_epi32(values, values));
}

// As many pixels with four taps as there are whole groups of four.
size_t blend_four_taps(const StretchAxis &axis, const int16_t *in, int16_t *out) {
    const size_t count = axis.first.size() / 4 * 4;
    const int *first = axis.first.data();
    const uint16_t *weights = axis.weights.data();
    for (size_t i = 0; i < count; i += 4, weights += 16)
        put_four(_mm_madd_epi16(load_pair(in + first[i], in + first[i + 1]), load(weights)),
                 _mm_madd_epi16(load_pair(in + first[i + 2], in + first[i + 3]), load(weights + 8)),
                 out + i);
    return count;
}

} // namespace

// Four pixels at a time: compilers do not make vectors of reads that start anywhere.
void blend_columns(const StretchAxis &axis, const int16_t *in, int16_t *out) {
    const size_t count = axis.first.size(), taps = static_cast<size_t>(axis.taps);
    for (size_t i = taps == 4 ? blend_four_taps(axis, in, out) : 0; i < count; i += 4) {
        const int16_t *from[4];
        const uint16_t *weights[4];
        for (size_t j = 0; j < 4; ++j) {
            const size_t pixel = std::min(i + j, count - 1);
            from[j] = in + axis.first[pixel];
            weights[j] = &axis.weights[pixel * taps];
        }
        __m128i low = _mm_setzero_si128(), high = low;
        for (size_t k = 0; k < taps; k += column_group) {
            const auto add = [k](__m128i sum, const int16_t *const *in2, const uint16_t *const *w) {
                return _mm_add_epi32(sum, _mm_madd_epi16(load_pair(in2[0] + k, in2[1] + k),
                                                         load_pair(w[0] + k, w[1] + k)));
            };
            low = add(low, from, weights);
            high = add(high, from + 2, weights + 2);
        }
        put_four(low, high, out + i);
    }
}
#else
void blend_columns(const StretchAxis &axis, const int16_t *in, int16_t *out) {
    const size_t taps = static_cast<size_t>(axis.taps);
    for (size_t i = 0; i < axis.first.size(); ++i) {
        int sum = columns_one / 2;
        for (size_t k = 0; k < taps; ++k)
            sum += in[static_cast<size_t>(axis.first[i]) + k] * axis.weights[i * taps + k];
        out[i] = static_cast<int16_t>(sum >> 14);
    }
}
#endif

} // namespace raster
