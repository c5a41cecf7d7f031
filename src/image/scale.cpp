// SPDX-License-Identifier: MIT
// Scales rows in two passes, each with weights computed once.
#include "image/scale.h"

#include <cstring>
#include <utility>

#include "ground/vectors.h"
#include "image/limits.h"

namespace image {

namespace {

constexpr int one = 1024;
constexpr size_t group = 8; // pixels that are made at a time where the processor can

// Two rows of pairs, how far each pixel is to its right one, and how far the row is to the lower
// one.
struct Rows {
    const RowScaler::Pair *upper, *lower;
    const uint16_t *right;
    int down;
};

// Each of the four products loses its own fraction, so they cannot be factored.
void blend_pixel(const Rows &r, size_t x, uint8_t *target) {
    const RowScaler::Pair u = r.upper[x], l = r.lower[x];
    const int fx = r.right[x], fy = r.down;
    target[x] = static_cast<uint8_t>((u.left * (one - fx) * (one - fy) >> 20) +
                                     (u.right * fx * (one - fy) >> 20) +
                                     (l.left * (one - fx) * fy >> 20) + (l.right * fx * fy >> 20));
}

#ifdef KELVANE_X86_64
__m128i load(const void *words) {
    return _mm_loadu_si128(static_cast<const __m128i *>(words));
}

// The upper words of products.
__m128i high(__m128i a, __m128i b) {
    return _mm_mulhi_epu16(a, b);
}

// v a b >> 20 for bytes v and a, b up to 1024. The product a b of up to 21 bits is split into what
// is above and below its lowest byte.
__m128i weighed(__m128i v, __m128i a, __m128i b) {
    const __m128i above = high(_mm_slli_epi16(a, 4), _mm_slli_epi16(b, 4));
    const __m128i below = _mm_slli_epi16(_mm_mullo_epi16(a, b), 8);
    const __m128i whole = high(_mm_slli_epi16(v, 4), above);
    const __m128i rest = _mm_and_si128(_mm_mullo_epi16(v, above), _mm_set1_epi16(0xFFF));
    return _mm_add_epi16(whole, _mm_srli_epi16(_mm_add_epi16(rest, high(v, below)), 12));
}

__m128i weighed_pairs(__m128i pairs, __m128i right, __m128i weight) {
    const __m128i left = _mm_sub_epi16(_mm_set1_epi16(one), right);
    return _mm_add_epi16(weighed(_mm_and_si128(pairs, _mm_set1_epi16(0xFF)), left, weight),
                         weighed(_mm_srli_epi16(pairs, 8), right, weight));
}

// The number of pixels that are done.
size_t blend_groups(const Rows &r, size_t width, uint8_t *target) {
    const __m128i down = _mm_set1_epi16(static_cast<int16_t>(r.down));
    const __m128i up = _mm_sub_epi16(_mm_set1_epi16(one), down);
    size_t x = 0;
    for (; x + group <= width; x += group) {
        const __m128i right = load(r.right + x);
        const __m128i sum = _mm_add_epi16(weighed_pairs(load(r.upper + x), right, up),
                                          weighed_pairs(load(r.lower + x), right, down));
        _mm_storel_epi64(reinterpret_cast<__m128i *>(target + x), _mm_packus_epi16(sum, sum));
    }
    return x;
}
#else
size_t blend_groups(const Rows &, size_t, uint8_t *) {
    return 0;
}
#endif

} // namespace

Axis::Axis(int from, int to) : length_((from - 1) * int64_t{one}), steps_(to > 1 ? to - 1 : 1) {
    if (to <= max_side) length_ = length_ / std::exchange(steps_, 1);
}

RowScaler::RowScaler(int from, int to, int first, int end) {
    const Axis axis(from, to);
    for (int i = first; i < end; ++i) {
        const Sample s = axis.at(i);
        first_.push_back(s.first);
        fraction_.push_back(static_cast<uint16_t>(s.fraction));
    }
    prepare_shuffles();
}

#ifdef KELVANE_X86_64
// Most processors can pick bytes from a register: unless the picture shrinks to less than half.
void RowScaler::prepare_shuffles() {
    if (!__builtin_cpu_supports("ssse3")) return;
    std::vector<Shuffle> shuffles(first_.size() / group);
    for (size_t i = 0; i < shuffles.size() * group; ++i) {
        const int offset = first_[i] - first_[i / group * group];
        if (offset + 1 >= 16) return;
        Shuffle &s = shuffles[i / group];
        s[i % group * 2] = static_cast<uint8_t>(offset);
        s[i % group * 2 + 1] = static_cast<uint8_t>(offset + 1);
    }
    shuffles_ = std::move(shuffles);
}

// The number of pixels that are done.
[[gnu::target("ssse3")]] size_t RowScaler::pick_groups(const uint8_t *row, Pairs &pairs) const {
    size_t x = 0;
    for (const Shuffle &shuffle : shuffles_) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i *>(row + first_[x]));
        const __m128i order = _mm_loadu_si128(reinterpret_cast<const __m128i *>(shuffle.data()));
        _mm_storeu_si128(reinterpret_cast<__m128i *>(&pairs[x]), _mm_shuffle_epi8(bytes, order));
        x += group;
    }
    return x;
}
#else
void RowScaler::prepare_shuffles() {}

size_t RowScaler::pick_groups(const uint8_t *, Pairs &) const {
    return 0;
}
#endif

void RowScaler::pick(const uint8_t *row, Pairs &pairs) const {
    for (size_t x = pick_groups(row, pairs); x < first_.size(); ++x)
        std::memcpy(&pairs[x], row + first_[x], sizeof pairs[x]);
}

void RowScaler::blend(const Pairs &upper, const Pairs &lower, int fraction, uint8_t *target) const {
    const Rows rows{upper.data(), lower.data(), fraction_.data(), fraction};
    const size_t width = first_.size();
    for (size_t x = blend_groups(rows, width, target); x < width; ++x) blend_pixel(rows, x, target);
}

} // namespace image
