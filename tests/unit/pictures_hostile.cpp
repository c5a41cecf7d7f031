// SPDX-License-Identifier: MIT
// Picture files that are cut short, damaged, not supported, or that ask for too much.
#include "kelvane/pictures.h"

#include <climits>
#include <gtest/gtest.h>
#include <zlib.h>

#include "unit/picture_files.h"
#include "unit/raster_support.h"

namespace {

using raster::BitmapPtr;

class HostilePictures : public FileTest {
  protected:
    void SetUp() override {
        setenv("KELVANE_LOG", "4", 1); // read at the first message
        FileTest::SetUp();
        memory_table = "MemFree: 99999999 kB\n";
        file_hooks.open = [](const char *path, const char *mode) {
            if (std::string(path) != "/proc/meminfo") return std::fopen(path, mode);
            return memory_table.empty() ? nullptr
                                        : fmemopen(memory_table.data(), memory_table.size(), mode);
        };
    }
    static inline std::string memory_table; // what the system says of its memory
    Random random;
};

BitmapPtr load(const std::string &path, int w = -1, int h = -1) {
    const char *name = path.c_str();
    if (path.ends_with(".png")) return BitmapPtr(LoadPNGStretch(name, w, h, 0, 0));
    if (path.ends_with(".jpg")) return BitmapPtr(LoadJPEG(name, w, h, 100, 100, 0));
    return BitmapPtr(LoadTIFF(name, w, h, 100, 100, 0));
}

// What is said after "[pid : program] (function)" or "[pid:...]"; null is expected.
std::string refusal(const std::string &path, int w = -1, int h = -1) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(load(path, w, h), nullptr) << path;
    std::string said = testing::internal::GetCapturedStderr(), text;
    for (size_t at = 0; at < said.size();) {
        const size_t end = said.find('\n', at);
        const std::string line = said.substr(at, end - at);
        const size_t mark =
            line.find_first_of(")]", line.starts_with("[pid:") ? 0 : line.find('('));
        const std::string rest = line.substr(mark + 1);
        if (!rest.starts_with("w=") && !rest.starts_with("image width")) text += rest + "\n";
        at = end + 1;
    }
    return text;
}

std::string big_endian(uint32_t n) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(n >> shift);
    return bytes;
}

std::string chunk(const std::string &name, const std::string &data) {
    const std::string covered = name + data;
    const auto sum = crc32(0, reinterpret_cast<const Bytef *>(covered.data()),
                           static_cast<uInt>(covered.size()));
    return big_endian(static_cast<uint32_t>(data.size())) + covered +
           big_endian(static_cast<uint32_t>(sum));
}

std::string packed(const std::string &data) {
    uLongf size = compressBound(data.size());
    std::string out(size, 0);
    compress2(reinterpret_cast<Bytef *>(out.data()), &size,
              reinterpret_cast<const Bytef *>(data.data()), data.size(), 1);
    return out.substr(0, size);
}

std::string png_of(uint32_t w, uint32_t h, const char (&format)[3], const std::string &chunks) {
    const std::string kind{format[0], format[1], 0, 0, 0};
    return "\x89PNG\r\n\x1a\n" + chunk("IHDR", big_endian(w) + big_endian(h) + kind) + chunks +
           chunk("IEND", "");
}

// Replaces what stands in a file; each is as long as the other.
void patch(const std::string &path, const std::string &old, const std::string &fresh) {
    std::string text = contents(path);
    const size_t at = text.find(old);
    ASSERT_NE(at, std::string::npos);
    write_file(path, text.replace(at, fresh.size(), fresh));
}

std::string little_endian(uint16_t a, uint16_t b, uint32_t c, uint32_t d) {
    std::string bytes;
    for (const uint32_t word : {uint32_t{a} | uint32_t{b} << 16, c, d})
        for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(word >> shift);
    return bytes;
}

// A grey TIFF of one strip.
void put_jpeg_strip(const char *path, uint32_t w, uint32_t h, std::string strip) {
    TIFF *tiff = TIFFOpen(path, "w");
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, w);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, h);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_JPEG);
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, h);
    TIFFWriteRawStrip(tiff, 0, strip.data(), static_cast<tmsize_t>(strip.size()));
    TIFFClose(tiff);
}

