// SPDX-License-Identifier: MIT
// Scales the lengths that the library and its themes name, and the pictures.
#include "scale.h"

#include <algorithm>
#include <cstdint>
#include <span>
#include <string_view>

#include "values.h"

namespace tool {
namespace {

// Where a pixel of the scaled side lies on the side before, in 1/256 pixel: middles on middles.
struct Place {
    size_t first, second;
    int fraction;

    Place(size_t at, size_t from, size_t to) {
        const auto middle = static_cast<int64_t>((2 * at + 1) * from * 128 / to) - 128;
        const auto most = static_cast<int64_t>(from - 1) * 256;
        const int64_t place = std::clamp<int64_t>(middle, 0, most);
        first = static_cast<size_t>(place / 256);
        second = std::min(first + 1, from - 1);
        fraction = static_cast<int>(place % 256);
    }
};

int blended(int a, int b, int fraction) {
    return a * (256 - fraction) + b * fraction;
}

// Greys and opacity are blended alike; what ends less than half opaque is left out when packed.
Picture scaled(const Picture &from, int percent) {
    const auto side = [percent](size_t length) {
        return std::max<size_t>((length * static_cast<size_t>(percent) + 50) / 100, 1);
    };
    Picture to{side(from.width), side(from.height), {}};
    to.grey_alpha.reserve(to.width * to.height * 2);
    for (size_t y = 0; y < to.height; ++y) {
        const Place row(y, from.height, to.height);
        const uint8_t *upper = from.grey_alpha.data() + row.first * from.width * 2;
        const uint8_t *lower = from.grey_alpha.data() + row.second * from.width * 2;
        for (size_t i = 0; i < to.width * 2; ++i) {
            const Place column(i / 2, from.width, to.width);
            const size_t left = column.first * 2 + i % 2, right = column.second * 2 + i % 2;
            const int above = blended(upper[left], upper[right], column.fraction);
            const int below = blended(lower[left], lower[right], column.fraction);
            to.grey_alpha.push_back(
                static_cast<uint8_t>((blended(above, below, row.fraction) + (1 << 15)) >> 16));
        }
    }
    return to;
}

// The corners of DrawRectRound() join bars of five pixels on every screen.
bool has_fixed_size(std::string_view name) {
    return name.find("frame_selector_") != name.npos;
}

} // namespace

void scale(Theme &theme, int percent) {
    for (Entry &entry : theme.text.parameters)
        entry.value = scaled_value(entry.name, entry.value, percent);
    for (Resource &resource : theme.resources) {
        if (resource.is_scaled || is_truetype(resource.bytes) || has_fixed_size(resource.name))
            continue;
        const auto *bytes = reinterpret_cast<const uint8_t *>(resource.bytes.data());
        if (const auto picture = to_picture(std::span(bytes, resource.bytes.size())))
            resource.bytes = pack(scaled(*picture, percent)).bytes();
    }
}

} // namespace tool
