// SPDX-License-Identifier: MIT
// Mirrors, turns round and converts bitmaps.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <utility>
#include <vector>

#include "ground/guard.h"
#include "hw.h"
#include "kelvane/bitmaps.h"
#include "kelvane/canvas.h"
#include "raster/bitmap.h"
#include "raster/bitmap_rows.h"

namespace {

using namespace raster;

// Pixels of 1, 2, 4 or 8 bits in a row, highest bits of each byte first.
class PackedRow {
  public:
    PackedRow(uint8_t *row, unsigned bits) : row_(row), bits_(bits), top_((1u << bits) - 1) {}
    unsigned get(size_t i) const { return row_[i * bits_ / 8] >> shift(i) & top_; }
    void set(size_t i, unsigned value) {
        uint8_t &byte = row_[i * bits_ / 8];
        byte = static_cast<uint8_t>((byte & ~(top_ << shift(i))) | value << shift(i));
    }
    void reverse(size_t count) {
        for (size_t i = 0, j = count; i + 1 < j; ++i) {
            const unsigned left = get(i), right = get(--j);
            set(i, right);
            set(j, left);
        }
    }

  private:
    unsigned shift(size_t i) const { return 8 - bits_ - static_cast<unsigned>(i * bits_ % 8); }

    uint8_t *row_;
    unsigned bits_, top_;
};

void reverse_row(uint8_t *row, int depth, size_t count) {
    struct Rgb {
        uint8_t bytes[3];
    };
    if (depth == 24)
        std::reverse(reinterpret_cast<Rgb *>(row), reinterpret_cast<Rgb *>(row) + count);
    else if (depth == 8)
        std::reverse(row, row + count);
    else
        PackedRow(row, static_cast<unsigned>(depth)).reverse(count);
}

void mirror_rows(ibitmap &bm) {
    const int depth = depth_of(bm);
    if (depth != 1 && depth != 2 && depth != 4 && depth != 8 && depth != 24) return;
    const size_t rows = static_cast<size_t>(rows_inside(bm, bm.width));
    for (size_t y = 0; y < rows; ++y) reverse_row(bm.data + y * bm.scanline, depth, bm.width);
    if (!has_mask(bm)) return;
    for (size_t y = 0; y < bm.height; ++y)
        reverse_row(mask_of(bm) + y * mask_scanline(bm), 1, bm.width);
}

void flip_block(uint8_t *block, size_t scanline, size_t rows) {
    for (size_t y = 0; y < rows / 2; ++y) {
        uint8_t *top = block + y * scanline;
        std::swap_ranges(top, top + scanline, block + (rows - 1 - y) * scanline);
    }
}

// Copies the mask, where there is one, into a bitmap of the same size that has room for it.
void copy_mask(const ibitmap &from, ibitmap &to) {
    if (!has_mask(from)) return;
    std::memcpy(mask_of(to), mask_of(from), mask_bytes(from));
    to.depth |= BITMAP_MASK;
}

// Marks the pixels of one level in a mask that is all ones.
void clear_level(ibitmap &bm, unsigned level) {
    const unsigned bits = static_cast<unsigned>(depth_of(bm));
    const size_t rows = static_cast<size_t>(rows_inside(bm, bm.width));
    for (size_t y = 0; y < rows; ++y) {
        const PackedRow pixels(bm.data + y * bm.scanline, bits);
        PackedRow mask(mask_of(bm) + y * mask_scanline(bm), 1);
        for (size_t x = 0; x < bm.width; ++x)
            if (pixels.get(x) == level) mask.set(x, 0);
    }
}

// A bitmap with the rows of another and a mask that shows all of it.
BitmapPtr copy_with_full_mask(const ibitmap &bm) {
    const size_t pixels = pixel_bytes(bm), mask = mask_bytes(bm);
    BitmapPtr copy(
        static_cast<ibitmap *>(std::calloc(1, sizeof bm + pixels + mask + bitmap_spare_bytes)));
    if (!copy) return nullptr;
    std::memcpy(copy.get(), &bm, sizeof bm + pixels);
    copy->depth |= BITMAP_MASK;
    std::memset(mask_of(*copy), 0xFF, mask);
    return copy;
}

// Turns a range round so that the byte at `first`, counted from its end when negative and modulo
// its size, comes first.
void rotate_bytes(uint8_t *bytes, int64_t size, int64_t first) {
    if (size < 1) return;
    const int64_t middle = (first % size + size) % size;
    std::rotate(bytes, bytes + middle, bytes + size);
}

// Moves the rows up. Those that leave at the top come back at the bottom, but no more of them than
// the framebuffer has; rows that nothing comes to stay.
void move_up(ibitmap &bm, size_t rows) {
    const icanvas *framebuffer = hw_getframebuffer();
    const size_t limit = framebuffer ? static_cast<size_t>(framebuffer->height) : rows;
    const size_t moved = rows * bm.scanline, kept = pixel_bytes(bm) - moved;
    const std::vector<uint8_t> top(bm.data, bm.data + std::min(rows, limit) * bm.scanline);
    std::memmove(bm.data, bm.data + moved, kept);
    std::copy(top.begin(), top.end(), bm.data + kept);
}

} // namespace

