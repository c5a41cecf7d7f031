// SPDX-License-Identifier: MIT
// Looks at rows of greys.
#include "hw_linux/change.h"

#include <algorithm>
#include <cstring>

#include "hw_linux/area.h"
#include "hw_linux/waveform.h"

namespace hw {

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
    for (int i = first; i <= last; ++i) pixels_ += former[i] != now[i] ? 1 : 0;
    area_ = joined(area_, {x + first, y, last - first + 1, 1, 0});
}

// Most of a page is one grey: the same eight pixels once more add nothing.
void Greys::add_row(const uint8_t *row, int count) {
    uint64_t former = 0;
    int i = 0;
    for (; i + 8 <= count; i += 8) {
        uint64_t eight;
        std::memcpy(&eight, row + i, sizeof eight);
        if (i > 0 && eight == former) continue;
        former = eight;
        for (int k = 0; k < 8; ++k) seen_[row[i + k]] = true;
    }
    for (; i < count; ++i) seen_[row[i]] = true;
}

int Greys::count() const {
    constexpr int width = 256 / panel_levels;
    int levels = 0;
    for (auto first = seen_.begin(); first != seen_.end(); first += width)
        levels += std::find(first, first + width, true) != first + width ? 1 : 0;
    return levels;
}

} // namespace hw
