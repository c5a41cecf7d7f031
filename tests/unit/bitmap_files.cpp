// SPDX-License-Identifier: MIT
// BMP files: bytes in, bytes out, and every way to refuse.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <minizip/unzip.h>
#include <minizip/zip.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "file/hooks.h"
#include "hw.h"
#include "kelvane/bitmaps.h"
#include "support/tempdir.h"
#include "unit/bitmap_support.h"

namespace {

using namespace bitmaps;

void put(std::string &bytes, size_t at, uint32_t value, size_t size) {
    for (size_t i = 0; i < size && at + i < bytes.size(); ++i)
        bytes[at + i] = static_cast<char>(value >> 8 * i);
}

// A file with a full palette of greys that grow with the index.
std::string make_bmp(int w, int h, int bits, const std::string &rows) {
    const size_t colours = size_t{1} << bits;
    std::string bytes(54 + 4 * colours, '\0');
    bytes[0] = 'B', bytes[1] = 'M';
    const uint32_t fields[][3] = {{2, static_cast<uint32_t>(bytes.size() + rows.size()), 4},
                                  {10, static_cast<uint32_t>(bytes.size()), 4},
                                  {14, 40, 4},
                                  {18, static_cast<uint32_t>(w), 4},
                                  {22, static_cast<uint32_t>(h), 4},
                                  {26, 1, 2},
                                  {28, static_cast<uint32_t>(bits), 2}};
    for (const auto &[at, value, size] : fields) put(bytes, at, value, size);
    for (uint32_t i = 0; i < colours; ++i)
        put(bytes, 54 + 4 * i, i * (0xFFFFFF / (static_cast<uint32_t>(colours) - 1)), 4);
    return bytes + rows;
}

// Some file systems wait for the disk when a file is written over.
void write_anew(const char *name, const std::string &bytes) {
    std::filesystem::remove(name);
    write_file(name, bytes);
}

BitmapPtr load(const std::string &bytes) {
    write_anew("x.bmp", bytes);
    return BitmapPtr(LoadBitmap("x.bmp"));
}

// What is said on standard error, after the process, the program and the function.
template <class Call>
std::string said(const char *function, Call call) {
    testing::internal::CaptureStderr();
    call();
    const std::string text = testing::internal::GetCapturedStderr();
    const std::string prefix = "[" + std::to_string(getpid()) + " : " +
                               program_invocation_short_name + "] (" + function + ")";
    return text.starts_with(prefix) ? text.substr(prefix.size()) : text;
}

class Bmp : public testing::Test {
  protected:
    Bmp() { loadHwConfigEmulator(panel_of_4); }

