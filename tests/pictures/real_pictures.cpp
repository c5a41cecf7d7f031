// SPDX-License-Identifier: MIT
// Pictures as programs ship them: each loads at any size, and looks as an independent decoder says.
#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "kelvane/pictures.h"
#include "raster/bitmap.h"
#include "support/tempdir.h"

namespace {

namespace fs = std::filesystem;
using raster::BitmapPtr;

constexpr size_t most_files = 300, every_compared = 12;

enum class Format { png, jpeg, tiff };

struct Picture {
    fs::path path;
    Format format;
};

std::vector<Picture> pictures_below(const fs::path &root) {
    std::vector<Picture> found;
    const auto options = fs::directory_options::skip_permission_denied;
    for (const fs::directory_entry &entry : fs::recursive_directory_iterator(root, options)) {
        if (!entry.is_regular_file() || entry.is_symlink()) continue;
        const std::string ending = entry.path().extension();
        if (ending == ".png") found.push_back({entry.path(), Format::png});
        if (ending == ".jpg" || ending == ".jpeg") found.push_back({entry.path(), Format::jpeg});
        if (ending == ".tif" || ending == ".tiff") found.push_back({entry.path(), Format::tiff});
    }
    std::ranges::sort(found, {}, &Picture::path);
    return found;
}

// Spread over all folders.
std::vector<Picture> some_of(const std::vector<Picture> &all) {
    std::vector<Picture> chosen;
    const size_t step = std::max<size_t>(1, all.size() / most_files);
    for (size_t i = 0; i < all.size(); ++i)
        if (i % step == 0 || all[i].format != Format::png) chosen.push_back(all[i]);
    return chosen;
}

BitmapPtr load(const Picture &p, int w, int h, int proportional) {
    const char *path = p.path.c_str();
    switch (p.format) {
    case Format::png:
        return BitmapPtr(LoadPNGStretch(path, w, h, proportional, 0));
    case Format::jpeg:
        return BitmapPtr(LoadJPEG(path, w, h, 100, 100, proportional));
    case Format::tiff:
        return BitmapPtr(LoadTIFF(path, w, h, 100, 100, proportional));
    }
    return nullptr;
}

std::string output_of(const std::string &command) {
    std::string out;
    std::FILE *pipe = popen((command + " 2>/dev/null").c_str(), "r");
    char buffer[65536];
    for (size_t n; (n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;) out.append(buffer, n);
    pclose(pipe);
    return out;
}

std::string quoted(const fs::path &path) {
    return "'" + path.string() + "'";
}

struct PngHeader {
    bool interlaced, upright, keyed;
};

PngHeader png_header(const fs::path &path) {
    const std::string file = read_file(path);
    return {file[28] != 0, file[25] == 4 || file[25] == 6, file.find("tRNS") < file.find("IDAT")};
}

// The level of a pixel that another decoder gives as R, G, B and opacity.
int level(const Picture &p, const PngHeader &png, const uint8_t *rgba) {
    const int r = rgba[0], g = rgba[1], b = rgba[2], gone = 255 - rgba[3];
    if (p.format != Format::png) return (r * 77 + g * 151 + b * 28) >> 12;
    const int grey =
        png.upright ? (r * 77 + g * 151 + b * 28) >> 8 : (r * 28 + g * 151 + b * 77) >> 8;
    const int white = grey + gone - grey * gone / 255;
    return std::clamp(white * 127 / 100 - 24, 0, 255) >> 4;
}

// The share of pixels that have the level, and of those that are next to it.
struct Likeness {
    double equal, near;
};

Likeness likeness(const Picture &p, const ibitmap &bm) {
    const std::string rgba = output_of("convert-im6.q16 " + quoted(p.path) + " -depth 8 rgba:-");
    const size_t count = size_t{bm.width} * bm.height;
    if (rgba.size() != count * 4) return {0, 0};
    const PngHeader png = p.format == Format::png ? png_header(p.path) : PngHeader{};
    size_t equal = 0, near = 0;
    for (size_t i = 0; i < count; ++i) {
        const size_t x = i % bm.width, y = i / bm.width;
        const int ours = bm.data[y * bm.scanline + x / 2] >> (x % 2 ? 0 : 4) & 15;
        const int theirs = level(p, png, reinterpret_cast<const uint8_t *>(&rgba[i * 4]));
        equal += ours == theirs;
        near += std::abs(ours - theirs) <= 1;
    }
    return {static_cast<double>(equal) / static_cast<double>(count),
            static_cast<double>(near) / static_cast<double>(count)};
}

void expect_likeness(const Picture &p) {
    const BitmapPtr bm = load(p, -1, -1, 0);
    ASSERT_NE(bm, nullptr) << p.path;
    const Likeness like = likeness(p, *bm);
    // A JPEG decoder that goes through colours rounds otherwise, and cuts off colours that are too
    // strong.
    EXPECT_GE(like.equal, p.format == Format::jpeg ? 0.9 : 1) << p.path;
    EXPECT_GE(like.near, p.format == Format::jpeg ? 0.98 : 1) << p.path;
}

bool is_refused(const Picture &p) {
    return p.format == Format::png && png_header(p.path).interlaced;
}

TEST(RealPictures, LoadAtAnySize) {
    const std::vector<Picture> all = some_of(pictures_below("/usr/share"));
    ASSERT_GE(all.size(), 100u) << "scripts/setup installs packages with pictures";
    for (const Picture &p : all) {
        const BitmapPtr own = load(p, -1, -1, 0);
        ASSERT_EQ(own == nullptr, is_refused(p)) << p.path;
        if (own == nullptr) continue;
        EXPECT_EQ(load(p, 100, 80, 1)->width, 100) << p.path;
        EXPECT_EQ(load(p, 600, 800, 0)->height, 800) << p.path;
        SetLoadImageFlags(LOAD_FIT_WIDTH | LOAD_RIGHT);
        EXPECT_LE(load(p, 333, 777, 1)->height, 777) << p.path;
    }
}

TEST(RealPictures, LookAsAnotherDecoderSays) {
    const std::vector<Picture> all = some_of(pictures_below("/usr/share"));
    for (size_t i = 0; i < all.size(); ++i)
        if ((i % every_compared == 0 || all[i].format != Format::png) && !is_refused(all[i]))
            expect_likeness(all[i]);
}

// There are few JPEG and TIFF files on a system: another program writes some.
TEST(RealPictures, LookAsTheProgramMeantThatWroteThem) {
    const TempDir folder;
    const std::vector<Picture> all = some_of(pictures_below("/usr/share"));
    for (size_t i = 0; i < all.size(); i += 40) {
        const Picture jpeg{folder.path() / "a.jpg", Format::jpeg},
            tiff{folder.path() / "a.tiff", Format::tiff};
        const std::string from = "convert-im6.q16 " + quoted(all[i].path) +
                                 " -background white -flatten -strip -depth 8 -type TrueColor ";
        output_of(from + quoted(jpeg.path));
        output_of(from + "-compress lzw " + quoted(tiff.path));
        expect_likeness(jpeg);
        expect_likeness(tiff);
    }
}

} // namespace