raster::BitmapPtr raster::mirrored(const ibitmap *bm, int flags) {
    if (!bm) return nullptr;
    const size_t bytes = sizeof *bm + used_bytes(*bm);
    BitmapPtr copy(static_cast<ibitmap *>(std::malloc(bytes + bitmap_spare_bytes)));
    if (!copy) return nullptr;
    std::memcpy(copy.get(), bm, bytes);
    MirrorBitmap(copy.get(), flags);
    return copy;
}

void MirrorBitmap(ibitmap *bm, int flags) {
    if (!bm) return;
    if ((flags & MIRROR_VERTICAL) != 0) {
        flip_block(bm->data, bm->scanline, bm->height);
        if (has_mask(*bm)) flip_block(mask_of(*bm), mask_scanline(*bm), bm->height);
    }
    if ((flags & MIRROR_HORIZONTAL) != 0) mirror_rows(*bm);
}

void SetTransparentColor(ibitmap **bm, int level) {
    if (!bm || !*bm) return;
    const int depth = depth_of(**bm);
    if (depth != 1 && depth != 2 && depth != 4 && depth != 8) return;
    BitmapPtr fresh = copy_with_full_mask(**bm);
    if (!fresh) return;
    clear_level(*fresh, static_cast<unsigned>(level));
    const BitmapPtr old(*bm);
    *bm = release_copy(*old, std::move(fresh));
}

ibitmap *CopyBitmapDepth4To8(const ibitmap *bm) {
    if (!bm || (!has_mask(*bm) && depth_of(*bm) != 4)) return nullptr;
    BitmapPtr copy =
        make_bitmap(bm->width, bm->height, 8, has_mask(*bm) ? MaskRoom::reserved : MaskRoom::none);
    if (!copy) return nullptr;
    // Rows of other depths may have fewer nibbles than pixels: they go on in what follows.
    const uint8_t *end = bm->data + used_bytes(*bm);
    for (size_t y = 0; y < bm->height; ++y) {
        const uint8_t *row = bm->data + y * bm->scanline;
        uint8_t *greys = copy->data + y * copy->scanline;
        const size_t count = std::min<size_t>(bm->width, 2 * static_cast<size_t>(end - row));
        row_to_grey(row, 4, 0, count, greys);
        std::memset(greys + count, 0, bm->width - count);
    }
    copy_mask(*bm, *copy);
    return release_copy(*bm, std::move(copy));
}

ibitmap *CopyBitmapDepth8To4(const ibitmap *bm) {
    if (!bm || bm->depth != 8) return nullptr;
    const ibitmap head{bm->width, bm->height, 4, static_cast<uint16_t>(bm->width / 2)};
    BitmapPtr copy(static_cast<ibitmap *>(
        std::calloc(1, sizeof head + pixel_bytes(head) + bitmap_spare_bytes)));
    if (!copy) return nullptr;
    std::memcpy(copy.get(), &head, sizeof head);
    const size_t rows = static_cast<size_t>(rows_inside(*bm, bm->width));
    for (size_t y = 0; y < rows; ++y) {
        const uint8_t *greys = bm->data + y * bm->scanline;
        uint8_t *packed = copy->data + y * copy->scanline;
        for (size_t x = 0; x < bm->width; ++x)
            packed[x / 2] |= static_cast<uint8_t>(x % 2 == 0 ? greys[x] & 0xF0 : greys[x] >> 4);
    }
    return release_copy(*bm, std::move(copy));
}

void MoveBitmapRight(ibitmap *bm, int n) {
    if (!bm) return;
    const int64_t bytes = int64_t{n} * depth_of(*bm) / 8;
    for (size_t y = 0; y < bm->height; ++y)
        rotate_bytes(bm->data + y * bm->scanline, bm->scanline, -bytes);
}

void MoveBitmap(ibitmap *bm, int n) {
    ground::guarded([&] {
        if (!bm || bm->height == 0) return;
        const int64_t rows = n % int64_t{bm->height};
        if (rows >= 0)
            rotate_bytes(bm->data, static_cast<int64_t>(pixel_bytes(*bm)), -rows * bm->scanline);
        else
            move_up(*bm, static_cast<size_t>(-rows));
    });
}

void RotateRight(unsigned char *buf, int len, int n) {
    if (buf) rotate_bytes(buf, len, -int64_t{n});
}

void RotateLeft(unsigned char *buf, int len, int n) {
    if (buf) rotate_bytes(buf, len, n);
}
