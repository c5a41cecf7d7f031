// SPDX-License-Identifier: MIT
// Converts rows between depths, vectors of pixels at a time where the machine has them.
#include "raster/bitmap_rows.h"

#include <array>
#include <cstring>

#include "kelvane/canvas.h"
#include "raster/bitmap.h"
#include "raster/pixels.h"

namespace raster {
namespace {

// The pixels of one byte, for each of its values.
template <size_t Pixels>
using ByteTable = std::array<std::array<uint8_t, Pixels>, 256>;

template <size_t Pixels>
constexpr ByteTable<Pixels> make_byte_table() {
    ByteTable<Pixels> table{};
    constexpr unsigned bits = 8 / Pixels, top = (1 << bits) - 1;
    for (unsigned byte = 0; byte < 256; ++byte)
        for (size_t i = 0; i < Pixels; ++i)
            table[byte][i] = static_cast<uint8_t>((byte >> (8 - bits * (i + 1)) & top) * 255 / top);
    return table;
}

constexpr ByteTable<8> octet_table = make_byte_table<8>(); // 255 for a 1, 0 for a 0
constexpr ByteTable<4> quad_table = make_byte_table<4>();  // levels 0, 85, 170, 255

void bits_to_grey(const BitRow &bits, size_t count, uint8_t *grey) {
    for (size_t n = 0; n < count / 8; ++n)
        std::memcpy(grey + n * 8, &octet_table[bits.octet(n)], 8);
    for (size_t i = count & ~size_t{7}; i < count; ++i) grey[i] = bits.bit(i) ? 255 : 0;
}

void quads_to_grey(const uint8_t *row, size_t sx, size_t count, uint8_t *grey) {
    size_t i = 0;
    for (; i < count && (sx + i) % 4 != 0; ++i)
        grey[i] = quad_table[row[(sx + i) / 4]][(sx + i) % 4];
    for (const uint8_t *byte = row + (sx + i) / 4; count - i >= 4; i += 4)
        std::memcpy(grey + i, &quad_table[*byte++], 4);
    for (; i < count; ++i) grey[i] = quad_table[row[(sx + i) / 4]][(sx + i) % 4];
}

void convert_row(const uint8_t *row, size_t count, uint8_t *grey,
                 void (*convert)(const kv_img_conv *)) {
    const kv_img_conv conv{const_cast<uint8_t *>(row), grey, static_cast<int>(count), 1, 0, 0};
    convert(&conv);
}

void nibbles_to_grey(const uint8_t *row, size_t sx, size_t count, uint8_t *grey) {
    if (sx % 2 != 0) {
        *grey++ = static_cast<uint8_t>((row[sx / 2] & 15) * 17);
        ++sx, --count;
    }
    if (count == 0) return;
    convert_row(row + sx / 2, count, grey, kv_gs4_to_gs);
}

void rgb_to_grey(const uint8_t *rgb, size_t count, uint8_t *grey) {
    for (size_t i = 0; i < count; ++i)
        grey[i] = grey_of(rgb[3 * i], rgb[3 * i + 1], rgb[3 * i + 2]);
}

// Two bytes read as one little-endian word let the compiler handle eight pairs at once.
void pack_nibbles(const uint8_t *levels, size_t bytes, uint8_t *packed) {
    for (size_t i = 0; i < bytes; ++i) {
        const unsigned pair = levels[2 * i] | levels[2 * i + 1] << 8;
        packed[i] = static_cast<uint8_t>((pair & 0xF0) | pair >> 12);
    }
}

void pack_quads(const uint8_t *levels, size_t bytes, uint8_t *packed) {
    for (size_t i = 0; i < bytes; ++i, levels += 4)
        packed[i] = static_cast<uint8_t>((levels[0] & 0xC0) | (levels[1] & 0xC0) >> 2 |
                                         (levels[2] & 0xC0) >> 4 | levels[3] >> 6);
}

} // namespace

bool is_known_depth(int depth) {
    switch (depth) {
    case 1:
    case 2:
    case 4:
    case 8:
    case 16:
    case 24:
        return true;
    default:
        return false;
    }
}

void row_to_grey(const uint8_t *row, int depth, size_t sx, size_t count, uint8_t *grey) {
    switch (depth) {
    case 1:
        bits_to_grey(BitRow(row, sx), count, grey);
        break;
    case 2:
        quads_to_grey(row, sx, count, grey);
        break;
    case 4:
        nibbles_to_grey(row, sx, count, grey);
        break;
    case 8:
        std::memcpy(grey, row + sx, count);
        break;
    case 16:
        convert_row(row + 2 * sx, count, grey, kv_rgb565_to_gs);
        break;
    case 24:
        rgb_to_grey(row + 3 * sx, count, grey);
        break;
    }
}

void put_masked(uint8_t *pixels, const uint8_t *grey, size_t count, const BitRow &mask) {
    for (size_t n = 0; n < count / 8; ++n) {
        uint64_t drawn, old, fresh;
        std::memcpy(&drawn, &octet_table[mask.octet(n)], 8);
        std::memcpy(&old, pixels + n * 8, 8);
        std::memcpy(&fresh, grey + n * 8, 8);
        const uint64_t mixed = (fresh & drawn) | (old & ~drawn);
        std::memcpy(pixels + n * 8, &mixed, 8);
    }
    for (size_t i = count & ~size_t{7}; i < count; ++i)
        if (mask.bit(i)) pixels[i] = grey[i];
}

void pack_row(const uint8_t *levels, ibitmap &bm, size_t row) {
    uint8_t *packed = bm.data + row * bm.scanline;
    if (depth_of(bm) == 4)
        pack_nibbles(levels, bm.scanline, packed);
    else
        pack_quads(levels, bm.scanline, packed);
}

} // namespace raster