TEST_F(HostilePictures, EachRefusalSaysWhy) {
    const std::string grey_row = chunk("IDAT", packed(std::string(2, 0)));
    write_file("empty.png", ""), write_file("empty.jpg", ""), write_file("empty.tiff", "");
    std::filesystem::create_directory("folder.png");
    for (const char *pipe : {"pipe.png", "pipe.jpg", "pipe.tiff"}) mkfifo(pipe, 0600);
    write_file("text.png", "not a picture at all"), write_file("text.jpg", "not a picture at all");
    write_png("interlaced.png", 10, 10, {8, PNG_COLOR_TYPE_RGB, true}, Bytes(300));
    write_file("no pixels.png", png_of(1, 1, "\x08\x00", ""));
    write_file("no palette.png", png_of(1, 1, "\x08\x03", grey_row));
    write_file("bad sum.png", png_of(1, 1, "\x08\x00", grey_row));
    patch("bad sum.png", "IDAT", "IDAU");
    write_file("empty size.png", png_of(0, 1, "\x08\x00", grey_row));
    write_file("high.png", png_of(1, 0x7FFFFFFF, "\x08\x00", grey_row));
    write_file("overflow.png", png_of(1000000, 1000000, "\x10\x06", grey_row));
    write_file("bytes.png", png_of(6000, 6000, "\x10\x06", grey_row));
    write_jpeg("cmyk.jpg", 10, 10, {4, JCS_CMYK}, Bytes(400));
    write_jpeg("huge.jpg", 10, 10, {}, Bytes(300));
    patch("huge.jpg", std::string("\x08\0\x0a\0\x0a", 5), "\x08\xff\xdc\xff\xdc");
    write_jpeg("scans.jpg", 10, 10, {3, JCS_RGB, true}, Bytes(300));
    const std::string scans = contents("scans.jpg");
    const size_t first = scans.find("\xff\xda");
    std::string repeated = scans.substr(0, scans.size() - 2);
    for (int i = 0; i < 200; ++i) repeated += scans.substr(first, scans.size() - 2 - first);
    write_file("scans.jpg", repeated + "\xff\xd9");
    write_tiff("side.tiff", 10, 10, {}, Bytes(100));
    patch("side.tiff", little_endian(256, 3, 1, 10), little_endian(256, 4, 1, 0xFFFFFFFF));
    write_tiff("area.tiff", 10, 10, {}, Bytes(100));
    patch("area.tiff", little_endian(256, 3, 1, 10), little_endian(256, 4, 1, 50000));
    patch("area.tiff", little_endian(257, 3, 1, 10), little_endian(257, 4, 1, 50000));
    write_tiff("no width.tiff", 10, 10, {}, Bytes(100));
    patch("no width.tiff", little_endian(256, 3, 1, 10), little_endian(256, 3, 1, 0));
    write_tiff("lzma.tiff", 10, 10, {8, 1, PHOTOMETRIC_MINISBLACK, COMPRESSION_LZMA}, Bytes(100));
    write_tiff("damaged.tiff", 64, 64, {8, 1, PHOTOMETRIC_MINISBLACK, COMPRESSION_LZW},
               Bytes(4096, 7));
    patch("damaged.tiff", contents("damaged.tiff").substr(8, 8), std::string(8, '\xff'));
    write_jpeg("progressive.jpg", 10, 10, {3, JCS_RGB, true}, Bytes(300));
    put_jpeg_strip("scans.tiff", 9000, 9000, contents("progressive.jpg"));

    const struct {
        const char *path, *message;
    } cases[] = {
        {"none.png", "can't open none.png\n"},
        {"none.jpg", "can't open none.jpg\n"},
        {"none.tiff", "can't open none.tiff\n"},
        {"folder.png", "can't open folder.png\n"},
        {"pipe.png", "can't open pipe.png\n"},
        {"pipe.jpg", "can't open pipe.jpg\n"},
        {"pipe.tiff", "can't open pipe.tiff\n"},
        {"empty.png", "error reading file info empty.png\n"},
        {"text.png", "error reading file info text.png\n"},
        {"no pixels.png", "error reading file info no pixels.png\n"},
        {"no palette.png", "error reading file info no palette.png\n"},
        {"empty size.png", "error reading file info empty size.png\n"},
        {"high.png", "error reading file info high.png\n"},
        {"interlaced.png", "number_passes>1 - error\n"},
        {"bad sum.png", "error reading file info bad sum.png\n"},
        {"overflow.png", "cannot allocate memory\n"},
        {"bytes.png", "cannot allocate memory\n"},
        {"empty.jpg", "error loading image\n"},
        {"text.jpg", "error loading image\n"},
        {"cmyk.jpg", "error loading image\n"},
        {"huge.jpg", "cannot allocate memory\n"},
        {"scans.jpg", "error loading image\n"},
        {"empty.tiff", "can't open empty.tiff\n"},
        {"no width.tiff", "can't open no width.tiff\n"},
        {"lzma.tiff", "Can't read image parameters\n"},
        {"damaged.tiff", "error loading image\n"},
        {"side.tiff", "cannot allocate memory (4294967295 x 10)\n"},
        {"area.tiff", "cannot allocate memory (50000 x 50000)\n"},
        {"scans.tiff", "cannot allocate memory (9000 x 9000)\n"},
    };
    for (const auto &c : cases) EXPECT_EQ(refusal(c.path), c.message) << c.path;
}

