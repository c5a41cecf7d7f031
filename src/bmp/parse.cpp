// SPDX-License-Identifier: MIT
// Makes bitmaps of BMP files, whose bytes may be anybody's.
#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <vector>

#include "bmp/bmp.h"
#include "ground/log.h"
#include "raster/bitmap_rows.h"

namespace bmp {
namespace {

using namespace raster;

// Bytes behind the end of the file read as 0.
class Reader {
  public:
    explicit Reader(std::span<const uint8_t> file) : file_(file) {}
    uint32_t u16(size_t at) const { return byte(at) | byte(at + 1) << 8; }
    uint32_t u32(size_t at) const { return u16(at) | u16(at + 2) << 16; }

  private:
    uint32_t byte(size_t at) const { return at < file_.size() ? file_[at] : 0; }
    std::span<const uint8_t> file_;
};

struct Header {
    uint64_t data_offset, palette_offset;
    int32_t width, height;
    uint32_t bits, compression;
};

Header read_header(std::span<const uint8_t> file) {
    const Reader reader(file);
    return {.data_offset = reader.u32(DATA_OFFSET),
            .palette_offset = INFO_SIZE + uint64_t{reader.u32(INFO_SIZE)},
            .width = static_cast<int32_t>(reader.u32(WIDTH)),
            .height = static_cast<int32_t>(reader.u32(HEIGHT)),
            .bits = reader.u16(BITS),
            .compression = reader.u32(COMPRESSION)};
}

// What each pixel value becomes: a level, in the highest bits, or nothing when it is the
// transparent colour.
struct Palette {
    std::array<uint8_t, 256> level{};
    std::array<bool, 256> transparent{};
    bool any_transparent = false;
};

uint8_t level_of(int grey, int depth) {
    const int level = depth == 4 ? (grey + 8) / 17 : (grey + 42) / 85;
    return static_cast<uint8_t>(level << (8 - depth));
}

// Reads the entries that lie in the file; the others are black.
Palette read_palette(std::span<const uint8_t> file, const Header &header, int depth) {
    Palette palette;
    const size_t start = std::min<uint64_t>(header.palette_offset, file.size());
    const size_t entries =
        std::min(size_t{1} << header.bits, (file.size() - start) / palette_entry_bytes);
    for (size_t i = 0; i < entries; ++i) {
        const uint8_t *entry = &file[start + i * palette_entry_bytes];
        const int blue = entry[0], green = entry[1], red = entry[2];
        palette.transparent[i] = blue == 0x40 && green == 0x80 && red == 0x80;
        if (palette.transparent[i])
            palette.any_transparent = true;
        else
            palette.level[i] = level_of((blue + 6 * green + 3 * red) / 10, depth);
    }
    return palette;
}

// The file's rows, when all their pixels lie in the file: the padding of the last one may be cut.
std::optional<std::span<const uint8_t>> find_pixels(std::span<const uint8_t> file,
                                                    const Header &header) {
    if (header.width < 1 || header.height < 1 || header.width > max_bitmap_side ||
        header.height > max_bitmap_side || header.data_offset > file.size())
        return std::nullopt;
    const uint64_t width = static_cast<uint64_t>(header.width);
    const uint64_t rows_before = static_cast<uint64_t>(header.height) - 1;
    const uint64_t needed =
        rows_before * row_bytes(width, header.bits) + (width * header.bits + 7) / 8;
    const auto rest = file.subspan(header.data_offset);
    if (needed > rest.size()) return std::nullopt;
    return rest;
}

// Makes rows of a bitmap from rows of a file.
class RowFiller {
  public:
    RowFiller(ibitmap &bm, const Palette &palette, uint32_t bits)
        : bm_(bm), palette_(palette), bits_(bits), values_(bits == 4 ? bm.width + size_t{1} : 0),
          levels_(size_t{bm.scanline} * 8 / static_cast<unsigned>(depth_of(bm))) {}

    void fill(size_t y, const uint8_t *from) {
        const uint8_t *values = bits_ == 4 ? unpack(from) : from;
        for (size_t x = 0; x < bm_.width; ++x) levels_[x] = palette_.level[values[x]];
        pack_row(levels_.data(), bm_, y);
        if (palette_.any_transparent) clear_holes(mask_of(bm_) + y * mask_scanline(bm_), values);
    }
    bool any_transparent() const { return any_transparent_; }

  private:
    const uint8_t *unpack(const uint8_t *from) {
        for (size_t i = 0; i < (size_t{bm_.width} + 1) / 2; ++i) {
            values_[2 * i] = from[i] >> 4;
            values_[2 * i + 1] = from[i] & 15;
        }
        return values_.data();
    }
    void clear_holes(uint8_t *mask, const uint8_t *values) {
        for (size_t x = 0; x < bm_.width; ++x) {
            if (!palette_.transparent[values[x]]) continue;
            mask[x / 8] = static_cast<uint8_t>(mask[x / 8] & ~(0x80 >> x % 8));
            any_transparent_ = true;
        }
    }

    ibitmap &bm_;
    const Palette &palette_;
    uint32_t bits_;
    std::vector<uint8_t> values_, levels_; // a row; levels are 0 behind the width
    bool any_transparent_ = false;
};

BitmapPtr make_pixels(const Header &header, std::span<const uint8_t> rows, const Palette &palette) {
    BitmapPtr bm = make_bitmap(header.width, header.height, native_depth(), MaskRoom::reserved);
    if (!bm) return nullptr;
    std::memset(mask_of(*bm), 0xFF, mask_bytes(*bm));
    RowFiller filler(*bm, palette, header.bits);
    const size_t row = row_bytes(bm->width, header.bits);
    for (size_t i = 0; i < bm->height; ++i)
        filler.fill(bm->height - size_t{1} - i, rows.data() + i * row);
    if (filler.any_transparent()) bm->depth |= BITMAP_MASK;
    return bm;
}

} // namespace

BitmapPtr parse(const char *function, const char *name, std::span<const uint8_t> file) {
    if (file.size() < 2 || file[MAGIC] != 'B' || file[MAGIC + 1] != 'M') {
        kv_warn(function, "%s is not a bmp file\n", name);
        return nullptr;
    }
    const Header header = read_header(file);
    if (header.bits != 4 && header.bits != 8) {
        kv_warn(function, "%s: wrong format (should be 16 or 256 color BMP)\n", name);
        return nullptr;
    }
    if (header.compression != 0) {
        kv_warn(function, "%s: compressed bmp files are not supported\n", name);
        return nullptr;
    }
    const auto rows = find_pixels(file, header);
    if (!rows) return nullptr;
    return make_pixels(header, *rows, read_palette(file, header, native_depth()));
}

} // namespace bmp
