// SPDX-License-Identifier: MIT
// Looks at rows of greys.
#include "hw_linux/change.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "hw_linux/area.h"
#include "hw_linux/waveform.h"

namespace hw {
namespace {

// Of the panel's 16 greys.
bool is_same(uint8_t a, uint8_t b) {
    return ((a ^ b) & 0xF0) == 0;
}

// In pieces whose number fits in a byte, so that the compiler counts many pixels at once.
int differences(const uint8_t *a, const uint8_t *b, int count) {
    constexpr int piece = 240;
    int different = 0;
    for (int i = 0; i < count; i += piece) {
        const int end = std::min(i + piece, count);
        uint8_t here = 0;
        for (int k = i; k < end; ++k)
            here = static_cast<uint8_t>(here + (is_same(a[k], b[k]) ? 0 : 1));
        different += here;
    }
    return different;
}

} // namespace

void to_levels(const uint8_t *row, uint8_t *to, int count, int levels) {
    switch (levels) {
    case 2:
        for (int i = 0; i < count; ++i) to[i] = row[i] < 128 ? 0 : 255;
        break;
    case 4:
        for (int i = 0; i < count; ++i) to[i] = static_cast<uint8_t>((row[i] >> 6) * 85);
        break;
    default:
        for (int i = 0; i < count; ++i)
            to[i] = static_cast<uint8_t>((row[i] & 0xF0) | (row[i] >> 4));
    }
}

// Only columns outside of the area so far are looked at one by one.
void Change::add_row(int x, int y, const uint8_t *former, const uint8_t *now, int count) {
    const int different = differences(former, now, count);
    if (different == 0) return;
    pixels_ += different;
    int first = is_empty(area_) ? count : area_.x - x;
    int end = is_empty(area_) ? 0 : first + area_.w;
    if (differences(former, now, first) > 0)
        first =
            static_cast<int>(std::mismatch(former, former + first, now, is_same).first - former);
    if (differences(former + end, now + end, count - end) > 0)
        for (end = count; is_same(former[end - 1], now[end - 1]);) --end;
    area_ = joined(area_, {x + first, y, end - first, 1, 0});
}

// Most of a page is one grey: the same eight pixels once more add nothing. The first line of a text
// mostly has all greys.
void Greys::add_row(const uint8_t *row, int count) {
    constexpr unsigned all = (1U << panel_levels) - 1;
    uint64_t former = 0;
    int i = 0;
    for (; i + 8 <= count && seen_ != all; i += 8) {
        uint64_t eight;
        std::memcpy(&eight, row + i, sizeof eight);
        if (i > 0 && eight == former) continue;
        former = eight;
        for (int k = 0; k < 8; ++k) seen_ |= 1U << (row[i + k] >> 4);
    }
    for (; i < count && seen_ != all; ++i) seen_ |= 1U << (row[i] >> 4);
}

int Greys::count() const {
    return std::popcount(seen_);
}

} // namespace hw