  private:
    TempDir dir_;
};

TEST_F(Bmp, LoadsRowsFromTheBottom) {
    // Odd widths, so that rows are padded: 3 pixels are 2 and 3 bytes of 4.
    const std::string four = make_bmp(3, 2, 4, {'\x12', '\x3F', 9, 9, '\x45', '\x60', 9, 9});
    const std::string eight = make_bmp(3, 2, 8, {0, '\x11', '\x77', 9, '\xF7', '\xF8', '\xFF', 9});
    const std::string unpadded = eight.substr(0, eight.size() - 1);
    const struct {
        const char *panel;
        const std::string &file;
        int depth, scanline;
        std::vector<uint8_t> rows;
    } cases[] = {
        {panel_of_4, four, 4, 2, {0x45, 0x60, 0x12, 0x30}},
        {panel_of_4, eight, 4, 2, {0xFF, 0xF0, 0x01, 0x70}},
        {panel_of_4, unpadded, 4, 2, {0xFF, 0xF0, 0x01, 0x70}},
        {panel_of_2, four, 2, 1, {0x54, 0x04}}, // (17 n + 42) / 85
        {panel_of_2, eight, 2, 1, {0xFC, 0x04}},
    };
    for (const auto &c : cases) {
        loadHwConfigEmulator(c.panel);
        const BitmapPtr bm = load(c.file);
        ASSERT_NE(bm, nullptr);
        EXPECT_TRUE(bm->width == 3 && bm->height == 2 && bm->depth == c.depth);
        ASSERT_EQ(bm->scanline, c.scanline);
        EXPECT_EQ(std::vector(bm->data, bm->data + pixel_bytes(*bm)), c.rows);
    }
}

TEST_F(Bmp, PaletteBecomesLevelsAndTransparency) {
    std::string file = make_bmp(4, 1, 4, {'\x53', '\x5C', 0, 0});
    put(file, 54 + 4 * 5, 0x00808040, 4);  // the transparent colour
    put(file, 54 + 4 * 3, 0x00FF0000, 4);  // red 255: 3 * 255 / 10 = 76, (76 + 8) / 17 = 4
    put(file, 54 + 4 * 12, 0x0000FF40, 4); // (64 + 6 * 255) / 10 = 159, 167 / 17 = 9
    const BitmapPtr bm = load(file);
    ASSERT_EQ(bm->depth, 0x8004);
    EXPECT_EQ((std::vector{bm->data[0], bm->data[1]}), (std::vector<uint8_t>{0x04, 0x09}));
    EXPECT_EQ(mask_of(*bm)[0], 0x5F); // bits behind the width stay ones
    // Another byte in place of the key's unused one changes nothing; one step of green does.
    put(file, 54 + 4 * 5 + 3, 0xAA, 1);
    EXPECT_TRUE(has_mask(*load(file)));
    put(file, 54 + 4 * 5 + 1, 0x81, 1);
    EXPECT_FALSE(has_mask(*load(file)));
    // The palette starts behind the information header, whatever its size.
    std::string longer = make_bmp(1, 1, 4, {'\x20', 0, 0, 0});
    longer.insert(54, 8, '\0');
    put(longer, 10, 126, 4);
    put(longer, 14, 48, 4);
    EXPECT_EQ(load(longer)->data[0], 0x20);
}

TEST_F(Bmp, SavedFilesAreExact) {
    Random random{};
    for (const int depth : {2, 4, 8})
        for (const int w : {1, 5, 8, 13}) {
            loadHwConfigEmulator(depth == 2 ? panel_of_2 : panel_of_4);
            const BitmapPtr bm = random_bitmap(random, w, 3, depth, w == 5);
            std::string rows;
            for (int y = 2; y >= 0; --y) {
                std::string row(static_cast<size_t>(depth == 8 ? w : (w + 1) / 2), '\0');
                for (int x = 0; x < w; ++x)
                    if (depth == 8)
                        row[static_cast<size_t>(x)] = static_cast<char>(raw_at(*bm, x, y));
                    else
                        row[static_cast<size_t>(x / 2)] = static_cast<char>(
                            row[static_cast<size_t>(x / 2)] | raw_at(*bm, x, y) << (x % 2 ? 0 : 4));
                row.resize((row.size() + 3) / 4 * 4);
                rows += row;
            }
            std::string expected = make_bmp(w, 3, depth == 8 ? 8 : 4, rows);
            if (depth == 2) { // only four colours are there, and the offset says so
                expected.erase(70, 48);
                for (uint32_t i = 0; i < 4; ++i) put(expected, 54 + 4 * i, i * 0x555555, 4);
                put(expected, 2, static_cast<uint32_t>(expected.size()), 4);
                put(expected, 10, 70, 4);
            }
            ASSERT_EQ(SaveBitmap("new/folder/x.bmp", bm.get()), 1);
            EXPECT_EQ(read_file("new/folder/x.bmp"), expected) << "depth " << depth << ' ' << w;
            const BitmapPtr back(LoadBitmap("new/folder/x.bmp"));
            ASSERT_TRUE(back != nullptr && !has_mask(*back));
            for (int y = 0; y < 3; ++y)
                for (int x = 0; x < w; ++x)
                    ASSERT_EQ(raw_at(*back, x, y),
                              depth == 8 ? (grey_at(*bm, x, y) + 8) / 17 : raw_at(*bm, x, y));
        }
}

TEST_F(Bmp, SavingFails) {
    Random random{};
    const BitmapPtr bm = random_bitmap(random, 5, 5, 4, false);
    EXPECT_EQ(SaveBitmap("x.bmp", nullptr), 0);
    EXPECT_EQ(SaveBitmap(nullptr, bm.get()), 0);
    EXPECT_EQ(SaveBitmap(".", bm.get()), 0);
    EXPECT_EQ(SaveBitmap("/dev/full", bm.get()), 0);
    for (const int depth : {1, 16, 24})
        EXPECT_EQ(SaveBitmap("x.bmp", random_bitmap(random, 5, 5, depth, false).get()), 0);
    EXPECT_FALSE(std::filesystem::exists("x.bmp"));
}

TEST_F(Bmp, RefusalsSayWhy) {
    const std::string good = make_bmp(2, 2, 4, std::string(8, '\x11'));
    const auto with = [&](size_t at, uint32_t value, size_t size = 4) {
        std::string file = good;
        put(file, at, value, size);
        return file;
    };
    const struct {
        std::string file;
        const char *message;
    } cases[] = {
        {"", "x.bmp is not a bmp file\n"},
        {"B", "x.bmp is not a bmp file\n"},
        {with(0, 'b', 1), "x.bmp is not a bmp file\n"},
        {with(28, 24, 2), "x.bmp: wrong format (should be 16 or 256 color BMP)\n"},
        {with(28, 1, 2), "x.bmp: wrong format (should be 16 or 256 color BMP)\n"},
        {with(28, 24, 2).replace(30, 1, "\1"),
         "x.bmp: wrong format (should be 16 or 256 color BMP)\n"},
        {with(30, 2), "x.bmp: compressed bmp files are not supported\n"},
        {with(18, 0), ""},
        {with(18, 0x80000000), ""},
        {with(18, 65536), ""},
        {with(22, 0), ""},
        {with(22, static_cast<uint32_t>(-2)), ""},
        {with(22, 3), ""},
        {with(22, 0x7FFFFFFF), ""},
        {with(10, static_cast<uint32_t>(good.size())), ""},
        {with(10, 0xFFFFFFFF), ""},
        {std::string(static_cast<size_t>(max_bmp_size()) + 1, '\0'),
         "Bitmap is too large: x.bmp\n"},
    };
    for (const auto &c : cases) {
        write_file("x.bmp", c.file);
        EXPECT_EQ(said("LoadBitmap", [] { EXPECT_EQ(LoadBitmap("x.bmp"), nullptr); }), c.message);
    }
    // Palettes that lie outside the file are black; no arithmetic goes round.
    for (const uint32_t info_size : {0x7FFFFFFFu, 0xFFFFFFFFu, 0xFFFFFFF2u, 112u}) {
        const BitmapPtr bm = load(with(14, info_size));
        ASSERT_NE(bm, nullptr);
        EXPECT_EQ(bm->data[0], 0);
    }
    ASSERT_EQ(mkfifo("pipe.bmp", 0600), 0);
    for (const std::string name : {"none.bmp", "pipe.bmp", "."})
        EXPECT_EQ(said("LoadBitmap", [&] { EXPECT_EQ(LoadBitmap(name.c_str()), nullptr); }),
                  "Cannot open bitmap: " + name + "\n");
    EXPECT_EQ(LoadBitmap(nullptr), nullptr);
    EXPECT_EQ(max_bmp_size(), device_display_width() * device_display_height() * 3 + 1024);
}

TEST_F(Bmp, NoPartOfAFileIsAPicture) {
    const std::string good = make_bmp(5, 3, 8, std::string(24, '\x77'));
    testing::internal::CaptureStderr();
    for (size_t size = 0; size <= good.size(); ++size)
        // The padding of the last row may be missing.
        EXPECT_EQ(load(good.substr(0, size)) != nullptr, size + 3 >= good.size()) << size;
    // Any byte of the header may be anything.
    for (size_t at = 0; at < 54; ++at)
        for (const uint32_t value : {0x00, 0x01, 0x7F, 0xFF}) {
            std::string file = good;
            put(file, at, value, 1);
            load(file);
        }
    testing::internal::GetCapturedStderr();
}

// An archive with one member, which may be changed before it is read.
class Archive {
  public:
    Archive(const std::string &name, const std::string &bytes, int level) {
        const zipFile zip = zipOpen("a.zip", APPEND_STATUS_CREATE);
        const zip_fileinfo info{};
        zipOpenNewFileInZip(zip, name.c_str(), &info, nullptr, 0, nullptr, 0, nullptr,
                            level == 0 ? 0 : Z_DEFLATED, level);
        zipWriteInFileInZip(zip, bytes.data(), static_cast<unsigned>(bytes.size()));
        zipCloseFileInZip(zip);
        zipClose(zip, nullptr);
        bytes_ = read_file("a.zip");
    }
    // Sets what both headers of the member say about its size: where is 18 for the packed size, 22
    // for the unpacked one, as in the local header.
    Archive &lie(size_t where, uint32_t value) {
        put(bytes_, where, value, 4);
        put(bytes_, bytes_.find("PK\1\2") + where + 2, value, 4);
        return *this;
    }
    const std::string &bytes() const { return bytes_; }

