// SPDX-License-Identifier: MIT
// Tells picture files apart by their first bytes.
#include "image/from_memory.h"

#include <algorithm>
#include <array>

namespace image {
namespace {

constexpr std::array<uint8_t, 4> png_mark{0x89, 'P', 'N', 'G'};
constexpr std::array<uint8_t, 3> jpeg_mark{0xFF, 0xD8, 0xFF};

template <class Mark>
bool begins_with(std::span<const uint8_t> bytes, const Mark &mark) {
    return bytes.size() >= mark.size() && std::equal(mark.begin(), mark.end(), bytes.begin());
}

} // namespace

raster::BitmapPtr load_from_memory(std::span<const uint8_t> bytes, Size wanted) {
    if (begins_with(bytes, png_mark))
        return load_png(bytes, nullptr, wanted, Scaling::proportional);
    return begins_with(bytes, jpeg_mark) ? load_jpeg(bytes, wanted) : nullptr;
}

} // namespace image
