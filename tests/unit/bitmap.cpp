// SPDX-License-Identifier: MIT
// Bitmaps against their plain definition, pixel by pixel.
#include "kelvane/bitmaps.h"

#include <algorithm>
#include <climits>
#include <functional>
#include <gtest/gtest.h>
#include <vector>

#include "hw.h"
#include "raster/bitmap.h"
#include "raster/bitmap_tracker.h"
#include "unit/bitmap_support.h"
#include "unit/raster_support.h"

namespace {

using namespace raster;
using namespace bitmaps;

// What the fast path makes of it.
int fast_grey_at(const ibitmap &bm, int x, int y) {
    const uint8_t *row = bm.data + y * bm.scanline;
    if (depth_of(bm) == 24)
        return std::min(255,
                        (row[3 * x + 2] >> 3) + 5 * ((row[3 * x] >> 4) + (row[3 * x + 1] >> 3)));
    if (depth_of(bm) != 16) return grey_at(bm, x, y);
    const int v = row[2 * x] | row[2 * x + 1] << 8;
    return std::min(255, (v & 31) + 5 * ((v >> 6 & 31) + (v >> 12)));
}

void plain_draw(const icanvas &c, int x, int y, const ibitmap &bm, int sx, int sy, int w, int h) {
    w = std::min(w, bm.width - sx), h = std::min(h, bm.height - sy);
    const int left = std::max({x, x - sx, c.clipx1, 0}), top = std::max({y, y - sy, c.clipy1, 0});
    const int right = std::min({x + w, c.clipx2 + 1, c.width});
    const int bottom = std::min({y + h, c.clipy2 + 1, c.height});
    const bool fast = c.depth == 8 && !has_mask(bm) && right - left >= 16 && left % 4 == 0 &&
                      (sx + left - x) % 8 == 0 && bm.scanline % 4 == 0 && c.scanline % 4 == 0;
    for (int cy = top; cy < bottom; ++cy)
        for (int cx = left; cx < right; ++cx) {
            const int bx = sx + cx - x, by = sy + cy - y;
            if (!is_drawn(bm, bx, by) || (depth_of(bm) == 16 && !fast)) continue;
            const int grey = fast ? fast_grey_at(bm, bx, by) : grey_at(bm, bx, by);
            std::memset(pixel_address(c, cx, cy), grey, static_cast<size_t>(c.depth / 8));
        }
}

TEST(Bitmap, Making) {
    struct {
        int depth_of_panel, w, h, scanline;
    } const cases[] = {{4, 3, 1, 2},     {4, 4, 7, 2}, {4, 65535, 1, 32768},
                       {4, 1, 65535, 1}, {2, 5, 2, 2}, {2, 4, 1, 1}};
    for (const auto &c : cases) {
        loadHwConfigEmulator(c.depth_of_panel == 2 ? "0x0010111101013021" : "0x0010111101013041");
        const BitmapPtr bm(NewBitmap(c.w, c.h));
        ASSERT_NE(bm, nullptr);
        EXPECT_EQ(bm->depth, c.depth_of_panel);
        EXPECT_EQ(bm->scanline, c.scanline);
        EXPECT_EQ(std::count(bm->data, bm->data + c.scanline * c.h, 0xFF), c.scanline * c.h);
    }
    for (const auto &[w, h] :
         {std::pair{0, 5}, {5, 0}, {-1, 5}, {65536, 1}, {1, 65536}, {1, INT_MAX}, {INT_MIN, 1}})
        EXPECT_EQ(NewBitmap(w, h), nullptr) << w << 'x' << h;
}

TEST(Bitmap, CopiesAreEqualAndTracked) {
    static const ibitmap *from, *to;
    bitmap_tracker.copied = [](const ibitmap *a, const ibitmap *b) { from = a, to = b; };
    Random random{};
    const BitmapPtr bm = random_bitmap(random, 13, 5, 4, true);
    const BitmapPtr copy(CopyBitmap(bm.get())), quiet(CopyBitmapNoTrack(bm.get()));
    const size_t bytes = sizeof(ibitmap) + pixel_bytes(*bm) + mask_bytes(*bm);
    EXPECT_EQ(std::memcmp(copy.get(), bm.get(), bytes), 0);
    EXPECT_EQ(std::memcmp(quiet.get(), bm.get(), bytes), 0);
    EXPECT_TRUE(from == bm.get() && to == copy.get());
    EXPECT_EQ(CopyBitmap(nullptr), nullptr);
}

TEST(Bitmap, DrawsLikeThePlainDefinition) {
    Random random{};
    for (int round = 0; round < 6000; ++round) {
        const int widest = round % 40 ? 90 : 1200; // some rows are drawn in pieces
        const BitmapPtr bm = random_bitmap(random, random(1, widest), random(1, 6),
                                           random.of(depths), random(0, 2) == 0);
        if (round % 4 == 0 && depth_of(*bm) == 4) // an odd last pixel is the next row's first byte
            bm->scanline = bm->width / 2;
        const int bits = random(0, 2) == 0 ? 24 : 8, w = random(1, widest), h = random(1, 8);
        const int padding = random(0, 3);
        // Most starts are aligned, so that the fast path is met.
        const int x = random(-5, 10) * (round % 3 ? 4 : 1), y = random(-4, 9);
        const int sx = round % 2 ? 0 : random(-3, 12) * (round % 3 ? 4 : 1), sy = random(-2, 3);
        const int part_w = random(1, widest), part_h = random(1, 8);
        TestCanvas expected(w, h, bits, padding), drawn(w, h, bits, padding);
        for (TestCanvas *c : {&expected, &drawn})
            c->clipx1 = round % 5 - 2, c->clipx2 = w - round % 7, c->clipy2 = h + round % 3 - 1;
        if (sx == 0 && round % 4 == 1) {
            plain_draw(expected, x, y, *bm, 0, 0, bm->width, bm->height);
            DrawBitmap(x, y, bm.get());
        } else {
            plain_draw(expected, x, y, *bm, sx, sy, part_w, part_h);
            DrawBitmapArea(x, y, bm.get(), sx, sy, part_w, part_h);
        }
        ASSERT_EQ(expected.memory, drawn.memory)
            << "round " << round << ": depth " << bm->depth << ' ' << bm->width << 'x' << bm->height
            << " at " << x << ',' << y << " from " << sx << ',' << sy;
    }
}

TEST(Bitmap, TilesRepeatFromTheCorner) {
    Random random{};
    for (int round = 0; round < 500; ++round) {
        const BitmapPtr bm = random_bitmap(random, random(1, 9), random(1, 9), 4, round % 2 == 0);
        const int x = random(-20, 20), y = random(-20, 20), w = random(-1, 40), h = random(-1, 40);
        TestCanvas expected(30, 25), drawn(30, 25);
        for (int i = 0; i < w; ++i)
            for (int j = 0; j < h; ++j)
                plain_draw(expected, x + i, y + j, *bm, i % bm->width, j % bm->height, 1, 1);
        TileBitmap(x, y, w, h, bm.get());
        ASSERT_EQ(expected.memory, drawn.memory) << "round " << round;
    }
}

TEST(Bitmap, AbsurdArgumentsStayInside) {
    Random random{};
    const int values[] = {INT_MIN, INT_MIN + 1, -1, 0, 1, 16, INT_MAX - 1, INT_MAX};
    const BitmapPtr bm = random_bitmap(random, 33, 5, 4, true);
    const BitmapPtr odd = random_bitmap(random, 9, 2, 8, false);
    odd->scanline = 3; // rows shorter than the width says
    TestCanvas canvas(40, 10);
    for (int round = 0; round < 3000; ++round) {
        const int x = random.of(values), y = random.of(values), a = random.of(values),
                  b = random.of(values), w = random.of(values), h = random.of(values);
        DrawBitmap(x, y, round % 2 ? bm.get() : odd.get());
        DrawBitmapArea(x, y, bm.get(), a, b, w, h);
        TileBitmap(x, y, w, h, bm.get());
        std::free(BitmapFromScreenR(x, y, std::min(w, 99), std::min(h, 99), round % 4));
    }
    DrawBitmap(0, 0, nullptr);
    DrawBitmapArea(0, 0, nullptr, 0, 0, 1, 1);
    TileBitmap(0, 0, 9, 9, nullptr);
    TileBitmap(INT_MIN, INT_MIN, INT_MAX, INT_MAX, bm.get());
    SetCanvas(nullptr);
    const BitmapPtr white(BitmapFromScreen(0, 0, 4, 1));
    EXPECT_EQ(white->data[0], 0xFF);
}

// The level of an output pixel, by the definition of the four turns.
int plain_level(const icanvas &c, int column, int row, int rotate, int depth, bool first) {
    const int xs[] = {column, row, c.width - 1 - row, c.width - 1 - column};
    const int ys[] = {row, c.height - 1 - column, column, c.height - 1 - row};
    const int x = xs[rotate], y = ys[rotate];
    if (x < 0 || y < 0 || x >= c.width || y >= c.height) return (1 << depth) - 1;
    const uint8_t *pixel = pixel_address(c, x, y);
    if (c.depth == 8) return *pixel >> (8 - depth);
    return (3 * pixel[0] + 6 * pixel[1] + pixel[2]) / (depth == 4 && first ? 160 : 640);
}

TEST(Bitmap, CopiesTheScreenTurned) {
    Random random{};
    for (int round = 0; round < 2000; ++round) {
        const int depth = round % 3 ? 4 : 2;
        loadHwConfigEmulator(depth == 2 ? "0x0010111101013021" : "0x0010111101013041");
        TestCanvas canvas(random(1, 30), random(1, 20), round % 2 ? 8 : 24, random(0, 3));
        for (uint8_t &byte : canvas.memory) byte = static_cast<uint8_t>(random(0, 255));
        canvas.clipx2 = 0; // is not asked
        const int x = random(-9, 20), y = random(-9, 20), w = random(1, 40), h = random(1, 30);
        const int rotate = round % 4;
        const BitmapPtr bm(BitmapFromScreenR(x, y, w, h, rotate));
        for (int r = 0; r < h; ++r)
            for (int c = 0; c < w; ++c) {
                const int steps = depth == 4 ? 15 : 3,
                          expected = plain_level(canvas, x + c, y + r, rotate, depth, c % 2 == 0);
                ASSERT_EQ(grey_at(*bm, c, r), expected * 255 / steps)
                    << "round " << round << " at " << c << ',' << r;
            }
        if (rotate == 0) {
            const BitmapPtr same(BitmapFromScreen(x, y, w, h));
            ASSERT_EQ(std::memcmp(same->data, bm->data, pixel_bytes(*bm)), 0);
        }
    }
    EXPECT_EQ(BitmapFromScreen(0, 0, 0, 1), nullptr);
    EXPECT_EQ(BitmapFromScreenR(0, 0, 1, -1, 1), nullptr);
}

} // namespace
