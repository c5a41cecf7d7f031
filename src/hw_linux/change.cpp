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

// In pieces whose number fits in a byte, so that the compiler counts many pixels at once.
int differences(const uint8_t *a, const uint8_t *b, int count) {
    constexpr int piece = 240;
    int different = 0;
    for (int i = 0; i < count; i += piece) {
        const int end = std::min(i + piece, count);
        uint8_t here = 0;
        for (int k = i; k < end; ++k) here = static_cast<uint8_t>(here + (a[k] != b[k] ? 1 : 0));
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

void Change::add_row(int x, int y, const uint8_t *former, const uint8_t *now, int count) {
    if (std::memcmp(former, now, static_cast<size_t>(count)) == 0) return;
    int first = 0, last = count - 1;
    while (former[first] == now[first]) ++first;
    while (former[last] == now[last]) --last;
    pixels_ += differences(former + first, now + first, last + 1 - first);
    area_ = joined(area_, {x + first, y, last - first + 1, 1, 0});
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