TEST_F(HostilePictures, SizesThatCannotBe) {
    write_png("a.png", 4, 4, {8, PNG_COLOR_TYPE_GRAY}, Bytes(16));
    write_jpeg("a.jpg", 4, 4, {}, Bytes(48));
    write_tiff("a.tiff", 4, 4, {}, Bytes(16));
    for (const std::string path : {"a.png", "a.jpg", "a.tiff"}) {
        for (const auto &[w, h] : {std::pair(0, 5), {5, 0}, {-2, 5}, {INT_MIN, INT_MIN}})
            EXPECT_EQ(refusal(path, w, h), "") << path << w;
        for (const auto &[w, h] : {std::pair(65536, 1), {INT_MAX, INT_MAX}, {60000, 60000}})
            EXPECT_TRUE(refusal(path, w, h).starts_with("cannot allocate memory")) << path << w;
        EXPECT_EQ(load(path, 65535, 1)->width, 65535);
        EXPECT_EQ(load(path, 1, 65535)->height, 65535);
        EXPECT_TRUE(refusal(path, 1, 65536).starts_with("cannot allocate memory")) << path;
    }
    EXPECT_EQ(LoadPNG(nullptr, 0), nullptr);
    EXPECT_EQ(LoadJPEG(nullptr, 1, 1, 100, 100, 0), nullptr);
    EXPECT_EQ(LoadTIFF(nullptr, 1, 1, 100, 100, 0), nullptr);
    constexpr uint32_t most = 1'000'000;
    EXPECT_EQ(load(write_tiff("wide.tiff", most, 1, {}, Bytes(most)), 9, 9)->width, 9);
    EXPECT_EQ(refusal(write_tiff("wide.tiff", most + 1, 1, {}, Bytes(most + 1)), 9, 9),
              "cannot allocate memory (1000001 x 1)\n");
    write_tiff("a.tiff", 10, 1, {}, Bytes(10));
    patch("a.tiff", little_endian(257, 3, 1, 1), little_endian(257, 4, 1, most + 1));
    EXPECT_EQ(refusal("a.tiff", 9, 9), "cannot allocate memory (10 x 1000001)\n");
    // As wide as asked for, a picture of one row would have no height.
    write_png("line.png", 1000, 1, {8, PNG_COLOR_TYPE_GRAY}, Bytes(1000));
    SetLoadImageFlags(LOAD_FIT_WIDTH);
    EXPECT_EQ(LoadPNGStretch("line.png", 100, 100, 1, 0), nullptr);
}

// A file cut anywhere gives nothing, or the whole picture when only its closing bytes are gone.
TEST_F(HostilePictures, NoPartOfAPictureIsEverReturned) {
    constexpr int w = 16, h = 18;
    Bytes rgb = random_bytes(random, w * h * 3), grey = random_bytes(random, w * h);
    const struct {
        std::string path;
        size_t may_lack; // bytes at the end
    } samples[] = {
        {write_png("a.png", w, h, {}, rgb), 0},
        {write_jpeg("base.jpg", w, h, {}, rgb), 2}, // the mark of the end
        {write_jpeg("progressive.jpg", w, h, {3, JCS_RGB, true}, rgb), 0},
        {write_jpeg("arithmetic.jpg", w, h, {3, JCS_RGB, false, true}, rgb), 0},
        {write_tiff("lzw.tiff", w, h, {8, 1, PHOTOMETRIC_MINISBLACK, COMPRESSION_LZW}, grey), 0},
        {write_tiff("fax.tiff", w * 8, h, {1, 1, PHOTOMETRIC_MINISWHITE, COMPRESSION_CCITTFAX4},
                    grey),
         0},
    };
    testing::internal::CaptureStderr();
    for (const auto &sample : samples) {
        const BitmapPtr all = load(sample.path);
        ASSERT_NE(all, nullptr) << sample.path;
        const std::string bytes = contents(sample.path);
        for (size_t n = bytes.size(); n-- > 0;) {
            SCOPED_TRACE(sample.path + " cut to " + std::to_string(n));
            std::filesystem::resize_file(sample.path, n);
            const BitmapPtr bm = load(sample.path);
            ASSERT_EQ(bm != nullptr, bytes.size() - n <= sample.may_lack);
            EXPECT_TRUE(!bm || levels(*bm) == levels(*all));
        }
    }
    // The mark of the end does not make up for what is missing.
    const std::string bytes = contents(write_jpeg("ended.jpg", w, h, {}, rgb));
    for (size_t lacking = 1; lacking < 200; lacking++) {
        std::filesystem::resize_file("ended.jpg", bytes.size() - 2 - lacking);
        std::ofstream("ended.jpg", std::ios::app) << "\xff\xd9";
        EXPECT_EQ(load("ended.jpg"), nullptr) << lacking;
    }
    testing::internal::GetCapturedStderr();
}

