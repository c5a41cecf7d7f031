// SPDX-License-Identifier: MIT
// Reads and writes PNG files, and packs pixels as the library keeps them.
#include "picture.h"

#include <png.h>

#include <stdexcept>
#include <utility>

namespace tool {
namespace {

constexpr size_t longest_side = 0xFFFF;
constexpr size_t most_pixels = 64 << 20;
constexpr uint16_t depth = 4, with_mask = 0x8000;

struct Image : png_image {
    Image() : png_image{} { version = PNG_IMAGE_VERSION; }
    Image(const Image &) = delete;
    ~Image() { png_image_free(this); }
};

void refuse(const png_image &image) {
    throw std::runtime_error(image.message);
}

void check_sides(size_t width, size_t height) {
    if (width > longest_side || height > longest_side)
        throw std::runtime_error("a side is longer than 65535 pixels");
    if (width * height > most_pixels) throw std::runtime_error("it has more than 64 Mi pixels");
}

} // namespace

bool Picture::has_holes() const {
    for (size_t i = 1; i < grey_alpha.size(); i += 2)
        if (grey_alpha[i] < 128) return true;
    return false;
}

Picture read_png(const std::filesystem::path &file) {
    Image image;
    if (png_image_begin_read_from_file(&image, file.c_str()) == 0) refuse(image);
    check_sides(image.width, image.height);
    image.format = PNG_FORMAT_GA;
    Picture picture{image.width, image.height, {}};
    picture.grey_alpha.resize(picture.width * picture.height * 2);
    if (png_image_finish_read(&image, nullptr, picture.grey_alpha.data(), 0, nullptr) == 0)
        refuse(image);
    return picture;
}

void write_png(const std::filesystem::path &file, const Picture &picture) {
    Image image;
    image.width = static_cast<png_uint_32>(picture.width);
    image.height = static_cast<png_uint_32>(picture.height);
    image.format = PNG_FORMAT_GA;
    if (png_image_write_to_file(&image, file.c_str(), 0, picture.grey_alpha.data(), 0, nullptr) ==
        0)
        refuse(image);
}

PackedPicture pack(const Picture &p) {
    check_sides(p.width, p.height);
    const size_t scanline = (p.width + 1) / 2, mask_scanline = (p.width + 7) / 8;
    std::vector<uint8_t> pixels(scanline * p.height), mask(mask_scanline * p.height);
    for (size_t y = 0; y < p.height; ++y)
        for (size_t x = 0; x < p.width; ++x) {
            pixels[y * scanline + x / 2] |= static_cast<uint8_t>(p.level(x, y) << (x % 2 ? 0 : 4));
            if (p.is_opaque(x, y))
                mask[y * mask_scanline + x / 8] |= static_cast<uint8_t>(0x80 >> x % 8);
        }
    const bool holes = p.has_holes();
    if (holes) pixels.insert(pixels.end(), mask.begin(), mask.end());
    return {static_cast<uint16_t>(p.width), static_cast<uint16_t>(p.height),
            static_cast<uint16_t>(holes ? depth | with_mask : depth),
            static_cast<uint16_t>(scanline), std::move(pixels)};
}

std::string PackedPicture::bytes() const {
    std::string out;
    for (const uint16_t number : {width, height, depth, scanline}) {
        out += static_cast<char>(number);
        out += static_cast<char>(number >> 8);
    }
    return out.append(data.begin(), data.end());
}

} // namespace tool
