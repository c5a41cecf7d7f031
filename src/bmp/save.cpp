// SPDX-License-Identifier: MIT
// Writes bitmaps as BMP files.
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#include "bmp/bmp.h"
#include "file/replacement.h"
#include "ground/guard.h"
#include "kelvane/bitmaps.h"
#include "kelvane/files.h"
#include "raster/bitmap.h"
#include "raster/bitmap_rows.h"

namespace {

using namespace raster;
using namespace bmp;

void put16(uint8_t *bytes, uint32_t value) {
    bytes[0] = static_cast<uint8_t>(value);
    bytes[1] = static_cast<uint8_t>(value >> 8);
}

void put32(uint8_t *bytes, uint32_t value) {
    put16(bytes, value);
    put16(bytes + 2, value >> 16);
}

// What a file of a bitmap looks like. A bitmap of depth 2 becomes a file of 4 bits with a palette
// of its four levels only.
struct Layout {
    unsigned levels; // palette entries
    unsigned bits;   // of a pixel in the file
    uint64_t offset, row, size;
    explicit Layout(const ibitmap &bm)
        : levels(1u << depth_of(bm)), bits(depth_of(bm) == 8 ? 8 : 4),
          offset(PALETTE + palette_entry_bytes * levels), row(row_bytes(bm.width, bits)),
          size(offset + bm.height * row) {}
};

void put_header(uint8_t *file, const ibitmap &bm, const Layout &layout) {
    file[MAGIC] = 'B';
    file[MAGIC + 1] = 'M';
    put32(file + FILE_SIZE, static_cast<uint32_t>(layout.size));
    put32(file + DATA_OFFSET, static_cast<uint32_t>(layout.offset));
    put32(file + INFO_SIZE, ordinary_info_size);
    put32(file + WIDTH, bm.width);
    put32(file + HEIGHT, bm.height);
    put16(file + PLANES, 1);
    put16(file + BITS, layout.bits);
    for (unsigned i = 0; i < layout.levels; ++i)
        put32(file + PALETTE + palette_entry_bytes * i, i * (0xFFFFFF / (layout.levels - 1)));
}

// A row as greys becomes the levels of the depth, one or two to a byte.
void put_row(uint8_t *to, const uint8_t *greys, size_t width, int depth) {
    if (depth == 8) {
        std::memcpy(to, greys, width);
        return;
    }
    const unsigned step = depth == 4 ? 17 : 85;
    for (size_t x = 0; x < width; ++x)
        to[x / 2] |= static_cast<uint8_t>(greys[x] / step << (x % 2 == 0 ? 4 : 0));
}

std::vector<uint8_t> make_file(const ibitmap &bm, const Layout &layout) {
    std::vector<uint8_t> file(layout.size), greys(bm.width);
    put_header(file.data(), bm, layout);
    const size_t rows = bm.width > 0 ? static_cast<size_t>(rows_inside(bm, bm.width)) : 0;
    for (size_t y = 0; y < rows; ++y) {
        row_to_grey(bm.data + y * bm.scanline, depth_of(bm), 0, bm.width, greys.data());
        put_row(file.data() + layout.offset + (bm.height - 1 - y) * layout.row, greys.data(),
                bm.width, depth_of(bm));
    }
    return file;
}

int write_file(const char *path, const std::vector<uint8_t> &bytes) {
    kv_buildpath(path);
    file::Replacement file(path);
    return kv_fwrite(bytes.data(), 1, bytes.size(), file.stream()) == bytes.size() && file.commit();
}

} // namespace

int SaveBitmap(const char *path, const ibitmap *bm) {
    return ground::guarded(0, [&]() -> int {
        if (!path || !bm) return 0;
        const int depth = depth_of(*bm);
        if (depth != 2 && depth != 4 && depth != 8) return 0;
        const Layout layout(*bm);
        if (layout.size > std::numeric_limits<uint32_t>::max()) return 0;
        return write_file(path, make_file(*bm, layout));
    });
}
