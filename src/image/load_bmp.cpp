// SPDX-License-Identifier: MIT
// BMP files of any depth for LoadPicture(), uncompressed. LoadBitmap() takes fewer, and other
// greys.
#include <array>
#include <cstdint>
#include <cstdlib>
#include <optional>

#include "bmp/bmp.h"
#include "image/decode.h"
#include "image/limits.h"
#include "raster/bitmap_rows.h"
#include "raster/pixels.h"

namespace image {
namespace {

constexpr uint32_t not_compressed = 0, bit_fields = 3;
constexpr size_t colors_used = 46, masks = 54;

using Palette = std::array<uint8_t, 256>;

struct Header {
    Size size;
    unsigned bits;
    bool is_top_down;
    size_t info_size, data_offset, entry_bytes, entries;

    size_t row_bytes() const { return bmp::row_bytes(static_cast<uint64_t>(size.width), bits); }
    // All rows, but not what fills the last one.
    size_t data_bytes() const {
        const size_t filled = (static_cast<size_t>(size.width) * bits + 7) / 8;
        return (static_cast<size_t>(size.height) - 1) * row_bytes() + filled;
    }
};

// Numbers of a file; those beyond its end are 0.
class Fields {
  public:
    explicit Fields(std::span<const uint8_t> file) : file_(file) {}
    uint32_t u32(size_t at) const { return u16(at) | uint32_t{u16(at + 2)} << 16; }
    uint16_t u16(size_t at) const { return static_cast<uint16_t>(u8(at) | u8(at + 1) << 8); }
    uint8_t u8(size_t at) const { return at < file_.size() ? file_[at] : uint8_t{0}; }

  private:
    std::span<const uint8_t> file_;
};

// Whether the colours lie where they do without masks.
bool has_usual_masks(const Fields &file, unsigned bits) {
    if (bits == 16)
        return file.u32(masks) == 0x7C00 && file.u32(masks + 4) == 0x3E0 &&
               file.u32(masks + 8) == 0x1F;
    return bits == 32 && file.u32(masks) == 0xFF0000 && file.u32(masks + 4) == 0xFF00 &&
           file.u32(masks + 8) == 0xFF;
}

bool is_known_depth(unsigned bits) {
    return bits == 1 || bits == 4 || bits == 8 || bits == 16 || bits == 24 || bits == 32;
}

std::optional<Header> read_header(const Fields &file) {
    const size_t info_size = file.u32(bmp::INFO_SIZE);
    Header h{{}, 0, false, info_size, file.u32(bmp::DATA_OFFSET), 3, 0};
    if (info_size == bmp::core_info_size) {
        h.size = {file.u16(18), file.u16(20)};
        h.bits = file.u16(24);
    } else if (info_size >= bmp::ordinary_info_size) {
        const auto height = static_cast<int32_t>(file.u32(bmp::HEIGHT));
        if (height == INT32_MIN) return {};
        h.size = {static_cast<int32_t>(file.u32(bmp::WIDTH)), std::abs(height)};
        h.is_top_down = height < 0;
        h.bits = file.u16(bmp::BITS);
        h.entry_bytes = bmp::palette_entry_bytes;
        const uint32_t compression = file.u32(bmp::COMPRESSION);
        if (compression != not_compressed &&
            !(compression == bit_fields && has_usual_masks(file, h.bits)))
            return {};
    }
    if (!is_known_depth(h.bits) || h.size.width < 1 || h.size.height < 1) return {};
    const size_t most = h.bits <= 8 ? size_t{1} << h.bits : 0;
    const size_t used = info_size == bmp::core_info_size ? 0 : file.u32(colors_used);
    h.entries = used > 0 && used < most ? used : most;
    return h;
}

// Colours that the file has not are black.
Palette read_palette(const Fields &file, const Header &h) {
    Palette palette{};
    for (size_t i = 0; i < h.entries; ++i) {
        const size_t at = bmp::INFO_SIZE + h.info_size + i * h.entry_bytes;
        palette[i] = raster::grey_of(file.u8(at + 2), file.u8(at + 1), file.u8(at));
    }
    return palette;
}

uint8_t grey_of_15_bits(unsigned c) {
    const auto full = [](unsigned part) { return static_cast<int>((part << 3 | part >> 2) & 255); };
    return raster::grey_of(full(c >> 10 & 31), full(c >> 5 & 31), full(c & 31));
}

// Of a byte that holds several pixels, the highest bits are the first.
template <size_t bits>
void indexes_to_grey(const Palette &palette, const uint8_t *p, size_t width, uint8_t *row) {
    constexpr size_t pixels = 8 / bits, mask = (1U << bits) - 1;
    for (size_t x = 0; x < width; ++x)
        row[x] = palette[p[x / pixels] >> (pixels - 1 - x % pixels) * bits & mask];
}

void colors_to_grey(size_t bytes, const uint8_t *bgr, size_t width, uint8_t *row) {
    for (size_t x = 0; x < width; ++x, bgr += bytes)
        row[x] = raster::grey_of(bgr[2], bgr[1], bgr[0]);
}

void to_grey(const Header &h, const Palette &palette, const uint8_t *p, uint8_t *row) {
    const auto width = static_cast<size_t>(h.size.width);
    switch (h.bits) {
    case 1:
        return indexes_to_grey<1>(palette, p, width, row);
    case 4:
        return indexes_to_grey<4>(palette, p, width, row);
    case 8:
        return indexes_to_grey<8>(palette, p, width, row);
    case 16:
        for (size_t x = 0; x < width; ++x) row[x] = grey_of_15_bits(p[2 * x] | p[2 * x + 1] << 8U);
        return;
    default:
        return colors_to_grey(h.bits / 8, p, width, row);
    }
}

} // namespace

raster::BitmapPtr decode_bmp(std::span<const uint8_t> file, const Request &request) {
    const Fields fields(file);
    const std::optional<Header> h = read_header(fields);
    if (!h) return nullptr;
    if (!is_reasonable(h->size)) throw std::bad_alloc();
    const size_t row_bytes = h->row_bytes();
    const auto height = static_cast<size_t>(h->size.height);
    if (h->data_offset > file.size() || file.size() - h->data_offset < h->data_bytes())
        return nullptr;
    Pipeline pipeline(h->size, request.place(h->size), request.finish);
    const Palette palette = read_palette(fields, *h);
    for (size_t y = 0; y < height; ++y) {
        const size_t n = h->is_top_down ? y : height - 1 - y;
        if (pipeline.row_is_used())
            to_grey(*h, palette, file.data() + h->data_offset + n * row_bytes, pipeline.row());
        pipeline.row_done();
    }
    return pipeline.finish();
}

} // namespace image
