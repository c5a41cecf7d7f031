// SPDX-License-Identifier: MIT
// Scaling, placing and dithering against their plain definitions.
#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

#include "kelvane/bitmaps.h"
#include "kelvane/canvas.h"
#include "unit/bitmap_support.h"
#include "unit/raster_support.h"

namespace {

using namespace bitmaps;

using Weights = std::vector<std::pair<int, int>>; // source pixels and their weights

Weights plain_weights(int source, int target, int i, int one) {
    Weights weights;
    if (target >= source) {
        const double at =
            std::clamp((i + 0.5) * source / target - 0.5, 0.0, static_cast<double>(source - 1));
        const int first = static_cast<int>(at + 1e-9);
        const int second = static_cast<int>(std::floor((at - first) * one + 0.5 + 1e-9));
        return {{first, one - second}, {std::min(first + 1, source - 1), second}};
    }
    int before = 0;
    for (int k = 0; k < source; ++k) {
        const double covered =
            std::clamp((k + 1) * double(target) / source - i, 0.0, 1.0); // up to the end of k
        const int sum = static_cast<int>(std::floor(covered * one + 0.5 + 1e-9));
        weights.emplace_back(k, sum - before);
        before = sum;
    }
    return weights;
}

// What scaling makes of a pixel's values, in 256ths.
int plain_scaled(int sw, int sh, int w, int h, int x, int y,
                 const std::function<int(int, int)> &value) {
    const bool few = h >= sh || (sh - 1) / h + 2 <= 4;
    const Weights rows = plain_weights(sh, h, y, few ? 256 : 32768);
    int64_t sum = 8192;
    for (const auto &[column, weight] : plain_weights(sw, w, x, 16384)) {
        int64_t blended = few ? 0 : 64;
        for (const auto &[row, row_weight] : rows) blended += row_weight * value(column, row);
        sum += weight * (few ? blended : blended / 128);
    }
    return static_cast<int>(sum >> 14);
}

int plain_stretched(const ibitmap &bm, int w, int h, int x, int y) {
    const auto scaled = [&](auto value) {
        return plain_scaled(bm.width, bm.height, w, h, x, y, value);
    };
    const auto grey = [&](int column, int row) { return any_grey_at(bm, column, row); };
    if (!has_mask(bm)) return (scaled(grey) + 128) >> 8;
    const int shown = scaled([&](int c, int r) { return is_drawn(bm, c, r) ? 255 : 0; });
    if (2 * shown < 255 * 256) return -1;
    const int sum = scaled([&](int c, int r) { return is_drawn(bm, c, r) ? grey(c, r) : 0; });
    return std::min((sum * 255 + shown / 2) / shown, 255);
}

TEST(BitmapStretch, IsThePlainDefinition) {
    Random random{};
    for (int round = 0; round < 1500; ++round) {
        const int many = round % 5 == 0 ? 60 : 12;
        const BitmapPtr bm = random_bitmap(random, random(1, 40), random(1, many),
                                           random.of(depths), round % 3 == 0);
        TestCanvas expected(20, 14, round % 4 == 0 ? 24 : 8, random(0, 3)),
            drawn(20, 14, expected.depth, expected.scanline - 20 * expected.depth / 8);
        const int x = random(-20, 20), y = random(-20, 14), w = random(1, 60), h = random(1, 50);
        for (TestCanvas *c : {&expected, &drawn}) c->clipx1 = round % 7, c->clipy2 = 8 + round % 9;
        for (int j = 0; j < h; ++j)
            for (int i = 0; i < w; ++i) {
                const Area pixel = clip_area(&expected, x + i, y + j, 1, 1);
                const int grey = pixel.empty() ? -1 : plain_stretched(*bm, w, h, i, j);
                if (grey >= 0)
                    std::memset(pixel_address(expected, x + i, y + j), grey,
                                static_cast<size_t>(expected.depth / 8));
            }
        StretchBitmap(x, y, w, h, bm.get(), round);
        ASSERT_EQ(expected.memory, drawn.memory)
            << "round " << round << ": depth " << bm->depth << ' ' << bm->width << 'x' << bm->height
            << " to " << w << 'x' << h;
    }
}

TEST(BitmapStretch, KnownPixels) {
    const struct {
        std::vector<uint8_t> from, to;
    } cases[] = {{{0, 255}, {0, 64, 191, 255}},
                 {{0, 100, 200, 50}, {50, 125}},
                 {{0, 90, 30}, {30, 50}},
                 {{7}, {7, 7, 7}}};
    for (const auto &c : cases) {
        const int from = static_cast<int>(c.from.size()), to = static_cast<int>(c.to.size());
        const BitmapPtr row = make_bitmap(from, 1, 8), column = make_bitmap(1, from, 8);
        for (int i = 0; i < from; ++i)
            row->data[i] = column->data[i * column->scanline] = c.from[static_cast<size_t>(i)];
        TestCanvas canvas(8, 8);
        StretchBitmap(0, 0, to, 1, row.get(), 0);
        StretchBitmap(7, 0, 1, to, column.get(), 0);
        for (int i = 0; i < to; ++i) {
            EXPECT_EQ(canvas.addr[i], c.to[static_cast<size_t>(i)]) << from << ' ' << i;
            EXPECT_EQ(canvas.addr[i * canvas.scanline + 7], c.to[static_cast<size_t>(i)]) << from;
        }
    }
}

TEST(BitmapStretch, AveragesAndInterpolatesWithinOneGrey) {
    Random random{};
    for (const auto &[sw, sh, w, h] : {std::array{1000, 700, 13, 9},
                                       {64, 64, 64, 64},
                                       {7, 5, 90, 80},
                                       {90, 3, 11, 40},
                                       {33, 70, 32, 23}}) {
        const BitmapPtr bm = random_bitmap(random, sw, sh, 8, false);
        TestCanvas canvas(w, h);
        StretchBitmap(0, 0, w, h, bm.get(), 0);
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) {
                const auto exact = [](int source, int target, int i, int k) {
                    if (target < source)
                        return std::max(0.0, std::min(k + 1., (i + 1.) * source / target) -
                                                 std::max(double(k), double(i) * source / target)) *
                               target / source;
                    const double at = std::clamp((i + .5) * source / target - .5, 0., source - 1.);
                    return std::max(0., 1 - std::abs(at - k));
                };
                double sum = 0;
                for (int r = 0; r < sh; ++r)
                    if (const double weight = exact(sh, h, y, r); weight > 0)
                        for (int c = 0; c < sw; ++c)
                            sum += weight * exact(sw, w, x, c) * bm->data[r * bm->scanline + c];
                ASSERT_NEAR(canvas.addr[y * canvas.scanline + x], sum, 1.05) << w << ' ' << x;
            }
    }
}

