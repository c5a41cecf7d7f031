// SPDX-License-Identifier: MIT
// Picture files of the tools, and the form in which the library keeps pictures in memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace tool {

struct Picture {
    size_t width = 0, height = 0;
    std::vector<uint8_t> grey_alpha; // two bytes a pixel

    // The nearest of 16 levels.
    uint8_t level(size_t x, size_t y) const {
        return static_cast<uint8_t>((grey_alpha[(y * width + x) * 2] + 8) / 17);
    }
    bool is_opaque(size_t x, size_t y) const { return grey_alpha[(y * width + x) * 2 + 1] >= 128; }
    bool has_holes() const;
};

// Both throw std::runtime_error, whose text does not name the file.
Picture read_png(const std::filesystem::path &file);
void write_png(const std::filesystem::path &file, const Picture &picture);

// The record and the bytes of an ibitmap: 4 bits a pixel, and a mask when the picture has holes.
// Pixels less than half opaque are holes.
struct PackedPicture {
    uint16_t width, height, depth, scanline;
    std::vector<uint8_t> data;

    std::string bytes() const;
};
// Throws std::runtime_error for a side that the record cannot hold.
PackedPicture pack(const Picture &picture);

} // namespace tool
