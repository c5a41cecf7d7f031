// SPDX-License-Identifier: MIT
// What the first bytes of a picture file tell: its format, its size, and how it is to be turned.
#pragma once

#include <cstdio>
#include <optional>

#include "image/place.h"

namespace image {

enum class Format { png, jpeg, tiff, bmp };

// Where the first row and column of a picture are shown, as EXIF and TIFF number it. Values above 4
// stand the picture on its side.
inline constexpr int upright = 1, last_lying = 4, last_orientation = 8;

struct PictureHeader {
    Format format;
    Size stored;
    int orientation = upright;

    bool stands() const { return orientation > last_lying; }
    Size shown() const { return stands() ? Size{stored.height, stored.width} : stored; }
};

// Nothing for what is no picture, or none of a reasonable size. The position of the file stays.
std::optional<PictureHeader> read_picture_header(std::FILE *file);

} // namespace image
