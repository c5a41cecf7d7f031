// SPDX-License-Identifier: MIT
// Picture files against the plain definition of what becomes of them.
#include "kelvane/pictures.h"

#include <climits>
#include <gtest/gtest.h>
#include <numeric>
#include <thread>

#include "hw.h"
#include "theme/source.h"
#include "unit/picture_files.h"
#include "unit/raster_support.h"

namespace {

using namespace image;
using raster::BitmapPtr;

constexpr const char *sixteen_greys = "0x10111101013041", *four_greys = "0x10111101013021";

Curve unchanged() {
    return brightness_curve(100, 100);
}

GreyPicture random_picture(Random &random, int w, int h) {
    return {w, h, random_bytes(random, static_cast<size_t>(w * h))};
}

// In an empty folder, with 16 greys.
class Pictures : public FileTest {
  protected:
    void TearDown() override {
        theme::source = {};
        loadHwConfigEmulator(sixteen_greys);
        FileTest::TearDown();
    }
    Random random;
};

TEST(PicturePlace, FollowsFlagsAndShape) {
    const struct {
        const char *what;
        Size picture, wanted;
        int flags;
        Placement place;
    } cases[] = {
        {"wide", {200, 100}, {50, 100}, 0, {{50, 100}, 0, 37, {50, 25}}},
        {"tall", {100, 200}, {101, 50}, 0, {{101, 50}, 38, 0, {25, 50}}},
        {"same shape", {30, 20}, {60, 40}, 0, {{60, 40}, 0, 0, {60, 40}}},
        {"top", {200, 100}, {50, 100}, 0x10, {{50, 100}, 0, 0, {50, 25}}},
        {"bottom", {200, 100}, {50, 100}, 0x40, {{50, 100}, 0, 75, {50, 25}}},
        {"top before bottom", {200, 100}, {50, 100}, 0x50, {{50, 100}, 0, 0, {50, 25}}},
        {"left", {100, 200}, {101, 50}, 0x01, {{101, 50}, 0, 0, {25, 50}}},
        {"right moves down", {100, 200}, {101, 50}, 0x04, {{101, 50}, 0, 76, {25, 50}}},
        {"left before right", {100, 200}, {101, 50}, 0x05, {{101, 50}, 0, 0, {25, 50}}},
        {"right replaces bottom", {200, 100}, {50, 100}, 0x44, {{50, 100}, 0, 0, {50, 25}}},
        {"width, shorter", {200, 100}, {50, 100}, 0x08, {{50, 25}, 0, 0, {50, 25}}},
        {"width, cut in the middle", {100, 300}, {50, 100}, 0x08, {{50, 100}, 0, -25, {50, 150}}},
        {"width, cut below", {100, 300}, {50, 100}, 0x18, {{50, 100}, 0, 0, {50, 150}}},
        {"width, cut above", {100, 300}, {50, 100}, 0x48, {{50, 100}, 0, -50, {50, 150}}},
        {"next to nothing", {1000, 1}, {100, 9}, 0, {{100, 9}, 0, 4, {100, 0}}},
        {"largest",
         {1, INT_MAX},
         {INT_MAX, 7},
         0x48,
         {{INT_MAX, 7}, 0, 7 - INT_MAX, {INT_MAX, INT_MAX}}},
    };
    for (const auto &c : cases) {
        const Placement p = place(c.picture, c.wanted, Scaling::proportional, c.flags);
        const Placement &e = c.place;
        EXPECT_EQ(
            std::tuple(p.bitmap.width, p.bitmap.height, p.x, p.y, p.drawn.width, p.drawn.height),
            std::tuple(e.bitmap.width, e.bitmap.height, e.x, e.y, e.drawn.width, e.drawn.height))
            << c.what;
        const Placement all = place(c.picture, c.wanted, Scaling::stretched, c.flags);
        EXPECT_EQ(std::tuple(all.x, all.y, all.drawn.width, all.drawn.height),
                  std::tuple(0, 0, c.wanted.width, c.wanted.height));
    }
}

TEST(PictureCurve, BrightnessContrastAndThePngCurve) {
    const struct {
        int brightness, contrast, from, to;
    } cases[] = {
        {100, 100, 37, 37},           {150, 100, 37, 87},  {0, 100, 99, 0},
        {100, 200, 200, 255},         {100, 200, 100, 72}, {100, 50, 127, 128},
        {100, 50, 125, 127},          {90, 33, 255, 159},  {INT_MAX, INT_MIN, 0, 255},
        {INT_MIN, INT_MAX, 255, 255}, {INT_MIN, 0, 9, 0},
    };
    for (const auto &c : cases)
        EXPECT_EQ(brightness_curve(c.brightness, c.contrast)[static_cast<size_t>(c.from)], c.to)
            << c.brightness << " " << c.contrast << " " << c.from;
    for (const auto &[from, to] : {std::pair(0, 0), {19, 0}, {20, 1}, {128, 138}, {220, 255}})
        EXPECT_EQ(png_curve()[static_cast<size_t>(from)], to);
}

TEST(PictureDither, AnyNumberOfLevels) {
    Random random;
    for (int n = 2; n <= 16; ++n) {
        const int w = random(1, 40), h = random(1, 12), stride = w + 3;
        Bytes ours = random_bytes(random, static_cast<size_t>(stride * h)), plain = ours;
        raster::Dither(n).area(ours.data(), stride, static_cast<size_t>(w), static_cast<size_t>(h));
        plainly_dithered(plain, stride, 0, 0, w, h, n);
        ASSERT_EQ(ours, plain) << n;
    }
}

// Every size, place, finish and panel.
TEST_F(Pictures, RowsBecomeTheBitmapOfTheDefinition) {
    for (const int bits : {4, 2}) {
        if (bits == 2) loadHwConfigEmulator(four_greys);
        for (int i = 0; i < 800; ++i) {
            const GreyPicture picture = random_picture(random, random(1, 70), random(1, 50));
            const Size wanted{random(1, 90), random(1, 60)};
            const Scaling scaling = scaling_of(random(0, 1));
            const int flags = random(0, 0x5F);
            const Finish finish{i % 3 == 0 ? png_curve() : brightness_curve(random(50, 150), 120),
                                i % 2 == 0 ? no_frame : random(0, 0xFFFFFF),
                                i % 5 == 0 ? no_dithering : 1 << bits};
            const Size size{picture.width, picture.height};
            const Placement where = place(size, wanted, scaling, flags);
            if (where.bitmap.height == 0) continue;
            SetLoadImageFlags(flags);
            Pipeline pipeline(size, wanted, scaling, finish);
            for (int y = 0; y < picture.height; ++y, pipeline.row_done())
                if (pipeline.row_is_used())
                    std::copy_n(&picture.pixels[static_cast<size_t>(y * picture.width)],
                                picture.width, pipeline.row());
            const BitmapPtr bm = pipeline.finish();
            ASSERT_EQ(bm->depth, bits);
            ASSERT_EQ(levels(*bm), plainly_made(picture, where, finish, bits))
                << picture.width << "x" << picture.height << " in " << wanted.width << "x"
                << wanted.height << " flags " << flags;
        }
    }
}

// --- codecs

// What a PNG pixel of 8-bit values becomes before the curve.
int exchanged(int r, int g, int b) {
    return (r * 28 + g * 151 + b * 77) >> 8;
}
int upright(int r, int g, int b) {
    return (r * 77 + g * 151 + b * 28) >> 8;
}
int on_white(int grey, int alpha) {
    return grey + (255 - alpha) - grey * (255 - alpha) / 255;
}

// Pixels of every kind of PNG file become greys.
TEST_F(Pictures, PngKinds) {
    constexpr int n = 64;
    std::vector<png_color> palette(200);
    for (png_color &c : palette)
        c = {static_cast<png_byte>(random(0, 255)), static_cast<png_byte>(random(0, 255)),
             static_cast<png_byte>(random(0, 255))};
    const png_color_16 grey_key{0, 0, 0, 0, 10}, red_key{0, 255, 0, 0, 0};
    using Pixel = std::function<int(const uint8_t *row, int x)>;
    const auto in_palette = [&](int i) {
        return exchanged(palette[static_cast<size_t>(i)].red, palette[static_cast<size_t>(i)].green,
                         palette[static_cast<size_t>(i)].blue);
    };
    const auto bits_of = [](const uint8_t *row, int x, int bits) {
        return row[x * bits / 8] >> (8 - bits - x * bits % 8) & ((1 << bits) - 1);
    };
    const struct {
        const char *what;
        PngKind kind;
        int row_bytes;
        Pixel grey;
    } cases[] = {
        {"grey 1", {1, 0}, n / 8, [&](auto *p, int x) { return bits_of(p, x, 1) * 255; }},
        {"grey 2", {2, 0}, n / 4, [&](auto *p, int x) { return bits_of(p, x, 2) * 85; }},
        {"grey 4", {4, 0}, n / 2, [&](auto *p, int x) { return bits_of(p, x, 4) * 17; }},
        {"grey 8", {8, 0}, n, [](auto *p, int x) { return p[x]; }},
        {"grey 16", {16, 0}, 2 * n, [](auto *p, int x) { return p[2 * x]; }},
        {"grey, one transparent",
         {8, 0, false, {}, {}, &grey_key},
         n,
         [](auto *p, int x) { return p[x] == 10 ? 255 : p[x]; }},
        {"grey alpha",
         {8, 4},
         2 * n,
         [](auto *p, int x) { return on_white(p[2 * x], p[2 * x + 1]); }},
        {"grey alpha 16",
         {16, 4},
         4 * n,
         [](auto *p, int x) { return on_white(p[4 * x], p[4 * x + 2]); }},
        {"colours",
         {8, 2},
         3 * n,
         [](auto *p, int x) { return exchanged(p[3 * x], p[3 * x + 1], p[3 * x + 2]); }},
        {"colours 16",
         {16, 2},
         6 * n,
         [](auto *p, int x) { return exchanged(p[6 * x], p[6 * x + 2], p[6 * x + 4]); }},
        {"colours, one transparent",
         {8, 2, false, {}, {}, &red_key},
         3 * n,
         [](auto *p, int x) {
             const bool gone = p[3 * x] == 255 && p[3 * x + 1] == 0 && p[3 * x + 2] == 0;
             return gone ? 255 : exchanged(p[3 * x], p[3 * x + 1], p[3 * x + 2]);
         }},
        {"colours alpha",
         {8, 6},
         4 * n,
         [](auto *p, int x) {
             return on_white(upright(p[4 * x], p[4 * x + 1], p[4 * x + 2]), p[4 * x + 3]);
         }},
        {"colours alpha 16",
         {16, 6},
         8 * n,
         [](auto *p, int x) {
             return on_white(upright(p[8 * x], p[8 * x + 2], p[8 * x + 4]), p[8 * x + 6]);
         }},
        {"palette 1",
         {1, 3, false, {palette[0], palette[1]}},
         n / 8,
         [&](auto *p, int x) { return in_palette(bits_of(p, x, 1)); }},
        {"palette 8",
         {8, 3, false, palette},
         n,
         [&](auto *p, int x) { return p[x] < 200 ? in_palette(p[x]) : 0; }},
        {"palette, some transparent",
         {8, 3, false, palette, {0, 128}},
         n,
         [&](auto *p, int x) {
             if (p[x] >= 200) return 0;
             return on_white(in_palette(p[x]), p[x] == 0 ? 0 : p[x] == 1 ? 128 : 255);
         }},
    };
    for (const auto &c : cases) {
        Bytes row = random_bytes(random, static_cast<size_t>(c.row_bytes));
        for (size_t i = 0; i < 6 && row.size() >= 6; ++i)
            row[i] = Bytes{255, 0, 0, 10, 0, 1}[i]; // the special values, once at least
        write_png("a.png", n, 1, c.kind, row);
        const BitmapPtr bm(LoadPNG("a.png", 1));
        ASSERT_NE(bm, nullptr) << c.what;
        std::vector<int> expected;
        for (int x = 0; x < n; ++x)
            expected.push_back(limited(c.grey(row.data(), x) * 127 / 100 - 24) >> 4);
        EXPECT_EQ(levels(*bm), expected) << c.what;
    }
    // Red, green, blue and white.
    write_png("a.png", 4, 1, {8, 2}, {255, 0, 0, 0, 255, 0, 0, 0, 255, 255, 255, 255});
    EXPECT_EQ(levels(*BitmapPtr(LoadPNG("a.png", 1))), (std::vector<int>{0, 10, 4, 15}));
    write_png("a.png", 4, 1, {8, 6}, {255, 0, 0, 255, 0, 255, 0, 255, 0, 0, 255, 255, 0, 0, 0, 0});
    EXPECT_EQ(levels(*BitmapPtr(LoadPNG("a.png", 1))), (std::vector<int>{4, 10, 0, 15}));
}

TEST_F(Pictures, JpegIsDecodedReduced) {
    const struct {
        int w, h, wanted_w, wanted_h, proportional;
        unsigned denominator;
    } cases[] = {
        {900, 900, 100, 100, 0, 8}, {800, 800, 100, 100, 0, 8}, {799, 799, 100, 100, 0, 4},
        {500, 500, 100, 100, 0, 4}, {399, 399, 100, 100, 0, 2}, {200, 200, 100, 100, 0, 2},
        {199, 199, 100, 100, 0, 1}, {40, 30, 100, 100, 0, 1},   {800, 200, 100, 100, 0, 2},
        {800, 200, 100, 100, 1, 8}, {80, 60, -1, -1, 0, 1},     {800, 90, 100, -1, 0, 1},
        {800, 90, 100, -1, 1, 8},
    };
    for (const auto &c : cases) {
        Bytes rgb = random_bytes(random, static_cast<size_t>(c.w * c.h * 3));
        write_jpeg("a.jpg", c.w, c.h, {}, rgb);
        const GreyPicture decoded = decode_jpeg("a.jpg", c.denominator);
        const Size wanted = resolved({c.wanted_w, c.wanted_h}, {c.w, c.h});
        const Placement where =
            place({decoded.width, decoded.height}, wanted, scaling_of(c.proportional), 0);
        const BitmapPtr bm(LoadJPEG("a.jpg", c.wanted_w, c.wanted_h, 110, 90, c.proportional));
        ASSERT_NE(bm, nullptr);
        EXPECT_EQ(levels(*bm), plainly_made(decoded, where,
                                            {brightness_curve(110, 90), no_frame, no_dithering}, 4))
            << c.w << "x" << c.h << " to " << c.wanted_w << "x" << c.wanted_h;
    }
}

TEST_F(Pictures, JpegKinds) {
    const struct {
        const char *what;
        JpegKind kind;
        bool loads;
    } cases[] = {
        {"grey", {1, JCS_GRAYSCALE}, true},
        {"progressive", {3, JCS_RGB, true}, true},
        {"arithmetic", {3, JCS_RGB, false, true}, true},
        {"CMYK", {4, JCS_CMYK}, false},
    };
    for (const auto &c : cases) {
        Bytes samples = random_bytes(random, static_cast<size_t>(33 * 21 * c.kind.components));
        write_jpeg("a.jpg", 33, 21, c.kind, samples);
        const BitmapPtr bm(LoadJPEG("a.jpg", -1, -1, 100, 100, 0));
        ASSERT_EQ(bm != nullptr, c.loads) << c.what;
        if (!c.loads) continue;
        const Placement where{{33, 21}, 0, 0, {33, 21}};
        EXPECT_EQ(levels(*bm), plainly_made(decode_jpeg("a.jpg", 1), where,
                                            {unchanged(), no_frame, no_dithering}, 4))
            << c.what;
    }
}

TEST_F(Pictures, TiffKinds) {
    constexpr uint32_t w = 35, h = 7;
    using Pixel = int (*)(const uint8_t *row, size_t x);
    const Pixel bilevel = [](auto *p, size_t x) { return p[x / 8] >> (7 - x % 8) & 1 ? 0 : 255; };
    const Pixel grey = [](auto *p, size_t x) { return int{p[x]}; };
    const Pixel rgb = [](auto *p, size_t x) {
        return upright(p[3 * x], p[3 * x + 1], p[3 * x + 2]);
    };
    const Pixel rgba = [](auto *p, size_t x) {
        return upright(p[4 * x], p[4 * x + 1], p[4 * x + 2]);
    };
    const Pixel white = [](auto *, size_t) { return 255; };
    constexpr uint16_t separate = PLANARCONFIG_SEPARATE, contiguous = PLANARCONFIG_CONTIG;
    const struct {
        const char *what;
        TiffKind kind;
        size_t row_bytes;
        Pixel pixel;
    } cases[] = {
        {"bilevel", {1}, 5, bilevel},
        {"bilevel, 0 is white", {1, 1, PHOTOMETRIC_MINISWHITE}, 5, bilevel},
        {"group 4", {1, 1, PHOTOMETRIC_MINISWHITE, COMPRESSION_CCITTFAX4}, 5, bilevel},
        {"grey", {8}, 35, grey},
        {"grey, 0 is white", {8, 1, PHOTOMETRIC_MINISWHITE}, 35, grey},
        {"grey, LZW", {8, 1, PHOTOMETRIC_MINISBLACK, COMPRESSION_LZW}, 35, grey},
        {"palette indexes", {8, 1, PHOTOMETRIC_PALETTE}, 35, grey},
        {"colours", {8, 3, PHOTOMETRIC_RGB}, 105, rgb},
        {"colours, Deflate", {8, 3, PHOTOMETRIC_RGB, COMPRESSION_ADOBE_DEFLATE}, 105, rgb},
        {"colours, PackBits", {8, 3, PHOTOMETRIC_RGB, COMPRESSION_PACKBITS}, 105, rgb},
        {"colours and alpha", {8, 4, PHOTOMETRIC_RGB}, 140, rgba},
        {"planes: the first", {8, 3, PHOTOMETRIC_RGB, COMPRESSION_NONE, separate}, 35, grey},
        {"grey and alpha", {8, 2}, 70, white},
        {"4 bits", {4}, 18, white},
        {"16 bits", {16}, 70, white},
        {"tiles", {8, 1, PHOTOMETRIC_MINISBLACK, COMPRESSION_NONE, contiguous, 16}, 35, white},
    };
    for (const auto &c : cases) {
        const size_t planes = c.kind.planar == separate ? c.kind.samples : 1;
        const Bytes rows = random_bytes(random, c.row_bytes * h * planes);
        write_tiff("a.tiff", w, h, c.kind, rows);
        testing::internal::CaptureStderr();
        const BitmapPtr bm(LoadTIFF("a.tiff", -1, -1, 100, 100, 0));
        const std::string said = testing::internal::GetCapturedStderr();
        ASSERT_NE(bm, nullptr) << c.what << said;
        EXPECT_TRUE(said.ends_with("(LoadTIFF)w=35 h=7 bps=" + std::to_string(c.kind.bits) +
                                   " scanline=" + std::to_string(c.row_bytes) + "\n"))
            << said;
        std::vector<int> expected;
        for (size_t y = 0; y < h; ++y)
            for (size_t x = 0; x < w; ++x)
                expected.push_back(c.pixel(&rows[y * c.row_bytes], x) >> 4);
        EXPECT_EQ(levels(*bm), expected) << c.what;
    }
}

// --- what is set for one load

TEST_F(Pictures, FrameColorHoldsForOneJpegOrTiff) {
    write_tiff("wide.tiff", 4, 1, {}, Bytes(4, 0));
    write_png("wide.png", 4, 1, {8, PNG_COLOR_TYPE_GRAY}, Bytes(4, 0));
    const auto around = [](ibitmap *loaded) {
        const BitmapPtr bm(loaded);
        return levels(*bm).front();
    };
    const auto load = [](int br) { return LoadTIFF("wide.tiff", 4, 4, br, 100, 1); };
    EXPECT_EQ(around(load(100)), 15);
    EXPECT_EQ(around(load(50)), 12) << "the white around is adjusted as well";
    SetLoadFrameColor(0x0000FF);
    EXPECT_EQ(around(LoadPNGStretch("wide.png", 4, 4, 1, 0)), 15) << "PNG files have no frame";
    EXPECT_EQ(around(load(50)), 27 >> 4);
    EXPECT_EQ(around(load(100)), 15);
    SetLoadFrameColor(0);
    EXPECT_EQ(LoadJPEG("none.jpg", 4, 4, 100, 100, 1), nullptr);
    EXPECT_EQ(around(load(100)), 15) << "a load that failed has taken it";
}

TEST_F(Pictures, FlagsHoldForOneProportionalLoadOfTheThread) {
    write_png("wide.png", 4, 1, {8, PNG_COLOR_TYPE_GRAY}, Bytes(4, 0));
    const auto black_row = [](int proportional) {
        const BitmapPtr bm(LoadPNGStretch("wide.png", 4, 4, proportional, 0));
        const std::vector<int> all = levels(*bm);
        return (std::ranges::find(all, 0) - all.begin()) / 4;
    };
    SetLoadImageFlags(LOAD_BOTTOM);
    std::thread([&] { EXPECT_EQ(black_row(1), 1); }).join();
    EXPECT_EQ(LoadPNGStretch("none.png", 4, 4, 1, 0), nullptr);
    EXPECT_EQ(black_row(0), 0);
    EXPECT_EQ(black_row(1), 3);
    EXPECT_EQ(black_row(1), 1);
}

TEST_F(Pictures, OnlyTheThemeAsksForDithering) {
    Bytes greys(64 * 5);
    std::iota(greys.begin(), greys.end(), uint8_t{0});
    write_tiff("a.tiff", 64, 5, {}, greys);
    write_png("a.png", 64, 5, {8, PNG_COLOR_TYPE_GRAY}, greys);
    const Placement where{{64, 5}, 0, 0, {64, 5}};
    for (const bool asked : {false, true}) {
        if (asked)
            theme::source.text = [](const char *name) {
                return std::string(name) == "use_dithering" ? "1" : nullptr;
            };
        const int n = asked ? 16 : no_dithering;
        const BitmapPtr tiff(LoadTIFF("a.tiff", -1, -1, 100, 100, 0)), png(LoadPNG("a.png", 1));
        EXPECT_EQ(levels(*tiff),
                  plainly_made({64, 5, greys}, where, {unchanged(), no_frame, n}, 4));
        EXPECT_EQ(levels(*png), plainly_made({64, 5, greys}, where, {png_curve(), no_frame, n}, 4));
    }
}

// --- saving

Bytes read_png(const char *path) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&image, path)) return {};
    EXPECT_EQ(image.format, unsigned{PNG_FORMAT_GRAY});
    Bytes pixels(size_t{image.width} * image.height);
    png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr);
    return pixels;
}

