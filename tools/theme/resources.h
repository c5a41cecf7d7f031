// SPDX-License-Identifier: MIT
// Pictures and fonts: their names, their files, and the bytes that a theme file has of them.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "../picture.h"
#include "kelvane/bitmaps.h"
#include "mistakes.h"

namespace tool {

struct Resource {
    std::string name;
    std::string bytes;
    bool is_scaled = false; // drawn for the scale that is asked for
};

// What is wrong with the name of a picture, with the marks of its variant; empty when nothing is.
std::string picture_name_fault(std::string_view name);
// The same for the face of a font.
std::string font_name_fault(std::string_view face);

// A PNG file keeps its transparency; JPEG, BMP and TIFF files are loaded by the library.
bool is_picture_file(const std::filesystem::path &file);
// A picture file in the form of an ibitmap; empty after adding to the mistakes.
std::string read_picture(const std::filesystem::path &file, Mistakes &mistakes);

// The picture of bytes in the form of an ibitmap of any depth; none when they are no such thing.
std::optional<Picture> to_picture(std::span<const uint8_t> bytes);

// Whether bytes are a font file with TrueType outlines.
bool is_truetype(std::string_view bytes);

} // namespace tool