TEST(BitmapStretch, AbsurdArgumentsStayInside) {
    Random random{};
    const int values[] = {INT_MIN, INT_MIN + 1, -65536, -1, 0, 1, 7, 65536, INT_MAX - 1, INT_MAX};
    const BitmapPtr bm = random_bitmap(random, 33, 5, 4, true);
    const BitmapPtr odd = random_bitmap(random, 9, 2, 8, false);
    odd->scanline = 3; // rows shorter than the width says
    TestCanvas canvas(40, 10), untouched(40, 10);
    SetCanvas(&canvas);
    for (int round = 0; round < 3000; ++round) {
        const int x = random.of(values), y = random.of(values), w = random.of(values),
                  h = random.of(values);
        StretchBitmap(x, y, w, h, round % 2 ? bm.get() : odd.get(), round);
        DrawBitmapRect(x, y, w, h, bm.get(), 1 << round % 16);
        DitherArea(x, y, w, h, random.of(values), round % 4);
    }
    ClearScreen();
    for (const int depth : {0, 3, 12, 32, -8, 256}) // nothing is known of such pixels
        kv_stretch(bm->data, depth, 0, 0, 3, 3, 3, 0, 0, 9, 9, 0, nullptr, 0);
    for (const auto &[sx, sy, sw, sh] :
         {std::array{-1, 0, 1, 1}, {0, -1, 1, 1}, {0, 0, 0, 1}, {0, 0, 1, 65536}})
        kv_stretch(bm->data, 8, sx, sy, sw, sh, 1, 0, 0, 9, 9, 0, nullptr, 0);
    kv_stretch(nullptr, 8, 0, 0, 1, 1, 1, 0, 0, 9, 9, 0, nullptr, 0);
    StretchBitmap(0, 0, 9, 9, nullptr, 0);
    DrawBitmapRect(0, 0, 9, 9, nullptr, 0);
    DrawBitmapRect2(nullptr, bm.get());
    EXPECT_EQ(canvas.memory, untouched.memory);
}

// A bitmap of w by h whose pixel at (x, y) is the digit x + y, as levels of depth 4.
BitmapPtr diagonal(int w, int h) {
    BitmapPtr bm = make_bitmap(w, h, 8);
    for (int i = 0; i < w * h; ++i) bm->data[i] = static_cast<uint8_t>(i % w + i / w + 1);
    return bm;
}

