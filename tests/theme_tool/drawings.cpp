// SPDX-License-Identifier: MIT
// Descriptions of pictures: what kelvane-theme draws of them, and what is wrong with them it tells.
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "kelvane/bitmaps.h"
#include "kelvane/theme.h"
#include "support/tempdir.h"
#include "tool.h"

namespace {

namespace fs = std::filesystem;

// The levels of a picture's rows, a digit a pixel; '.' where it has a hole.
std::vector<std::string> levels(const char *name) {
    ibitmap *bm = GetResource(name, nullptr);
    std::vector<std::string> rows;
    for (int y = 0; bm && y < bm->height; ++y) {
        std::string row;
        for (int x = 0; x < bm->width; ++x) {
            const int level = bm->data[y * bm->scanline + x / 2] >> (x % 2 ? 0 : 4) & 15;
            const uint8_t *mask = bm->data + bm->height * bm->scanline;
            const bool is_there = (bm->depth & BITMAP_MASK) == 0 ||
                                  (mask[y * ((bm->width + 7) / 8) + x / 8] & 0x80 >> x % 8);
            row += is_there ? "0123456789ABCDEF"[level] : '.';
        }
        rows.push_back(row);
    }
    std::free(bm);
    return rows;
}

TEST(Drawings, AreSharpAtEveryScale) {
    const TempDir place;
    fs::create_directories("system/themes");
    write_file("f/drawings/a.txt", "# glyphs\nglyph bar; weight 2; line 8 16 24 16\n"
                                   "glyph spot; color paper; disc 16 16 16\n");
    write_file("f/drawings/b.txt",
               "stroke 4 square\npicture bar 8 4 none; icon bar\n"
               "picture corner 6 4 white; frame 0 1 99 99 1\n"
               "picture other like corner mirrored\npicture under like corner flipped\n"
               "picture grey 3 2 black; color 0xDDDDDD; box 1 0 1 2; color paper; box 0 0 1 1\n"
               "picture spot 4 4 black; tile; icon spot 2 2 1 inverse\n");
    using Rows = std::vector<std::string>;
    const struct {
        int percent;
        const char *name;
        Rows rows;
    } cases[] = {
        {100, "bar", {"........", "........", "...000..", "........"}},
        {100, "corner", {"FFFFFF", "000000", "0FFFFF", "0FFFFF"}},
        {100, "other", {"FFFFFF", "000000", "FFFFF0", "FFFFF0"}},
        {100, "under", {"0FFFFF", "0FFFFF", "000000", "FFFFFF"}},
        {100, "grey", {"0D0", "0D0"}},
        {150,
         "corner",
         {"FFFFFFFFF", "FFFFFFFFF", "000000000", "000000000", "00FFFFFFF", "00FFFFFFF"}},
        {150, "grey", {"00D00", "00D00", "00D00"}},
    };
    for (const auto &c : cases) {
        ASSERT_EQ(
            run("pack --scale " + std::to_string(c.percent) + " f system/themes/t.tqt").output, "");
        OpenTheme("t");
        EXPECT_EQ(levels(c.name), c.rows) << c.name;
    }
    OpenTheme("none");
}

TEST(Drawings, HaveTheirMistakesTold) {
    const TempDir place;
    const std::pair<const char *, const char *> statements[] = {
        {"line 1 2 3", "write line"},
        {"line 1 2 3 x", "write line"},
        {"ring 1 1 5000", "write ring"},
        {"icon", "write icon"},
        {"icon gone", "no glyph gone"},
        {"icon g 1 2", "write icon"},
        {"color 0xGG0000", "write color"},
        {"circle 1 1 1", "write glyph, picture"},
        {"stroke 0 round", "write stroke"},
        {"glyph", "write glyph"},
        {"glyph g", nullptr},
        {"glyph g", "is there already"},
        {"glyph h; icon g", "write icon"},
        {"picture a 5 5", "write picture"},
        {"picture a 0 5 none", "write picture"},
        {"picture a 513 5 none", "write picture"},
        {"picture a 5 5 pink", "write picture"},
        {"picture b like gone mirrored", "no picture gone"},
        {"picture c like p turned", "write picture"},
        {"picture d like b flipped", "no picture b"},
        {"picture a:8 5 5 none", nullptr}, // names are looked at when all else is right
    };
    std::string text = "picture p 5 5 none\n";
    for (const auto &[statement, message] : statements) text += std::string(statement) + "\n";
    write_file("f/drawings/d.txt", text);
    const Result packed = run("pack f t.tqt");
    EXPECT_EQ(packed.status, 1);
    size_t expected = 0;
    for (size_t i = 0; i < std::size(statements); ++i) {
        if (!statements[i].second) continue;
        ++expected;
        const std::string where = "f/drawings/d.txt:" + std::to_string(i + 2) + ": ";
        const size_t at = packed.output.find(where);
        ASSERT_NE(at, packed.output.npos) << where << statements[i].first << "\n" << packed.output;
        const std::string line = packed.output.substr(at, packed.output.find('\n', at) - at);
        EXPECT_NE(line.find(statements[i].second), line.npos) << line;
    }
    EXPECT_EQ(lines(packed.output).size(), expected) << packed.output;
    write_file("f/drawings/d.txt", "picture x 5 5 none\npicture X 5 5 none\npicture a:8 5 5 none");
    const std::string names = run("pack f t.tqt").output;
    EXPECT_NE(names.find("d.txt:2: has the name of"), names.npos) << names;
    EXPECT_NE(names.find("d.txt:3: a name has no colon"), names.npos) << names;
}

} // namespace
