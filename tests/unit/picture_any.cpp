// SPDX-License-Identifier: MIT
// LoadPicture() on one test card in every format and kind, turned in every way, and on bytes that
// are no picture any more.
#include "kelvane/pictures.h"

#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <zlib.h>

#include "support/repeats.h"
#include "unit/picture_files.h"
#include "unit/raster_support.h"

namespace {

using raster::BitmapPtr;

constexpr int block = 8, columns = 6, rows = 4, card_w = block * columns, card_h = block * rows;

struct Color {
    uint8_t r, g, b;
    int grey() const { return (77 * r + 151 * g + 28 * b) >> 8; }
};

Color color_at(int x, int y) {
    constexpr Color corners[] = {{255, 0, 0}, {0, 255, 0}, {0, 0, 255}, {255, 255, 255}, {0, 0, 0}};
    const int n = y / block * columns + x / block;
    if (n < 5) return corners[n];
    return {uint8_t(n * 37), uint8_t(n * 91), uint8_t(255 - n * 53)};
}

// The card with what `put` makes of each pixel.
Bytes card(const std::function<void(Bytes &, Color)> &put) {
    Bytes bytes;
    for (int y = 0; y < card_h; ++y)
        for (int x = 0; x < card_w; ++x) put(bytes, color_at(x, y));
    return bytes;
}

const Bytes rgb = card([](Bytes &b, Color c) { b.insert(b.end(), {c.r, c.g, c.b}); });
const Bytes rgb16 = card([](Bytes &b, Color c) { b.insert(b.end(), {c.r, 9, c.g, 9, c.b, 9}); });
const Bytes rgba = card([](Bytes &b, Color c) { b.insert(b.end(), {c.r, c.g, c.b, 255}); });
const Bytes grey = card([](Bytes &b, Color c) { b.push_back(uint8_t(c.grey())); });
const Bytes grey_alpha = card([](Bytes &b, Color c) {
    b.insert(b.end(), {uint8_t(c.grey()), 255});
});
const Bytes negative = card([](Bytes &b, Color c) { b.push_back(uint8_t(255 - c.grey())); });
const Bytes native16 = card([](Bytes &b, Color c) {
    for (const uint8_t part : {c.r, c.g, c.b}) b.insert(b.end(), {9, part});
});

Bytes indexes() {
    Bytes bytes;
    for (int y = 0; y < card_h; ++y)
        for (int x = 0; x < card_w; ++x) bytes.push_back(uint8_t(y / block * columns + x / block));
    return bytes;
}

std::vector<png_color> palette() {
    std::vector<png_color> colors;
    for (int n = 0; n < columns * rows; ++n) {
        const Color c = color_at(n % columns * block, n / columns * block);
        colors.push_back({c.r, c.g, c.b});
    }
    return colors;
}

void put_le(std::string &to, uint32_t n, int bytes) {
    for (; bytes > 0; --bytes, n >>= 8) to += char(n & 255);
}

// The rows of a BMP file go from the bottom up.
std::string write_bmp(const std::string &path, unsigned bits, bool top_down) {
    std::string palette_bytes, pixels;
    if (bits == 8)
        for (const png_color &c : palette())
            palette_bytes += {char(c.blue), char(c.green), char(c.red), 0};
    for (int n = 0; n < card_h; ++n)
        for (int x = 0; x < card_w; ++x) {
            const int y = top_down ? n : card_h - 1 - n;
            const Color c = color_at(x, y);
            if (bits == 8) put_le(pixels, unsigned(y / block * columns + x / block), 1);
            if (bits == 16) put_le(pixels, unsigned(c.r >> 3 << 10 | c.g >> 3 << 5 | c.b >> 3), 2);
            if (bits >= 24) put_le(pixels, unsigned(c.r << 16 | c.g << 8 | c.b), int(bits / 8));
        }
    std::string file = "BM";
    const uint32_t offset = uint32_t(54 + palette_bytes.size());
    for (const uint32_t n :
         {0U, 0U, offset, 40U, uint32_t(card_w), uint32_t(top_down ? -card_h : card_h)})
        put_le(file, n, 4);
    put_le(file, 1, 2);
    put_le(file, bits, 2);
    for (const uint32_t n : {0U, 0U, 0U, 0U, bits == 8 ? uint32_t(columns * rows) : 0U, 0U})
        put_le(file, n, 4);
    std::ofstream(path, std::ios::binary) << file << palette_bytes << pixels;
    return path;
}

void set_tiff_palette(const std::string &path) {
    std::vector<uint16_t> red(256), green(256), blue(256);
    for (size_t n = 0; n < palette().size(); ++n) {
        red[n] = uint16_t(palette()[n].red * 257);
        green[n] = uint16_t(palette()[n].green * 257);
        blue[n] = uint16_t(palette()[n].blue * 257);
    }
    TIFF *tiff = TIFFOpen(path.c_str(), "r+");
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_PALETTE); // without colours it was none
    TIFFSetField(tiff, TIFFTAG_COLORMAP, red.data(), green.data(), blue.data());
    TIFFRewriteDirectory(tiff);
    TIFFClose(tiff);
}