// Rows that are too short go on in the next one, and the last one in white: not in what lies
// behind.
TEST_F(Pictures, SavedRowsStayInsideTheBitmap) {
    const ibitmap head{60, 3, 8, 8};
    std::vector<uint8_t> block(sizeof head + 24 + 200, 0);
    std::memcpy(block.data(), &head, sizeof head);
    ASSERT_EQ(SaveJPEG("short.jpg", reinterpret_cast<const ibitmap *>(block.data()), 100), 1);
    const GreyPicture jpeg = decode_jpeg("short.jpg", 1);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 60; ++x)
            ASSERT_NEAR(jpeg.at(x, y), x < 24 - y * 8 ? 0 : 255, 10) << x << " " << y;
}

TEST_F(Pictures, SavedGreysComeBack) {
    for (const int depth : {1, 2, 4, 8, 16, 24}) {
        constexpr int w = 21, h = 6;
        const BitmapPtr bm = raster::make_bitmap(w, h, depth);
        for (size_t i = 0; i < raster::pixel_bytes(*bm); ++i)
            bm->data[i] = depth == 16 ? uint8_t{0x5A} : static_cast<uint8_t>(i * 37);
        ASSERT_EQ(SavePNG("a.png", bm.get()), 1);
        Bytes expected; // any depth but 2 as depth 4
        for (size_t y = 0; y < h; ++y)
            for (size_t x = 0; x < w; ++x) {
                const uint8_t *row = bm->data + y * bm->scanline;
                const bool inside = row + x / 2 < bm->data + raster::pixel_bytes(*bm);
                expected.push_back(limited(depth == 2 ? (row[x / 4] >> (6 - x % 4 * 2) & 3) * 85
                                           : !inside  ? 255
                                                      : (row[x / 2] >> (x % 2 ? 0 : 4) & 15) * 17));
            }
        EXPECT_EQ(read_png("a.png"), expected) << depth;

        ASSERT_EQ(SaveJPEG("a.jpg", bm.get(), 100), 1);
        const GreyPicture jpeg = decode_jpeg("a.jpg", 1);
        TestCanvas canvas(24, h);
        DrawBitmap(0, 0, bm.get()); // the other way to see a bitmap's greys
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) {
                const int grey = depth == 16 ? 96 : canvas.addr[y * canvas.scanline + x];
                ASSERT_NEAR(jpeg.at(x, y), grey, 10) << depth;
            }
    }
}

TEST_F(Pictures, WhatCannotBeSavedIsSaid) {
    const BitmapPtr bm = raster::make_white_bitmap(300, 300);
    for (const auto save :
         {+[](const char *path, const ibitmap *b) { return SavePNG(path, b); },
          +[](const char *path, const ibitmap *b) { return SaveJPEG(path, b, INT_MAX); }}) {
        EXPECT_EQ(save("a", nullptr), 0);
        EXPECT_EQ(save(nullptr, bm.get()), 0);
        EXPECT_EQ(save("/dev/full", bm.get()), 0);
        testing::internal::CaptureStderr();
        EXPECT_EQ(save("no/such/folder.png", bm.get()), 0);
        EXPECT_TRUE(
            testing::internal::GetCapturedStderr().ends_with(")can't open no/such/folder.png\n"));
    }
}

} // namespace
