// SPDX-License-Identifier: MIT
// What a picture file may ask for: far beyond any real picture, and little enough that a hostile
// file costs neither more than a second nor more memory than a reader has.
#pragma once

#include <cstddef>
#include <cstdint>

#include "image/place.h"

namespace image {

// Divides what costs time; a fuzzer raises it, whose time is for variety, not for large pictures.
inline int reduction = 1;

// In pixels, of a picture in a file.
inline constexpr int max_side = 1'000'000;
// In pixels, of a picture and of a bitmap.
inline int64_t max_area() {
    return 100'000'000 / reduction;
}
// Of all rows as a codec hands them out.
inline int64_t max_decoded_bytes() {
    return (192 << 20) / reduction;
}
// Of a file that is held in memory.
inline constexpr size_t max_file_bytes = 128 << 20;
// Of what a codec allocates.
inline long max_codec_bytes() {
    return (160 << 20) / reduction;
}
// Each scan of a JPEG may go over the whole picture, for next to no data.
inline constexpr int max_jpeg_scans = 50;
// In pixels, of all scans together.
inline int64_t max_scanned_area() {
    return 500'000'000 / reduction;
}

inline bool is_reasonable(Size s) {
    return s.width >= 1 && s.height >= 1 && s.width <= max_side && s.height <= max_side &&
           int64_t{s.width} * s.height <= max_area();
}

// The same of a picture whose codec hands out rows of so many bytes.
inline bool is_reasonable(Size s, size_t row_bytes) {
    return is_reasonable(s) && row_bytes <= static_cast<size_t>(max_decoded_bytes() / s.height);
}

} // namespace image