class AnyPicture : public FileTest {};

BitmapPtr load(const std::string &path, int w = -1, int h = -1, int how = PICTURE_FIT,
               int dither = 0) {
    return BitmapPtr(LoadPicture(path.c_str(), w, h, how, dither));
}

TEST_F(AnyPicture, HasTheSameGreysInEveryFormat) {
    const std::vector<png_color> colors = palette();
    Bytes adobe = rgba;
    std::vector<std::string> paths;
    const auto path = [&](const char *ending) {
        return paths.emplace_back(std::to_string(paths.size()) + "." + ending);
    };
    for (const bool interlaced : {false, true}) {
        const auto png = [&](int bits, int type, const Bytes &bytes) {
            write_png(path("png"), card_w, card_h, {bits, type, interlaced}, bytes);
        };
        png(8, PNG_COLOR_TYPE_RGB, rgb);
        png(16, PNG_COLOR_TYPE_RGB, rgb16);
        png(8, PNG_COLOR_TYPE_RGBA, rgba);
        png(8, PNG_COLOR_TYPE_GRAY, grey);
        png(8, PNG_COLOR_TYPE_GRAY_ALPHA, grey_alpha);
        write_png(path("png"), card_w, card_h, {8, PNG_COLOR_TYPE_PALETTE, interlaced, colors},
                  indexes());
    }
    write_jpeg(path("jpg"), card_w, card_h, {3, JCS_RGB, false, false, 100}, rgb);
    write_jpeg(path("jpg"), card_w, card_h, {3, JCS_RGB, true, false, 100}, rgb);
    write_jpeg(path("jpg"), card_w, card_h, {1, JCS_GRAYSCALE, false, false, 100}, grey);
    write_jpeg(path("jpg"), card_w, card_h, {4, JCS_CMYK, false, false, 100}, adobe);
    const auto tiff = [&](const TiffKind &kind, const Bytes &bytes) {
        write_tiff(path("tif"), card_w, card_h, kind, bytes);
    };
    tiff({8, 3, PHOTOMETRIC_RGB}, rgb);
    tiff({8, 3, PHOTOMETRIC_RGB, COMPRESSION_LZW}, rgb);
    tiff({16, 3, PHOTOMETRIC_RGB}, native16);
    tiff({8, 1, PHOTOMETRIC_MINISBLACK}, grey);
    tiff({8, 1, PHOTOMETRIC_MINISWHITE}, negative);
    Bytes planes;
    for (size_t plane = 0; plane < 3; ++plane)
        for (size_t i = plane; i < rgb.size(); i += 3) planes.push_back(rgb[i]);
    tiff({8, 3, PHOTOMETRIC_RGB, COMPRESSION_NONE, PLANARCONFIG_SEPARATE}, planes);
    tiff({8, 1, PHOTOMETRIC_PALETTE}, indexes());
    set_tiff_palette(paths.back());
    for (const unsigned bits : {8U, 16U, 24U, 32U})
        for (const bool top_down : {false, true}) write_bmp(path("bmp"), bits, top_down);

    for (const std::string &file : paths) {
        SCOPED_TRACE(file);
        std::filesystem::rename(file, "picture"); // the name tells nothing
        int w = 0, h = 0;
        EXPECT_EQ(GetPictureSize("picture", &w, &h), 1);
        EXPECT_EQ(std::pair(w, h), std::pair(card_w, card_h));
        const BitmapPtr bm = load("picture");
        ASSERT_NE(bm, nullptr);
        ASSERT_EQ(std::pair(int(bm->width), int(bm->height)), std::pair(card_w, card_h));
        const std::vector<int> all = levels(*bm);
        for (int y = block / 2; y < card_h; y += block)
            for (int x = block / 2; x < card_w; x += block)
                EXPECT_NEAR(all[size_t(y * card_w + x)], color_at(x, y).grey() >> 4, 1)
                    << x << ' ' << y;
    }
}

