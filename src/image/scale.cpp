// SPDX-License-Identifier: MIT
#include "image/scale.h"

#include <cstring>

namespace image {

namespace {

constexpr int one = 1024;

} // namespace

Axis::Axis(int from, int to) : step_((from - 1) * int64_t{one} / (to > 1 ? to - 1 : 1)) {}

RowScaler::RowScaler(int from, int to) : samples_(static_cast<size_t>(to)), identity_(from == to) {
    const Axis axis(from, to);
    int i = 0;
    for (Sample &sample : samples_) sample = axis.at(i++);
}

void RowScaler::scale(const uint8_t *upper, const uint8_t *lower, int fraction,
                      uint8_t *target) const {
    if (fraction != 0)
        blend(upper, lower, fraction, target);
    else if (identity_)
        std::memcpy(target, upper, samples_.size());
    else
        stretch(upper, target);
}

// Each of the four products loses its own fraction, so they cannot be factored.
void RowScaler::blend(const uint8_t *upper, const uint8_t *lower, int fy, uint8_t *target) const {
    for (const Sample &s : samples_) {
        const uint8_t *u = upper + s.first, *l = lower + s.first;
        const int lower_right = s.fraction * fy;
        const int upper_right = s.fraction * one - lower_right;
        const int lower_left = fy * one - lower_right;
        const int upper_left = one * one - fy * one - upper_right;
        *target++ = static_cast<uint8_t>((u[0] * upper_left >> 20) + (u[1] * upper_right >> 20) +
                                         (l[0] * lower_left >> 20) + (l[1] * lower_right >> 20));
    }
}

void RowScaler::stretch(const uint8_t *source, uint8_t *target) const {
    for (const Sample &s : samples_) {
        const uint8_t *p = source + s.first;
        *target++ =
            static_cast<uint8_t>((p[0] * (one - s.fraction) >> 10) + (p[1] * s.fraction >> 10));
    }
}

} // namespace image
