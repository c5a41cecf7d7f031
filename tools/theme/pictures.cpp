// SPDX-License-Identifier: MIT
// Picture files become grey pictures with holes, and blocks of a theme become pictures again.
#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <stdexcept>

#include "folder.h"
#include "kelvane/pictures.h"
#include "raster/bitmap.h"
#include "resources.h"

namespace tool {
namespace {

constexpr int unchanged = 100, own_size = -1; // of LoadJPEG() and LoadTIFF()

std::string extension(const std::filesystem::path &file) {
    std::string text = file.extension().string();
    for (char &c : text)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c | 0x20);
    return text;
}

// The grey of pixel x of a row.
uint8_t grey_at(const uint8_t *row, size_t x, int depth) {
    const auto luminance = [](int r, int g, int b) {
        return static_cast<uint8_t>((r * 77 + g * 151 + b * 28) >> 8);
    };
    switch (depth) {
    case 8:
        return row[x];
    case 16: {
        const int v = row[2 * x] | row[2 * x + 1] << 8;
        return luminance((v >> 11) * 255 / 31, (v >> 5 & 63) * 255 / 63, (v & 31) * 255 / 31);
    }
    case 24:
        return luminance(row[3 * x], row[3 * x + 1], row[3 * x + 2]);
    default: {
        const auto bits = static_cast<size_t>(depth), per_byte = 8 / bits;
        const int white = (1 << depth) - 1;
        const int level = row[x / per_byte] >> (8 - bits - x % per_byte * bits) & white;
        return static_cast<uint8_t>(level * 255 / white);
    }
    }
}

// Whether all rows, and the mask, lie inside the block.
bool is_whole(const ibitmap &bm, size_t size) {
    constexpr std::array depths = {1, 2, 4, 8, 16, 24};
    const int depth = raster::depth_of(bm);
    if (bm.width == 0 || bm.height == 0 || std::ranges::find(depths, depth) == depths.end())
        return false;
    const size_t row = (bm.width * static_cast<size_t>(depth) + 7) / 8;
    const size_t mask = raster::has_mask(bm) ? raster::mask_bytes(bm) : 0;
    return bm.scanline >= row && size >= sizeof bm + raster::pixel_bytes(bm) + mask;
}

Picture to_picture(const ibitmap &bm) {
    Picture picture{bm.width, bm.height, {}};
    picture.grey_alpha.reserve(picture.width * picture.height * 2);
    for (size_t y = 0; y < picture.height; ++y) {
        const uint8_t *row = bm.data + y * bm.scanline;
        const uint8_t *mask =
            raster::has_mask(bm) ? raster::mask_of(bm) + y * raster::mask_scanline(bm) : nullptr;
        for (size_t x = 0; x < picture.width; ++x) {
            const bool hole = mask && (mask[x / 8] & 0x80 >> x % 8) == 0;
            picture.grey_alpha.push_back(grey_at(row, x, raster::depth_of(bm)));
            picture.grey_alpha.push_back(hole ? 0 : 255);
        }
    }
    return picture;
}

// Throws std::runtime_error.
Picture load(const std::filesystem::path &file) {
    if (is_odd(file)) throw std::runtime_error("it is no plain file");
    const std::string kind = extension(file), path = file.string();
    if (kind == ".png") return read_png(file);
    raster::BitmapPtr bm;
    if (kind == ".bmp")
        bm.reset(LoadBitmap(path.c_str()));
    else if (kind == ".jpg")
        bm.reset(LoadJPEG(path.c_str(), own_size, own_size, unchanged, unchanged, 0));
    else
        bm.reset(LoadTIFF(path.c_str(), own_size, own_size, unchanged, unchanged, 0));
    if (!bm) throw std::runtime_error("the library refuses it");
    return to_picture(*bm);
}

} // namespace

bool is_picture_file(const std::filesystem::path &file) {
    constexpr std::array extensions = {".png", ".jpg", ".bmp", ".tif"};
    return std::ranges::find(extensions, extension(file)) != extensions.end();
}

std::string read_picture(const std::filesystem::path &file, Mistakes &mistakes) try {
    return pack(load(file)).bytes();
} catch (const std::runtime_error &e) {
    mistakes.add({file},
                 std::string("does not load as a picture (") + e.what() + "); save it as PNG");
    return {};
}

std::optional<Picture> to_picture(std::span<const uint8_t> bytes) {
    if (bytes.size() < sizeof(ibitmap)) return std::nullopt;
    const auto &bm = *reinterpret_cast<const ibitmap *>(bytes.data());
    return is_whole(bm, bytes.size()) ? std::optional(to_picture(bm)) : std::nullopt;
}

} // namespace tool
