// SPDX-License-Identifier: MIT
// The BMP format: the fixed part of a file, which is what both the reader and the Writer know.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "file/archive.h"
#include "raster/bitmap.h"

namespace bmp {

// Where the fields of a file are; all are little-endian.
enum Field : size_t {
    MAGIC = 0,
    FILE_SIZE = 2,
    DATA_OFFSET = 10,
    INFO_SIZE = 14,
    WIDTH = 18,
    HEIGHT = 22,
    PLANES = 26,
    BITS = 28,
    COMPRESSION = 30,
    PALETTE = 54 // behind an information header of the ordinary size
};
inline constexpr uint32_t ordinary_info_size = 40;
inline constexpr uint32_t core_info_size = 12; // of the first version, with sides of 16 bits
inline constexpr size_t palette_entry_bytes = 4;

// Rows are padded to words.
constexpr uint64_t row_bytes(uint64_t width, uint64_t bits) {
    return ((width * bits + 7) / 8 + 3) / 4 * 4;
}

// Makes a bitmap of a whole file. Refusals are told on standard error with the name of the function
// and of the file; a damaged file gives null in silence.
raster::BitmapPtr parse(const char *function, const char *name, std::span<const uint8_t> file);

// parse() of a member of an archive; null also when it cannot be read or is unreasonably large.
raster::BitmapPtr load_member(file::Archive &archive, const char *name);

} // namespace bmp