TEST_F(HostilePictures, LargeJpegsNeedFreeMemory) {
    write_jpeg("a.jpg", 600, 500, {}, Bytes(600 * 500 * 3));
    write_jpeg("small.jpg", 500, 500, {}, Bytes(500 * 500 * 3));
    const struct {
        const char *meminfo; // 600 x 500 x 3 bytes are 879 kB, 1099 kB are needed
        bool loads;
    } cases[] = {
        {"MemTotal: 9999 kB\nMemFree: 100 kB\nSwapCached: 9999 kB\nCached:   998 kB\n", false},
        {"MemTotal: 9 kB\nMemFree:\t 101 kB\nBuffers: 9 kB\nCached: 998 kB\nCached: 9 kB\n", true},
        {"", false},
        {"garbage", false},
    };
    for (const auto &c : cases) {
        memory_table = c.meminfo;
        EXPECT_NE(load("small.jpg"), nullptr);
        if (c.loads)
            EXPECT_NE(load("a.jpg"), nullptr);
        else
            EXPECT_EQ(refusal("a.jpg"),
                      std::string("Too large image! \nNeed: 0 Mb, Allowed: 0 Mb! \n"));
    }
}

#ifdef KELVANE_SANITIZED
constexpr long allowed_kb = LONG_MAX; // the sanitizer keeps what is freed
#else
constexpr long allowed_kb = 256 * 1024;
#endif

long peak_kb() {
    std::ifstream in("/proc/self/status");
    for (std::string line; std::getline(in, line);)
        if (line.starts_with("VmHWM:")) return std::atol(line.c_str() + 6);
    return 0;
}

// Files of a few kilobytes that stand for as much as is accepted, or more.
TEST_F(HostilePictures, BombsStaySmall) {
    const std::string rows = packed(std::string(10000 * 10001, 0));
    write_file("grey.png", png_of(10000, 10000, "\x08\x00", chunk("IDAT", rows)));
    const std::string text("comment\0\0", 9);
    write_file("text.png", png_of(1, 1, "\x08\x00",
                                  chunk("zTXt", text + rows) + chunk("iCCP", text + rows) +
                                      chunk("IDAT", packed(std::string(2, 0)))));
    write_tiff("strips.tiff", 1000, 1000, {8, 1, PHOTOMETRIC_MINISBLACK, COMPRESSION_PACKBITS},
               Bytes(1000 * 1000));
    write_file("palette.png",
               png_of(1, 1, "\x01\x03",
                      chunk("PLTE", std::string(9, 1)) + chunk("IDAT", packed(std::string(2, 0)))));
    write_jpeg("grey.jpg", 9999, 9999, {1, JCS_GRAYSCALE, false, true}, Bytes(9999 * 9999, 9));
    std::ofstream("/proc/self/clear_refs") << 5; // the peak starts anew
    EXPECT_NE(load("grey.png", 50, 50), nullptr);
    EXPECT_NE(load("text.png"), nullptr);
    EXPECT_NE(load("palette.png"), nullptr) << "more colours than the depth allows";
    EXPECT_NE(load("strips.tiff", 50, 50), nullptr);
    EXPECT_NE(load("grey.jpg", 50, 50), nullptr);
    EXPECT_LT(peak_kb(), allowed_kb);
}

} // namespace
