// SPDX-License-Identifier: MIT
// Grey conversion against the formulas, pixel by pixel.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>

#include "raster_support.h"

namespace {

constexpr double test_gamma = 1.8;

int pixel16(const uint8_t *row, int x) {
    return row[2 * x] | row[2 * x + 1] << 8;
}
int curve(int top, int i) {
    return static_cast<int>(std::round(top * std::pow(1.0 * i / top, test_gamma)));
}

struct Format {
    const char *name;
    void (*convert)(const kv_img_conv *);
    int src_bits, dest_bytes;
    int (*define)(const uint8_t *row, int x); // the pixel's last byte
};

int with_gamma(const uint8_t *row, int x) {
    const int v = pixel16(row, x);
    return std::min(255, curve(31, v & 31) + 5 * (curve(31, v >> 6 & 31) + curve(15, v >> 12)));
}

const Format formats[] = {
    {"rgb565", kv_rgb565_to_gs, 16, 1,
     [](const uint8_t *row, int x) {
         const int v = pixel16(row, x);
         return std::min(255, (v & 31) + 5 * ((v >> 6 & 31) + (v >> 12)));
     }},
    {"rgb565 gamma", [](const kv_img_conv *c) { kv_rgb565_to_gs_with_gamma(c, test_gamma); }, 16, 1,
     with_gamma},
    {"rgb565 gamma c", [](const kv_img_conv *c) { kv_rgb565_to_gs_with_gamma_c(c, test_gamma); },
     16, 1, with_gamma},
    {"rgb24", kv_rgb24_to_gs, 24, 1,
     [](const uint8_t *row, int x) {
         const uint8_t *b = row + 3 * x;
         return std::min(255, (b[2] >> 3) + 5 * ((b[0] >> 4) + (b[1] >> 3)));
     }},
    {"gray4", kv_gray4_to_gs, 16, 2,
     [](const uint8_t *row, int x) {
         const int v = row[2 * x];
         return ((v >> 6) * 5 + (v & 31)) & 255;
     }},
    {"gs4", kv_gs4_to_gs, 4, 1,
     [](const uint8_t *row, int x) { return (x % 2 ? row[x / 2] & 15 : row[x / 2] >> 4) * 17; }},
    {"gs", kv_gs_to_gs, 8, 1, [](const uint8_t *row, int x) -> int { return row[x]; }},
};

// Buffers end with the last row, so that the sanitizers see one byte too many.
TEST(RasterGrey, RowsOfAnyWidthFollowTheFormulas) {
    Random random{};
    for (const Format &f : formats)
        for (int width = 1; width < 200; ++width) {
            const int h = 3, src_row = (width * f.src_bits + 7) / 8,
                      dest_row = width * f.dest_bytes;
            const int src_scan = src_row + random(0, 5), dest_scan = dest_row + random(0, 5);
            std::vector<uint8_t> src(static_cast<size_t>(src_scan * (h - 1) + src_row));
            for (uint8_t &b : src) b = static_cast<uint8_t>(random(0, 3) ? random(0, 255) : 255);
            std::vector<uint8_t> dest(static_cast<size_t>(dest_scan * (h - 1) + dest_row), 0xA5);
            std::vector<uint8_t> expected = dest;
            for (int y = 0; y < h; ++y)
                for (int x = 0; x < width; ++x) {
                    uint8_t *pixel =
                        &expected[static_cast<size_t>(y * dest_scan + x * f.dest_bytes)];
                    pixel[0] = 0;
                    pixel[f.dest_bytes - 1] =
                        static_cast<uint8_t>(f.define(&src[static_cast<size_t>(y * src_scan)], x));
                }
            const kv_img_conv conv{src.data(), dest.data(), width, h, src_scan, dest_scan};
            f.convert(&conv);
            ASSERT_EQ(dest, expected) << f.name << ' ' << width;
        }
}

TEST(RasterGrey, EveryPixelValueFollowsTheFormula) {
    std::vector<uint8_t> src(65536 * 2), dest(65536 * 2);
    for (size_t v = 0; v < 65536; ++v)
        src[2 * v] = static_cast<uint8_t>(v), src[2 * v + 1] = static_cast<uint8_t>(v >> 8);
    for (const Format &f : formats) {
        const kv_img_conv conv{src.data(), dest.data(), 32768, 1, 0, 0};
        f.convert(&conv);
        for (int x = 0; x < 32768; ++x)
            ASSERT_EQ(dest[static_cast<size_t>((x + 1) * f.dest_bytes - 1)],
                      f.define(src.data(), x))
                << f.name << ' ' << x;
    }
}

TEST(RasterGrey, KnownPixels) {
    const struct {
        const char *format;
        std::vector<uint8_t> pixel;
        int grey;
    } cases[] = {
        {"rgb565", {0x1F, 0x00}, 31},
        {"rgb565", {0xE0, 0x07}, 155},
        {"rgb565", {0x00, 0xF8}, 75},
        {"rgb565", {0x10, 0x42}, 76},
        {"rgb565", {0xFF, 0xFF}, 255},
        {"rgb565 gamma", {0x10, 0x00}, 9},
        {"rgb565 gamma", {0x00, 0x04}, 45},
        {"rgb565 gamma", {0x00, 0x80}, 25},
        {"rgb24", {255, 0, 0}, 75},
        {"rgb24", {0, 255, 0}, 155},
        {"rgb24", {0, 0, 255}, 31},
        {"rgb24", {128, 128, 128}, 136},
        {"gray4", {0x5F, 0}, 36},
        {"gray4", {0xC0, 0}, 15},
        {"gs4", {0x3F}, 51},
        {"gs", {77}, 77},
    };
    for (auto c : cases) {
        const auto *format = std::ranges::find(formats, std::string(c.format), &Format::name);
        uint8_t dest[2] = {};
        const kv_img_conv conv{c.pixel.data(), dest, 1, 1, 3, 2};
        format->convert(&conv);
        EXPECT_EQ(dest[format->dest_bytes - 1], c.grey) << c.format;
    }
}

TEST(RasterGrey, GammaTablesFollowTheLastGamma) {
    uint8_t src[] = {0x10, 0x42, 0, 0}, dest[2] = {};
    const kv_img_conv conv{src, dest, 2, 1, 4, 2};
    const auto grey = [&](double gamma) {
        kv_rgb565_to_gs_with_gamma(&conv, gamma);
        return std::pair<int, int>(dest[0], dest[1]);
    };
    using Pair = std::pair<int, int>;
    EXPECT_EQ(grey(1.0), Pair(16 + 5 * (8 + 4), 0));
    EXPECT_EQ(grey(2.0), Pair(8 + 5 * (2 + 1), 0));
    EXPECT_EQ(grey(1.0), Pair(76, 0));
    EXPECT_EQ(grey(0.0), Pair(255, 255));
    EXPECT_EQ(grey(-1e9), Pair(255, 255));
    EXPECT_EQ(grey(1e9), Pair(0, 0));
}

TEST(RasterGrey, BadRecordsDoNothing) {
    uint8_t src[8] = {}, dest[8] = {9};
    const kv_img_conv bad[] = {{nullptr, dest, 2, 1, 4, 4},
                               {src, nullptr, 2, 1, 4, 4},
                               {src, dest, 0, 1, 4, 4},
                               {src, dest, 1, INT_MIN, 4, 4},
                               {src, dest, INT_MIN, 1, INT_MIN, INT_MIN}};
    for (const Format &f : formats) {
        f.convert(nullptr);
        for (const kv_img_conv &conv : bad) f.convert(&conv);
    }
    EXPECT_EQ(dest[0], 9);
}

} // namespace