TEST(BitmapPlace, FollowsTheFirstBitThatCounts) {
    struct {
        int w, h, flags, x, y, sx, sy, drawn_w, drawn_h; // what DrawBitmapArea would be told
    } const cases[] = {
        {10, 9, 0, 0, 0, 0, 0, 4, 3},    {10, 9, 0x22, 3, 3, 0, 0, 4, 3},
        {10, 9, 0x44, 6, 6, 0, 0, 4, 3}, {10, 9, 0x66, 3, 3, 0, 0, 4, 3},
        {3, 2, 0, 0, 0, 0, 0, 3, 2},     {2, 1, 0x22, 0, 0, 1, 1, 2, 1},
        {3, 2, 0x44, 0, 0, 1, 1, 3, 2},  {1, 8, 0x24, 0, 2, 3, 0, 1, 3},
        {4, 3, 0x46, 0, 0, 0, 0, 4, 3},  {9, 1, 0x42, 2, 0, 0, 2, 4, 1},
    };
    const BitmapPtr bm = diagonal(4, 3);
    for (const auto &c : cases) {
        TestCanvas expected(16, 12), drawn(16, 12);
        const irect r = iRect(2, 1, c.w, c.h, c.flags);
        DrawBitmapRect2(&r, bm.get());
        SetCanvas(&expected);
        DrawBitmapArea(2 + c.x, 1 + c.y, bm.get(), c.sx, c.sy, c.drawn_w, c.drawn_h);
        EXPECT_EQ(expected.memory, drawn.memory) << c.w << 'x' << c.h << " flags " << c.flags;
    }
    // A width of 0 stands for tiling.
    struct {
        int bw, bh, rw, rh, flags, x, y, w, h;
    } const scaled[] = {
        {4, 3, 9, 8, 0x8, 0, 1, 9, 6},    // 3 / 4 = 0 is not above 8 / 9 = 0: the width is filled
        {4, 3, 9, 2, 0x8, 0, -2, 9, 6},   // so here too, beyond the rectangle
        {3, 7, 9, 8, 0x3008, 3, 0, 3, 8}, // 7 / 3 = 2 is above 0: the height is filled
        {4, 7, 9, 8, 0x2A, 2, 0, 4, 8},   {4, 4, 9, 8, 0x8, 0, 0, 8, 8},
        {1, 7, 3, 9, 0x8, 1, 0, 1, 9},    {4, 3, 9, 8, 0x3000, 0, 0, 9, 8},
        {4, 3, 9, 8, 0x2022, 0, 0, 0, 0},
    };
    for (const auto &c : scaled) {
        const BitmapPtr piece = diagonal(c.bw, c.bh);
        TestCanvas expected(16, 12), drawn(16, 12);
        DrawBitmapRect(2, 3, c.rw, c.rh, piece.get(), c.flags);
        SetCanvas(&expected);
        if (c.w == 0)
            TileBitmap(2, 3, c.rw, c.rh, piece.get());
        else
            StretchBitmap(2 + c.x, 3 + c.y, c.w, c.h, piece.get(), 0);
        EXPECT_EQ(expected.memory, drawn.memory) << c.bw << 'x' << c.bh << " flags " << c.flags;
    }
}

int plain_copy_level(const ibitmap &bm, int sx, int sy, int sw, int sh, int dw, int dh, int x,
                     int y) {
    const int x_step = (sw - 1) * 1024 / (dw - 1), y_step = (sh - 1) * 1024 / (dh - 1);
    const int px = x * x_step, py = sy * 1024 + y * y_step, fx = px % 1024, fy = py % 1024;
    const int top = py / 1024 * bm.scanline + x_step / 1024 * sx, block = bm.height * bm.scanline;
    const int below = top + bm.scanline < block ? top + bm.scanline : top;
    const auto part = [&](int row, int i, int weight) {
        const int byte = row + i / 2;
        const int level = byte >= block ? 0 : bm.data[byte] >> (i % 2 ? 0 : 4) & 15;
        return (level * 16 + 7) * weight >> 20;
    };
    const int i = px / 1024;
    const int sum = part(top, i, (1024 - fy) * (1024 - fx)) + part(top, i + 1, (1024 - fy) * fx) +
                    part(below, i, fy * (1024 - fx)) + part(below, i + 1, fy * fx);
    return std::min(15, static_cast<int>(std::floor(sum / 16.0 + 0.5)));
}

TEST(BitmapStretch, CopiesAnArea) {
    Random random{};
    for (int round = 0; round < 800; ++round) {
        const BitmapPtr bm = random_bitmap(random, random(1, 40), random(1, 20), 4, round % 2 == 0);
        const int sx = round % 3 ? 0 : random(0, bm->width - 1), sy = random(0, bm->height - 1);
        const int sw = random(1, 50), sh = random(1, 30), dw = random(2, 50), dh = random(2, 30);
        const BitmapPtr copy(BitmapStretchCopy(bm.get(), sx, sy, sw, sh, dw, dh));
        ASSERT_TRUE(copy != nullptr && copy->depth == 4 && copy->width == dw && copy->height == dh);
        const int cut_w = std::min(sw, bm->width - sx), cut_h = std::min(sh, bm->height - sy);
        for (int y = 0; y < dh; ++y)
            for (int x = 0; x < dw; ++x)
                ASSERT_EQ(raw_at(*copy, x, y),
                          plain_copy_level(*bm, sx, sy, cut_w, cut_h, dw, dh, x, y))
                    << "round " << round << " at " << x << ',' << y;
    }
}