// Bilevel files of both meanings, and what is transparent, on white.
TEST_F(AnyPicture, BlackIsBlackAndTransparentIsWhite) {
    const Bytes bits(card_h * card_w / 8, 0xF0);
    for (const uint16_t meaning : {PHOTOMETRIC_MINISWHITE, PHOTOMETRIC_MINISBLACK}) {
        write_tiff("a.tif", card_w, card_h, {1, 1, meaning}, bits);
        const BitmapPtr bm = load("a.tif");
        ASSERT_NE(bm, nullptr);
        const std::vector<int> all = levels(*bm);
        EXPECT_EQ(all[1], meaning == PHOTOMETRIC_MINISWHITE ? 0 : 15);
        EXPECT_EQ(all[5], meaning == PHOTOMETRIC_MINISWHITE ? 15 : 0);
    }
    Bytes clear = rgba;
    for (size_t i = 3; i < clear.size(); i += 4) clear[i] = 0;
    write_png("a.png", card_w, card_h, {8, PNG_COLOR_TYPE_RGBA}, clear);
    const BitmapPtr bm = load("a.png");
    ASSERT_NE(bm, nullptr);
    EXPECT_EQ(levels(*bm), std::vector<int>(card_w * card_h, 15));
}

// Few bits a pixel, and the short header of the first version.
TEST_F(AnyPicture, SmallBmpFiles) {
    const auto le = [](std::initializer_list<std::pair<uint32_t, int>> numbers) {
        std::string out;
        for (const auto &[n, bytes] : numbers) put_le(out, n, bytes);
        return out;
    };
    const std::string four = "BM" + le({{0, 4},
                                        {0, 4},
                                        {62, 4},
                                        {40, 4},
                                        {3, 4},
                                        {2, 4},
                                        {1, 2},
                                        {4, 2},
                                        {0, 4},
                                        {0, 4},
                                        {0, 4},
                                        {0, 4},
                                        {2, 4},
                                        {0, 4},
                                        {0xFFFFFF, 4},
                                        {0xFF0000, 4},
                                        {0x0001, 4},
                                        {0x1012, 4}}); // colours beyond the second are black
    write_file("4.bmp", four);
    EXPECT_EQ(levels(*load("4.bmp")), (std::vector<int>{4, 0, 4, 15, 4, 15}));
    std::string one_color = four;
    one_color[46] = 1;
    write_file("4.bmp", one_color);
    EXPECT_EQ(levels(*load("4.bmp")), (std::vector<int>{0, 0, 0, 15, 0, 15}));
    const std::string one = "BM" + le({{0, 4},
                                       {0, 4},
                                       {32, 4},
                                       {12, 4},
                                       {10, 2},
                                       {1, 2},
                                       {1, 2},
                                       {1, 2},
                                       {0x00FF00, 3},
                                       {0xFFFFFF, 3},
                                       {0x405A, 4}});
    write_file("1.bmp", one);
    EXPECT_EQ(levels(*load("1.bmp")), (std::vector<int>{9, 15, 9, 15, 15, 9, 15, 9, 9, 15}));
    // What fills the last row may be missing, but nothing more.
    write_file("1.bmp", one.substr(0, one.size() - 2));
    EXPECT_NE(load("1.bmp"), nullptr);
    write_file("1.bmp", one.substr(0, one.size() - 3));
    EXPECT_EQ(load("1.bmp"), nullptr);
}

// --- EXIF

GreyPicture mirrored(const GreyPicture &p) {
    GreyPicture out{p.width, p.height, {}};
    for (int y = 0; y < p.height; ++y)
        for (int x = 0; x < p.width; ++x) out.pixels.push_back(uint8_t(p.at(p.width - 1 - x, y)));
    return out;
}

GreyPicture clockwise(const GreyPicture &p) {
    GreyPicture out{p.height, p.width, {}};
    for (int y = 0; y < p.width; ++y)
        for (int x = 0; x < p.height; ++x) out.pixels.push_back(uint8_t(p.at(y, p.height - 1 - x)));
    return out;
}

