// SPDX-License-Identifier: MIT
// Mirroring, conversion and rotation of bitmaps.
#include <climits>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <numeric>
#include <vector>

#include "hw.h"
#include "kelvane/bitmaps.h"
#include "support/headless.h"
#include "unit/bitmap_support.h"

namespace {

using namespace bitmaps;

// Everything that a pixel is, its mask bit included.
int everything_at(const ibitmap &bm, int x, int y) {
    const int depth = depth_of(bm);
    const uint8_t *row = bm.data + y * bm.scanline;
    const int value = depth == 24   ? row[3 * x] << 16 | row[3 * x + 1] << 8 | row[3 * x + 2]
                      : depth == 16 ? row[2 * x] << 8 | row[2 * x + 1]
                                    : raw_at(bm, x, y);
    return value * 2 + is_drawn(bm, x, y);
}

TEST(BitmapChange, Mirrors) {
    Random random{};
    for (int round = 0; round < 300; ++round) {
        const BitmapPtr bm = random_bitmap(random, random(1, 40), random(1, 7), depths[round % 6],
                                           random(0, 1) == 0);
        const BitmapPtr before(CopyBitmap(bm.get()));
        const int flags = random(0, 15), w = bm->width, h = bm->height;
        const bool across = (flags & 4) != 0 && depth_of(*bm) != 16, down = (flags & 8) != 0;
        MirrorBitmap(bm.get(), flags);
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x)
                ASSERT_EQ(everything_at(*bm, x, y),
                          everything_at(*before, across ? w - 1 - x : x, down ? h - 1 - y : y))
                    << "depth " << bm->depth << " flags " << flags;
    }
}

TEST(BitmapChange, ColourBecomesTransparent) {
    Random random{};
    for (int round = 0; round < 300; ++round) {
        const int depth = depths[round % 6];
        ibitmap *bm =
            random_bitmap(random, random(1, 40), random(1, 7), depth, round % 2).release();
        const BitmapPtr before(CopyBitmap(bm));
        const int level = round % 7 == 0 ? -1 : random(0, (1 << std::min(depth, 3)) - 1);
        SetTransparentColor(&bm, level);
        const BitmapPtr after(bm);
        ASSERT_EQ(has_mask(*bm), depth <= 8 || has_mask(*before));
        ASSERT_EQ(std::memcmp(bm->data, before->data, pixel_bytes(*bm)), 0);
        for (int y = 0; depth <= 8 && y < bm->height; ++y)
            for (int x = 0; x < bm->width; ++x)
                ASSERT_EQ(is_drawn(*bm, x, y), raw_at(*bm, x, y) != level);
    }
}

TEST(BitmapChange, DepthFourToEight) {
    Random random{};
    for (int round = 0; round < 300; ++round) {
        const BitmapPtr bm =
            random_bitmap(random, random(1, 40), random(1, 7), depths[round % 6], round % 4 < 2);
        const BitmapPtr copy(CopyBitmapDepth4To8(bm.get()));
        if (!has_mask(*bm) && depth_of(*bm) != 4) {
            EXPECT_EQ(copy, nullptr);
            continue;
        }
        ASSERT_TRUE(depth_of(*copy) == 8 && copy->scanline == bm->width);
        ASSERT_EQ(has_mask(*copy), has_mask(*bm));
        // Pixels of any depth are read as nibbles; rows that have fewer go on in what follows.
        const size_t bytes = pixel_bytes(*bm) + (has_mask(*bm) ? mask_bytes(*bm) : 0);
        for (int y = 0; y < bm->height; ++y)
            for (int x = 0; x < bm->width; ++x) {
                const size_t byte = static_cast<size_t>(y * bm->scanline + x / 2);
                const int level = byte < bytes ? bm->data[byte] >> (x % 2 ? 0 : 4) & 15 : 0;
                ASSERT_EQ(raw_at(*copy, x, y), level * 17);
                ASSERT_EQ(is_drawn(*copy, x, y), is_drawn(*bm, x, y));
            }
    }
}