  private:
    std::string bytes_;
};

BitmapPtr load_member(const std::string &archive, const char *name = "dir/x.bmp") {
    write_anew("b.zip", archive);
    const unzFile zip = unzOpen("b.zip");
    BitmapPtr bm(zLoadBitmap(zip, name));
    unzClose(zip);
    return bm;
}

TEST_F(Bmp, LoadsMembersOfArchives) {
    const std::string good = make_bmp(3, 2, 4, {'\x12', '\x3F', 9, 9, '\x45', '\x60', 9, 9});
    const uint32_t size = static_cast<uint32_t>(good.size());
    for (const int level : {0, 9}) {
        Archive archive("Dir/X.bmp", good, level);
        const BitmapPtr bm = load_member(archive.bytes());
        ASSERT_NE(bm, nullptr);
        EXPECT_EQ(bm->data[0], 0x45);
        EXPECT_EQ(load_member(archive.bytes(), "y.bmp"), nullptr);
        EXPECT_EQ(load_member(archive.bytes(), std::string(5000, 'x').c_str()), nullptr);
        // A size that is not the size: too short, too long, and absurd.
        for (const uint32_t lie : {0u, 32u, size - 1, size + 1, 0x7FFFFFFFu, 0xFFFFFFFEu, ~0u})
            EXPECT_EQ(load_member(Archive(archive).lie(22, lie).bytes()), nullptr) << lie;
        for (const uint32_t lie : {0u, 1u, 0xFFFFFFFEu})
            EXPECT_EQ(load_member(Archive(archive).lie(18, lie).bytes()), nullptr) << lie;
        // Only the archive's comment, which says its length last, is of no interest.
        for (size_t cut = 0; cut + 4 < archive.bytes().size(); ++cut)
            EXPECT_EQ(load_member(archive.bytes().substr(0, cut)), nullptr) << cut;
    }
    EXPECT_EQ(said("zLoadBitmap",
                   [] { load_member(Archive("dir/x.bmp", std::string(33, 'x'), 9).bytes()); }),
              "dir/x.bmp is not a bmp file\n");
    EXPECT_EQ(said("zLoadBitmap",
                   [] { load_member(Archive("dir/x.bmp", std::string(32, 'x'), 9).bytes()); }),
              "");
    EXPECT_EQ(zLoadBitmap(nullptr, "x.bmp"), nullptr);
    // 64 MiB in a few kilobytes.
    const std::string bomb = make_bmp(8192, 8192, 8, std::string(size_t{8192} * 8192, '\0'));
    EXPECT_EQ(load_member(Archive("dir/x.bmp", bomb, 9).bytes()), nullptr);
}

} // namespace