// By the words of the standard: mirrored or not, then so many quarters clockwise.
GreyPicture shown(const GreyPicture &stored, int orientation) {
    constexpr struct {
        bool is_mirrored;
        int quarters;
    } turns[] = {{false, 0}, {true, 0},  {false, 2}, {true, 2},
                 {true, 3},  {false, 1}, {true, 1},  {false, 3}};
    GreyPicture p = turns[orientation - 1].is_mirrored ? mirrored(stored) : stored;
    for (int i = 0; i < turns[orientation - 1].quarters; ++i) p = clockwise(p);
    return p;
}

std::string exif(int orientation, bool big_endian) {
    if (big_endian)
        return std::string("MM\0*\0\0\0\10\0\1\1\22\0\3\0\0\0\1\0", 19) + char(orientation) +
               std::string(6, 0);
    return std::string("II*\0\10\0\0\0\1\0\22\1\3\0\1\0\0\0", 18) + char(orientation) +
           std::string(7, 0);
}

std::string read_file(const std::string &path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

void write_file(const std::string &path, const std::string &bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

void insert_jpeg_exif(const std::string &path, const std::string &data) {
    std::string file = read_file(path), part = std::string("Exif\0\0", 6) + data;
    const size_t size = part.size() + 2;
    part = std::string("\xFF\xE1") + char(size >> 8) + char(size & 255) + part;
    write_file(path, file.insert(2, part));
}

void insert_png_exif(const std::string &path, const std::string &data) {
    const std::string covered = "eXIf" + data;
    const auto sum =
        crc32(0, reinterpret_cast<const Bytef *>(covered.data()), uInt(covered.size()));
    std::string part = {0, 0, 0, char(data.size())};
    part += covered;
    for (int shift = 24; shift >= 0; shift -= 8) part += char(sum >> shift);
    std::string file = read_file(path);
    write_file(path, file.insert(33, part));
}

TEST_F(AnyPicture, IsTurnedAsItsDataSay) {
    const GreyPicture stored{card_w, card_h, grey};
    for (int orientation = 1; orientation <= 8; ++orientation) {
        const GreyPicture expected = shown(stored, orientation);
        write_jpeg("a.jpg", card_w, card_h, {1, JCS_GRAYSCALE, false, false, 100}, grey);
        insert_jpeg_exif("a.jpg", exif(orientation, orientation % 2 == 0));
        write_png("a.png", card_w, card_h, {8, PNG_COLOR_TYPE_GRAY}, grey);
        insert_png_exif("a.png", exif(orientation, orientation % 2 != 0));
        write_tiff("a.tif", card_w, card_h, {}, grey);
        TIFF *tiff = TIFFOpen("a.tif", "r+");
        TIFFSetField(tiff, TIFFTAG_ORIENTATION, orientation);
        TIFFRewriteDirectory(tiff);
        TIFFClose(tiff);
        for (const char *path : {"a.jpg", "a.png", "a.tif"}) {
            SCOPED_TRACE(testing::Message() << path << ' ' << orientation);
            int w = 0, h = 0;
            EXPECT_EQ(GetPictureSize(path, &w, &h), 1);
            EXPECT_EQ(std::pair(w, h), std::pair(expected.width, expected.height));
            const BitmapPtr bm = load(path);
            ASSERT_NE(bm, nullptr);
            ASSERT_EQ(std::pair(int(bm->width), int(bm->height)), std::pair(w, h));
            const std::vector<int> all = levels(*bm);
            int wrong = 0;
            for (size_t i = 0; i < all.size(); ++i)
                wrong += std::abs(all[i] - expected.pixels[i] / 16) > 1;
            EXPECT_EQ(wrong, 0);
            const BitmapPtr fitted = load(path, 2 * w, 5 * h);
            EXPECT_EQ(std::pair(int(fitted->width), int(fitted->height)), std::pair(2 * w, 2 * h));
        }
    }
}

TEST_F(AnyPicture, TheFirstExifDataCount) {
    write_jpeg("a.jpg", card_w, card_h, {1, JCS_GRAYSCALE, false, false, 100}, grey);
    insert_jpeg_exif("a.jpg", exif(1, true));
    insert_jpeg_exif("a.jpg", exif(6, true)); // before the other
    int w = 0, h = 0;
    EXPECT_EQ(GetPictureSize("a.jpg", &w, &h), 1);
    EXPECT_EQ(std::pair(w, h), std::pair(card_h, card_w));
}

// --- sizes and greys

TEST_F(AnyPicture, FitsCoversAndStretches) {
    write_png("a.png", card_w, card_h, {8, PNG_COLOR_TYPE_GRAY}, grey);
    const struct {
        int w, h, how, made_w, made_h;
    } table[] = {
        {96, 96, PICTURE_FIT, 96, 64},     {96, 32, PICTURE_FIT, 48, 32},
        {5, 500, PICTURE_FIT, 5, 3},       {1, 1, PICTURE_FIT, 1, 1},
        {-1, 16, PICTURE_FIT, 24, 16},     {96, 96, PICTURE_COVER, 96, 96},
        {24, 32, PICTURE_COVER, 24, 32},   {200, 3, PICTURE_COVER, 200, 3},
        {96, 96, PICTURE_STRETCH, 96, 96}, {-1, -1, PICTURE_COVER, 48, 32},
        {-1, 3, PICTURE_STRETCH, 48, 3},   {96, 96, 77, 96, 64},
    };
    for (const auto &row : table) {
        const BitmapPtr bm = load("a.png", row.w, row.h, row.how);
        ASSERT_NE(bm, nullptr);
        EXPECT_EQ(std::pair(int(bm->width), int(bm->height)), std::pair(row.made_w, row.made_h));
    }
    // What covers is the middle of the picture at the size that it is drawn in.
    const std::vector<int> drawn = levels(*load("a.png", 144, 96, PICTURE_STRETCH)),
                           cut = levels(*load("a.png", 96, 96, PICTURE_COVER));
    for (int y = 0; y < 96; ++y)
        for (int x = 0; x < 96; ++x)
            ASSERT_EQ(cut[size_t(y * 96 + x)], drawn[size_t(y * 144 + x + 24)]) << x << ' ' << y;
}

// Only what is seen of it is scaled: all of this one would be 100 rows of 5,000 pixels.
TEST_F(AnyPicture, CoversWithTheMiddleOfAThinOne) {
    Bytes line(50, 0);
    std::fill(line.begin() + 25, line.end(), uint8_t{255});
    write_png("wide.png", 50, 1, {8, PNG_COLOR_TYPE_GRAY}, line);
    for (const int dither : {0, 1}) {
        const BitmapPtr bm = load("wide.png", 90, 100, PICTURE_COVER, dither);
        ASSERT_NE(bm, nullptr);
        const std::vector<int> all = levels(*bm);
        // From the last black pixel to the first white one.
        EXPECT_LT(all[0], 3);
        EXPECT_GT(all[89], 12);
    }
}

// As high as it would be drawn, this one has 1.2 million rows.
TEST_F(AnyPicture, CoversWithTheMiddleOfAThread) {
    Bytes line(1000, 0);
    std::fill(line.begin() + 500, line.end(), uint8_t{255});
    write_png("high.png", 1, 1000, {8, PNG_COLOR_TYPE_GRAY}, line);
    const BitmapPtr bm = load("high.png", 1200, 1600, PICTURE_COVER);
    ASSERT_NE(bm, nullptr);
    const std::vector<int> all = levels(*bm);
    EXPECT_EQ(all[0], 0);
    EXPECT_EQ(all[1200 * 1600 - 1], 15);
    EXPECT_NEAR(all[1200 * 800], 7, 1) << "in the middle between the two";
    write_png("wide.png", 60000, 1, {8, PNG_COLOR_TYPE_GRAY}, Bytes(60000, 255));
    EXPECT_NE(load("wide.png", 9, 60000, PICTURE_COVER), nullptr);
}

TEST_F(AnyPicture, IsDitheredWhenAsked) {
    Random random;
    const GreyPicture noise{40, 30, random_bytes(random, 1200)};
    write_png("a.png", 40, 30, {8, PNG_COLOR_TYPE_GRAY}, noise.pixels);
    for (const int dither : {0, 1}) {
        const image::Finish finish{image::no_curve(), image::no_frame,
                                   dither ? 16 : image::no_dithering};
        EXPECT_EQ(levels(*load("a.png", 55, 44, PICTURE_STRETCH, dither)),
                  plainly_made(noise, {{55, 44}, 0, 0, {55, 44}}, finish, 4));
    }
}

// --- hostile files

TEST_F(AnyPicture, DamagedFilesAreRefusedOrRead) {
    write_png("a.png", card_w, card_h, {8, PNG_COLOR_TYPE_RGB, true}, rgb);
    insert_png_exif("a.png", exif(6, true));
    write_jpeg("a.jpg", card_w, card_h, {4, JCS_CMYK, true}, rgba);
    insert_jpeg_exif("a.jpg", exif(5, false));
    write_tiff("a.tif", card_w, card_h, {8, 3, PHOTOMETRIC_RGB, COMPRESSION_LZW}, rgb);
    write_bmp("a.bmp", 8, true);
    testing::internal::CaptureStderr();
    for (const char *path : {"a.png", "a.jpg", "a.tif", "a.bmp"}) {
        const std::string whole = read_file(path);
        const auto try_bytes = [](const std::string &bytes) {
            write_file("b", bytes);
            int w = 7, h = 7;
            const bool has_size = GetPictureSize("b", &w, &h) == 1;
            EXPECT_EQ(has_size, w > 0 && h > 0);
            const BitmapPtr bm = load("b", 20, 20, PICTURE_COVER, 1);
            if (bm) {
                EXPECT_TRUE(has_size);
                EXPECT_EQ(std::pair(int(bm->width), int(bm->height)), std::pair(20, 20));
            }
        };
        const size_t step = size_t(repeats(37, 97));
        for (size_t n = 0; n < whole.size(); n += n < 60 ? 1 : step) try_bytes(whole.substr(0, n));
        for (size_t at = 0; at < whole.size(); at += at < 60 ? 1 : step)
            for (const char c : {'\0', '\xFF'}) {
                std::string bytes = whole;
                bytes[at] = c;
                try_bytes(bytes);
            }
    }
    testing::internal::GetCapturedStderr();
}

long reads() {
    std::ifstream in("/proc/self/io");
    for (std::string name; in >> name;)
        if (long count; in >> count && name == "syscr:") return count;
    return 0;
}

// Nothing is looked for behind the end of a file.
TEST_F(AnyPicture, ACutFileIsReadOnce) {
    write_png("a.png", card_w, card_h, {8, PNG_COLOR_TYPE_RGB}, rgb);
    write_file("cut.png", read_file("a.png").substr(0, 33)); // behind the header
    write_file("cut.tif", std::string("II*\0\10\0\0\0\xE8\3\1\1\3\0\1\0\0\0\7\0", 20) +
                              std::string("\0\0\0\1\3\0\1\0\0\0\7", 11));
    for (const char *path : {"cut.png", "cut.tif"}) {
        int w = 0, h = 0;
        const long before = reads();
        GetPictureSize(path, &w, &h);
        EXPECT_LE(reads() - before, 10) << path;
    }
}

TEST_F(AnyPicture, WhatIsNoPictureIsSaid) {
    Bytes line(5000, 1);
    write_png("thin.png", 1, 5000, {8, PNG_COLOR_TYPE_GRAY}, line);
    write_file("text", "no picture");
    std::string huge = read_file(write_bmp("huge.bmp", 24, false));
    huge.replace(18, 8, "\xFF\xFF\xFF\x7F\xFF\xFF\xFF\x7F");
    write_file("huge.bmp", huge);
    const struct {
        const char *path;
        int w, h;
        const char *said;
    } table[] = {{"missing", 9, 9, "can't open missing"},
                 {"text", 9, 9, "no picture that can be read: text"},
                 {"huge.bmp", 9, 9, "no picture that can be read: huge.bmp"},
                 {"thin.png", 900000, 900000, "cannot allocate memory"},
                 {"thin.png", 0, 9, ""},
                 {nullptr, 9, 9, ""}};
    for (const auto &row : table) {
        testing::internal::CaptureStderr();
        EXPECT_EQ(LoadPicture(row.path, row.w, row.h, PICTURE_COVER, 0), nullptr);
        EXPECT_NE(testing::internal::GetCapturedStderr().find(row.said), std::string::npos);
    }
    int w = 3, h = 3;
    EXPECT_EQ(GetPictureSize("text", &w, &h), 0);
    EXPECT_EQ(std::pair(w, h), std::pair(0, 0));
    EXPECT_EQ(GetPictureSize(nullptr, nullptr, nullptr), 0);
    EXPECT_EQ(GetPictureSize("thin.png", nullptr, nullptr), 1);
}

} // namespace