TEST(BitmapChange, DepthEightToFour) {
    Random random{};
    for (int round = 0; round < 200; ++round) {
        const BitmapPtr bm = random_bitmap(random, random(1, 20), random(1, 7), 8, false);
        const BitmapPtr copy(CopyBitmapDepth8To4(bm.get()));
        const size_t scanline = bm->width / 2u;
        ASSERT_TRUE(copy->depth == 4 && copy->scanline == scanline);
        // An odd row ends in the high nibble where the next one begins.
        std::vector<uint8_t> expected(scanline * bm->height + 1);
        for (size_t y = 0; y < bm->height; ++y)
            for (size_t x = 0; x < bm->width; ++x)
                expected[y * scanline + x / 2] |=
                    static_cast<uint8_t>(bm->data[y * bm->width + x] >> 4 << (x % 2 ? 0 : 4));
        if (bm->width % 2 == 0) expected.pop_back();
        ASSERT_EQ(std::memcmp(copy->data, expected.data(), expected.size()), 0);
        // Copies keep the very last pixel too, which is a spare byte.
        const BitmapPtr again(CopyBitmap(copy.get())), back(CopyBitmapDepth4To8(again.get()));
        for (int y = 0; y < bm->height; ++y)
            for (int x = 0; x < bm->width; ++x)
                ASSERT_EQ(raw_at(*back, x, y), grey_at(*copy, x, y)) << x << ',' << y;
    }
    for (const int depth : {0x8008, 1, 2, 4, 16, 24}) {
        const BitmapPtr bm = random_bitmap(random, 3, 3, depth & 0xFF, depth > 255);
        EXPECT_EQ(CopyBitmapDepth8To4(bm.get()), nullptr) << depth;
    }
}

class BitmapMoves : public headless::Test {};

TEST_F(BitmapMoves, TurnRowsAndColumnsRound) {
    Random random{};
    for (int round = 0; round < 400; ++round) {
        const BitmapPtr bm =
            random_bitmap(random, random(1, 60), random(1, 9), random.of(depths), round % 3 == 0);
        const BitmapPtr before(CopyBitmap(bm.get()));
        const int n = round % 10 ? random(-70, 70) : random.of({INT_MIN, INT_MAX, 0});
        const int64_t w = bm->scanline, h = bm->height;
        const bool across = round % 2 == 0;
        across ? MoveBitmapRight(bm.get(), n) : MoveBitmap(bm.get(), n);
        const int64_t right = across ? int64_t{n} * depth_of(*bm) / 8 : 0, down = across ? 0 : n;
        for (int64_t y = 0; y < h; ++y)
            for (int64_t x = 0; x < w; ++x) {
                const int64_t from_y = ((y - down) % h + h) % h;
                const int64_t from_x = ((x - right) % w + w) % w;
                ASSERT_EQ(bm->data[y * w + x], before->data[from_y * w + from_x])
                    << "by " << n << (across ? " across" : " down") << ", depth " << bm->depth;
            }
        const size_t mask = has_mask(*bm) ? mask_bytes(*bm) : 0;
        ASSERT_EQ(std::memcmp(mask_of(*bm), mask_of(*before), mask), 0);
    }
}

TEST_F(BitmapMoves, NoMoreRowsComeBackThanTheFramebufferHas) {
    const int panel = hw_getframebuffer()->height, rows = panel + 20, tall = 2 * rows;
    const BitmapPtr bm = make_bitmap(2, tall, 8);
    const auto number = [&](int y) { return bm->data[2 * y] << 8 | bm->data[2 * y + 1]; };
    for (int y = 0; y < tall; ++y)
        bm->data[2 * y] = static_cast<uint8_t>(y >> 8),
                     bm->data[2 * y + 1] = static_cast<uint8_t>(y);
    MoveBitmap(bm.get(), -rows);
    for (const auto &[y, was] : {std::pair{0, rows},
                                 {rows - 1, tall - 1},
                                 {rows, 0},
                                 {rows + panel - 1, panel - 1},
                                 {rows + panel, rows + panel}})
        EXPECT_EQ(number(y), was);
}

TEST(BitmapChange, BytesTurnRound) {
    for (const int size : {1, 7, 2048, 2049})
        for (const int n : {0, 1, 5, 2047, 3000, -1, -9, INT_MAX, INT_MIN}) {
            std::vector<uint8_t> right(static_cast<size_t>(size)), left;
            std::iota(right.begin(), right.end(), 0);
            const std::vector<uint8_t> before = left = right;
            RotateRight(right.data(), size, n);
            RotateLeft(left.data(), size, n);
            for (int i = 0; i < size; ++i) {
                const int64_t to = ((int64_t{i} + n) % size + size) % size;
                ASSERT_EQ(right[static_cast<size_t>(to)], before[static_cast<size_t>(i)]) << n;
                ASSERT_EQ(left[static_cast<size_t>(i)], before[static_cast<size_t>(to)]) << n;
            }
        }
}

TEST(BitmapChange, NothingInNothingOut) {
    uint8_t byte = 7;
    ibitmap *none = nullptr;
    MirrorBitmap(nullptr, 12);
    SetTransparentColor(nullptr, 0);
    SetTransparentColor(&none, 0);
    MoveBitmap(nullptr, 1);
    MoveBitmapRight(nullptr, 1);
    RotateLeft(nullptr, 5, 1);
    RotateRight(&byte, 0, 1);
    RotateRight(&byte, INT_MIN, 1);
    EXPECT_EQ(byte, 7);
    EXPECT_EQ(CopyBitmapDepth4To8(nullptr), nullptr);
    EXPECT_EQ(CopyBitmapDepth8To4(nullptr), nullptr);
}

} // namespace