TEST(BitmapStretch, TellsWhyAnAreaIsNotCopied) {
    Random random{};
    const BitmapPtr four = random_bitmap(random, 9, 7, 4, false),
                    eight = random_bitmap(random, 9, 7, 8, false);
    struct {
        const ibitmap *bm;
        int sx, sy, sw, sh, dw, dh;
        const char *message;
    } const cases[] = {
        {eight.get(), 0, 0, 1, 1, 2, 2, "DEPTH 4 SUPPORTED ONLY!\n"},
        {four.get(), 9, 0, 1, 1, 2, 2, "sx >= bmp->width\n"},
        {four.get(), 0, INT_MAX, 1, 1, 2, 2, "sy >= bmp->height\n"},
        {four.get(), 8, 0, 0, 1, 2, 2, "sw < 1\n"},
        {four.get(), 0, 0, 1, INT_MIN, 2, 2, "sh < 1\n"},
        {four.get(), 0, 0, 1, 1, 1, 2, "!result\n"},
        {four.get(), 0, 0, 1, 1, 2, 65536, "!result\n"},
        {four.get(), -1, 0, 1, 1, 2, 2, ""},
        {four.get(), 0, INT_MIN, 1, 1, 2, 2, ""},
        {nullptr, 0, 0, 1, 1, 2, 2, ""},
    };
    for (const auto &c : cases) {
        testing::internal::CaptureStderr();
        EXPECT_EQ(BitmapStretchCopy(c.bm, c.sx, c.sy, c.sw, c.sh, c.dw, c.dh), nullptr);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), c.message);
    }
}

// How often each grey is in a canvas.
std::map<int, int> histogram(const TestCanvas &c) {
    std::map<int, int> counts;
    for (int y = 0; y < c.height; ++y)
        for (int x = 0; x < c.width; ++x) ++counts[*pixel_address(c, x, y)];
    return counts;
}

TEST(Dithering, KeepsTheMeanGreyInEvenLevels) {
    for (const int bits : {8, 24})
        for (const int levels : {2, 3, 4, 16})
            for (const int grey : {0, 8, 64, 100, 128, 200, 255})
                for (const int method : {DITHER_THRESHOLD, DITHER_PATTERN, DITHER_DIFFUSION}) {
                    TestCanvas canvas(64, 64, bits, 0, static_cast<uint8_t>(grey));
                    DitherArea(0, 0, 64, 64, levels, method);
                    double sum = 0;
                    for (const auto &[value, count] : histogram(canvas)) {
                        const int level = (value * (levels - 1) + 127) / 255;
                        EXPECT_EQ(value, level * 255 / (levels - 1));
                        sum += double(value) * count;
                    }
                    const double step = 255.0 / (levels - 1);
                    EXPECT_NEAR(sum / 4096, grey, method == DITHER_THRESHOLD ? step / 2 + 1 : 6)
                        << levels << " levels, method " << method;
                }
}

TEST(Dithering, PatternsAndPlaces) {
    // The 16 thresholds of the smaller pattern are all different, and evenly spread.
    for (int count = 0; count <= 16; ++count) {
        TestCanvas canvas(4, 4, 8, 0, static_cast<uint8_t>(count * 255 / 16));
        DitherAreaPattern4x4(0, 0, 4, 4);
        EXPECT_EQ(histogram(canvas)[255], count);
    }
    TestCanvas canvas(4, 2, 8, 0, 128);
    DitherAreaPattern4x4(0, 0, 4, 2);
    EXPECT_EQ(canvas.picture(), "\n#.#.\n.#.#\n");
    // Neighbouring areas join, and nothing beyond an area changes.
    Random random{};
    TestCanvas whole(40, 30), parts(40, 30);
    for (size_t i = 0; i < whole.memory.size(); ++i)
        whole.memory[i] = parts.memory[i] = static_cast<uint8_t>(random(0, 255));
    SetCanvas(&whole);
    DitherAreaPattern8x8(3, 2, 31, 22);
    SetCanvas(&parts);
    DitherAreaPattern8x8(3, 2, 9, 22);
    DitherArea(12, 2, 22, 22, -5, DITHER_PATTERN); // 2 levels are the fewest
    EXPECT_EQ(whole.memory, parts.memory);
    QuickFloyd16Dither(5, 5, 20, 20);
    SetCanvas(&whole);
    DitherArea(5, 5, 20, 20, 99, DITHER_DIFFUSION); // and 16 the most
    DitherArea(5, 5, 20, 20, 2, 3);                 // no such method
    EXPECT_EQ(whole.memory, parts.memory);
}

} // namespace
