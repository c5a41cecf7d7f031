// SPDX-License-Identifier: MIT
// Which file a name opens, what a font tells of itself, which font is current, and bad fonts.
#include <climits>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "internal.h"
#include "kelvane/hash.h"
#include "support/fonts.h"
#include "text/face.h"

namespace {

using fonts::Font;

std::string errors_of(const std::function<void()> &action) {
    testing::internal::CaptureStderr();
    action();
    return testing::internal::GetCapturedStderr();
}

// What follows the process and function in a message.
std::string message_of(const std::function<void()> &action) {
    const std::string errors = errors_of(action);
    const size_t start = errors.find(')');
    return start == errors.npos ? errors : errors.substr(start + 1);
}

class Fonts : public testing::Test {
  protected:
    fonts::Folder folder;
};

TEST_F(Fonts, NamesOpenFiles) {
    fonts::link(fonts::dejavu / "DejaVuSerif.ttf", "Plain");
    fonts::link(fonts::dejavu / "DejaVuSansMono.ttf", "Big.TTF");
    fonts::link(fonts::dejavu / "DejaVuSerif-Bold.ttf", "Both.ttf");
    fonts::link(fonts::dejavu / "DejaVuSansMono-Bold.ttf", "Both");
    const std::string absolute = (fonts::dejavu / "DejaVuSerif.ttf").string();
    std::snprintf(kvstate.fontb, sizeof kvstate.fontb, "DejaVuSans-BoldOblique");
    std::snprintf(kvstate.fonti, sizeof kvstate.fonti, "DefaultB"); // names nothing
    const struct {
        const char *name, *opened_as, *family;
        int isbold, isitalic;
    } table[] = {
        {"default", "DejaVuSans", "DejaVu Sans", 0, 0},
        {"DEFAULT", "DejaVuSans", "DejaVu Sans", 0, 0},
        {"defaultb", "DejaVuSans-BoldOblique", "DejaVu Sans", 1, 1},
        {"DefaultI", "DejaVuSans-Oblique", "DejaVu Sans", 0, 1},
        {"defaultbi", "DejaVuSans-BoldOblique", "DejaVu Sans", 1, 1},
        {"Plain", "Plain", "DejaVu Serif", 0, 0},
        {"Big", "Big", "DejaVu Sans Mono", 0, 0},
        {"Both", "Both", "DejaVu Sans Mono", 1, 0}, // the bare name comes first
        {"Plain:0", "Plain:0", "DejaVu Serif", 0, 0},
        {"Plain:", "Plain:", "DejaVu Serif", 0, 0},
        {"Plain:3", "Plain:3", "DejaVu Sans", 0, 0},   // it has no face 3: the default font
        {"Plain:12", "Plain:12", "DejaVu Sans", 0, 0}, // two digits are part of the name
        {"missing", "missing", "DejaVu Sans", 0, 0},
        {absolute.c_str(), absolute.c_str(), "DejaVu Serif", 0, 0},
    };
    for (const auto &row : table) {
        const Font font(row.name, 20);
        ASSERT_NE(font.font, nullptr) << row.name;
        EXPECT_STREQ(font->name, row.opened_as);
        EXPECT_STREQ(font->family, row.family) << row.name;
        EXPECT_EQ(font->isbold, row.isbold) << row.name;
        EXPECT_EQ(font->isitalic, row.isitalic) << row.name;
    }
}

// A collection of two fonts, whose table offsets count from the start of the file.
std::string collection(std::string first, std::string second) {
    const auto number = [](size_t value) {
        return std::string{char(value >> 24), char(value >> 16), char(value >> 8), char(value)};
    };
    const auto move = [&](std::string &font, size_t by) {
        for (size_t i = 0; i < size_t(uint8_t(font[5])); ++i) {
            size_t offset = 0;
            for (size_t k = 0; k < 4; ++k) offset = offset << 8 | uint8_t(font[20 + 16 * i + k]);
            font.replace(20 + 16 * i, 4, number(offset + by));
        }
    };
    constexpr size_t header = 20;
    first.resize((first.size() + 3) / 4 * 4);
    move(first, header);
    move(second, header + first.size());
    return "ttcf" + number(0x10000) + number(2) + number(header) + number(header + first.size()) +
           first + second;
}

TEST_F(Fonts, AFaceOfACollectionIsChosenByItsNumber) {
    write_file("system/fonts/two.TTF", collection(read_file(fonts::dejavu / "DejaVuSerif.ttf"),
                                                  read_file(fonts::dejavu / "DejaVuSansMono.ttf")));
    std::filesystem::copy_file("system/fonts/two.TTF", "system/fonts/other.ttc");
    const struct {
        const char *name, *family;
    } table[] = {{"two", "DejaVu Serif"},       {"two:0", "DejaVu Serif"},
                 {"two:1", "DejaVu Sans Mono"}, {"other.ttc:1", "DejaVu Sans Mono"},
                 {"two:2", "DejaVu Sans"}, // no such face: the default font
                 {"two:x", "DejaVu Serif"}};
    for (const auto &row : table) EXPECT_STREQ(Font(row.name, 20)->family, row.family) << row.name;
    std::vector<std::string> names;
    for (char **name = EnumFontsEx(); *name != nullptr; ++name) names.push_back(*name);
    EXPECT_EQ(std::count(names.begin(), names.end(), "other.ttc:1"), 1);
    EXPECT_EQ(std::count(names.begin(), names.end(), "other.ttc:2"), 0);
}

TEST_F(Fonts, AFaceOfBitmapsTakesItsNearestSize) {
    const auto seeds = std::filesystem::path(SOURCE_DIR "/fuzz/corpus/font_file");
    fonts::link(std::filesystem::canonical(seeds / "tiny.bdf"), "tiny");
    for (const int size : {3, 8, 300}) {
        const Font font("tiny", size);
        EXPECT_EQ(font->size, size);
        EXPECT_EQ(font->height, 8);
        EXPECT_EQ(font->baseline, 6);
        SetFont(font, BLACK);
        EXPECT_EQ(CharWidth('a'), 6);
        EXPECT_EQ(CharWidth('W'), 7);
        fonts::Canvas canvas(8, 8);
        DrawString(0, 0, "a");
        EXPECT_EQ(canvas.at(1, 2), 0); // .###
        EXPECT_EQ(canvas.at(0, 2), 255);
        EXPECT_EQ(canvas.at(3, 5), 255); // .##.#
        EXPECT_EQ(canvas.at(2, 5), 0);
    }
}

TEST_F(Fonts, AFontTellsItsMeasures) {
    const Font font("default", 24);
    EXPECT_EQ(font->size, 24);
    EXPECT_EQ(font->aa, 1);
    EXPECT_EQ(font->charset, 10); // all of Unicode
    EXPECT_EQ(font->color, BLACK);
    EXPECT_EQ(font->height, 28);
    EXPECT_EQ(font->linespacing, font->height);
    EXPECT_EQ(font->baseline, 23);
    EXPECT_EQ(Font("default", 24, 0)->aa, 0);
    kvstate.antialiasing = 0;
    EXPECT_EQ(Font("default", 24)->aa, 0);
}

TEST_F(Fonts, FontsOfOneNameShareAFace) {
    const Font small("default", 10);
    {
        const Font large("DejaVuSans", 40), other("DejaVuSans-Bold", 40);
        EXPECT_EQ(small->fdata, large->fdata);
        EXPECT_NE(small->fdata, other->fdata);
        EXPECT_EQ(hash_count(kvstate.fonthash), 2);
        EXPECT_EQ(kvstate.fonthash->prime, 71);
    }
    SetFont(small, -1);
    EXPECT_EQ(CharWidth('A'), 7);
}

TEST_F(Fonts, CharactersThatAFaceLacksComeFromTheDefaultOfItsStyle) {
    // The characters of the Droid face are Chinese and Japanese; its Hebrew is the default font's.
    constexpr unsigned short alef = 0x05D0;
    const Font lacking("fireflysung", 24), regular("default", 24), bold("defaultb", 24);
    SetFont(regular, -1);
    const int expected = CharWidth(alef);
    SetFont(bold, -1);
    EXPECT_NE(CharWidth(alef), expected);
    SetFont(lacking, -1);
    EXPECT_EQ(CharWidth(alef), expected);

    using text::Face;
    const Font both("defaultbi", 24), italic("defaulti", 24);
    const auto face = [](const Font &font) { return static_cast<Face *>(font->fdata); };
    EXPECT_EQ(&face(both)->fallback(), face(bold));
    EXPECT_EQ(&face(italic)->fallback(), face(italic));
    EXPECT_EQ(&face(lacking)->fallback(), face(regular));
}

TEST_F(Fonts, TheCurrentFontStaysUntilItIsChangedOrClosed) {
    const Font first("default", 20);
    first->color = DGRAY;
    SetFont(first, -1);
    EXPECT_EQ(kvstate.current_color, DGRAY);
    SetFont(nullptr, LGRAY);
    EXPECT_EQ(GetFont(), first);
    EXPECT_EQ(kvstate.current_color, LGRAY);
    SetFont(nullptr, -1);
    EXPECT_EQ(kvstate.current_color, DGRAY);
    CloseFont(OpenFont("defaulti", 20, 1));
    EXPECT_EQ(GetFont(), first) << "another one was closed";
    {
        const Font second("defaultb", 20);
        SetFont(second, BLACK);
        EXPECT_EQ(GetFont(), second);
        EXPECT_NE(kvstate.current_face, nullptr);
    }
    EXPECT_EQ(GetFont(), nullptr);
    EXPECT_EQ(kvstate.current_face, nullptr);
    EXPECT_EQ(kvstate.cw_cache, nullptr);
    EXPECT_EQ(CharWidth('x'), 10);
    EXPECT_EQ(StringWidth("x\xD7\x90"), 30); // by bytes
}

TEST_F(Fonts, NullHasNoFace) {
    const Font font("Null", 20);
    EXPECT_STREQ(font->name, "Null");
    EXPECT_STREQ(font->family, "Null");
    EXPECT_EQ(font->fdata, nullptr);
    SetFont(font, -1);
    fonts::Canvas canvas(50, 50);
    DrawString(0, 0, "nothing");
    EXPECT_EQ(canvas.pixels, std::vector<uint8_t>(2500, 255));
    EXPECT_EQ(CharWidth('x'), 10);
    EXPECT_EQ(StringWidthExt("abcdef", 4), 40);
    EXPECT_EQ(OpenFont(nullptr, 20, 1), nullptr);
}

TEST_F(Fonts, StrengthWidensByHalfASixtyFourthOnEachSide) {
    const Font font("default", 24);
    SetFont(font, -1);
    const int before = CharWidth('m'), wide = CharWidth('w');
    SetTextStrength(64);
    EXPECT_EQ(CharWidth('m'), before + 2);
    SetTextStrength(15);
    EXPECT_EQ(CharWidth('m'), before);
    SetTextStrength(17); // (n * 64 + 34 + 31) >> 6
    EXPECT_EQ(CharWidth('m'), before + 1);
    SetTextStrength(0);
    EXPECT_EQ(CharWidth('w'), wide);
}

TEST_F(Fonts, ADeviceWithoutFontsIsToldHowToMakeThemOnce) {
    const auto hints = [](const char *name) {
        const std::string errors = errors_of([&] { CloseFont(OpenFont(name, 20, 1)); });
        return errors.find("kelvane-device FOLDER PROGRAM") != errors.npos;
    };
    EXPECT_FALSE(hints("missing")); // the default font stands in
    std::filesystem::remove_all("system/fonts");
    text::reset();
    EXPECT_FALSE(hints("/no/such/file.ttf"));
    EXPECT_TRUE(hints("default"));
    EXPECT_FALSE(hints("default"));
}

// Whoever opened one would wait for ever.
TEST_F(Fonts, PipesAreNoFonts) {
    ASSERT_EQ(mkfifo("system/fonts/pipe.ttf", 0600), 0);
    ASSERT_EQ(mkfifo("system/fonts/pipe.ttc", 0600), 0);
    std::filesystem::create_directory("system/fonts/folder.ttc");
    EXPECT_STREQ(Font("pipe", 20)->family, "DejaVu Sans");
    EXPECT_STREQ(Font("pipe.ttc:1", 20)->family, "DejaVu Sans");
    EXPECT_EQ(OpenFont(std::filesystem::absolute("system/fonts/pipe.ttc").c_str(), 20, 1), nullptr);
    EXPECT_STREQ(EnumFontsEx()[0], "DejaVuSans.ttf");
}

// A copy of the default font in which each pair of its kerning table moves by as much as can be.
std::string kerning_wildly(std::string font, char high, char low) {
    const size_t entry = font.find("kern");
    size_t table = 0;
    for (size_t i = 0; i < 4; ++i) table = table << 8 | uint8_t(font[entry + 8 + i]);
    const size_t pairs = size_t(uint8_t(font[table + 10])) << 8 | uint8_t(font[table + 11]);
    for (size_t i = 0; i < pairs; ++i) {
        font[table + 18 + 6 * i + 4] = high;
        font[table + 18 + 6 * i + 5] = low;
    }
    return font;
}

TEST_F(Fonts, WidthsBeyondThirtyTwoBitsAreRight) {
    const std::string font_bytes = read_file(fonts::dejavu / "DejaVuSans.ttf");
    write_file("system/fonts/left.ttf", kerning_wildly(font_bytes, '\x80', 0));
    write_file("system/fonts/right.ttf", kerning_wildly(font_bytes, '\x7F', '\xFF'));
    std::string pairs, symbols(99999, '\x11');
    while (pairs.size() < 99999) pairs += "AV";
    fonts::Canvas canvas(20, 20);
    const auto lines_of = [](const Font &font, const std::string &text) {
        SetFont(font, BLACK);
        DrawTextRect(0, 0, 10, 30, text.c_str(), ALIGN_CENTER | TEXT_UNDERLINE);
        DrawTextRect(0, 0, INT_MAX, 30, text.c_str(), ALIGN_JUSTIFY | TEXT_ROTATE);
        return TextRectHeightEx(INT_MAX, INT_MAX, text.c_str(), ALIGN_RIGHT) / font->linespacing;
    };
    const Font left("left", 4000), right("right", 4000);
    SetFont(left, BLACK);
    ASSERT_LT(StringWidth("AV"), -30000);
    EXPECT_EQ(StringWidth(pairs.c_str()), INT_MIN);
    EXPECT_EQ(lines_of(left, pairs), 1);
    EXPECT_EQ(lines_of(right, pairs), 2);
    const Font large("default", 20);
    large->baseline = INT_MAX; // as an application may leave it
    EXPECT_EQ(lines_of(large, symbols), 99999);
}

TEST_F(Fonts, BadFilesGiveTheirMessage) {
    std::filesystem::remove_all("system/fonts");
    errors_of([] { OpenFont("default", 20, 1); }); // says once more than the others
    std::filesystem::create_directories("system/fonts/folder.ttf");
    write_file("system/fonts/empty.ttf", "");
    write_file("system/fonts/text.ttf", "this is no font");
    for (const char *name : {"folder", "empty", "text", "missing", "", ":", "/", "/dev/zero"}) {
        ifont *font = nullptr;
        EXPECT_EQ(message_of([&] { font = OpenFont(name, 20, 1); }),
                  std::string("FT_New_Face: cannot open ") + name + "\n");
        EXPECT_EQ(font, nullptr) << name;
    }
    fonts::link(fonts::dejavu / "DejaVuSerif.ttf", "Serif.ttf");
    EXPECT_EQ(message_of([] { CloseFont(OpenFont("Serif", 20, 1)); }), "cannot set zface\n");
    // Without any font of its own directory, a font from elsewhere says once that one is missing.
    std::filesystem::remove_all("system/fonts");
    const Font elsewhere((fonts::dejavu / "DejaVuSerif.ttf").c_str(), 20);
    SetFont(elsewhere, -1);
    EXPECT_EQ(message_of([] { StringWidth("\u4E2D\u6587\u4E2D"); }),
              "FT_New_Face: cannot open fireflysung\n");
}

TEST_F(Fonts, SizesOutOfRangeGiveTheirMessage) {
    for (const int size : {0, -1, INT_MIN, INT_MAX, 16385}) {
        ifont *font = nullptr;
        EXPECT_EQ(message_of([&] { font = OpenFont("default", size, 1); }),
                  "OpenFont: cannot set char size " + std::to_string(size) + " for DejaVuSans\n");
        ASSERT_NE(font, nullptr);
        EXPECT_EQ(font->height, std::clamp<int64_t>(int64_t{size} + size / 4, INT_MIN, INT_MAX));
        EXPECT_EQ(font->baseline, size);
        SetFont(font, -1);
        EXPECT_EQ(CharWidth('x'), 0);
        fonts::Canvas canvas(8, 8);
        DrawTextRect(0, 0, 8, 8, "some text\nof \x13 lines", TEXT_UNDERLINE | ALIGN_RIGHT);
        CloseFont(font);
    }
    const Font large("default", 10000);
    EXPECT_GT(large->height, 10000);
    SetFont(large, -1);
    fonts::Canvas canvas(100, 100);
    DrawString(0, -6000, "Wide"); // larger than any screen: left out
    EXPECT_EQ(canvas.at(50, 50), 255);
}

TEST_F(Fonts, BitmapFacesTakeTheirNearestSize) {
    write_file("system/fonts/bitmap.bdf",
               "STARTFONT 2.1\nFONT -a-b-medium-r-normal--8-80-75-75-c-80-iso10646-1\n"
               "SIZE 8 75 75\nFONTBOUNDINGBOX 8 8 0 -2\nSTARTPROPERTIES 2\nFONT_ASCENT 6\n"
               "FONT_DESCENT 2\nENDPROPERTIES\nCHARS 1\nSTARTCHAR A\nENCODING 65\n"
               "SWIDTH 1000 0\nDWIDTH 7 0\nBBX 8 8 0 -2\nBITMAP\nFF\nFF\nFF\nFF\nFF\nFF\n"
               "FF\nFF\nENDCHAR\nENDFONT\n");
    for (const int size : {8, 30, 0, INT_MIN, INT_MAX}) {
        const Font font("bitmap.bdf", size);
        ASSERT_NE(font.font, nullptr);
        EXPECT_EQ(font->height, 8) << size;
        EXPECT_EQ(font->baseline, 6);
        SetFont(font, -1);
        EXPECT_EQ(CharWidth('A'), 7);
    }
}

// Every prefix, and the font with runs of its bytes overwritten.
TEST_F(Fonts, DamagedFilesDoNoHarm) {
    const std::string whole = read_file(fonts::dejavu / "DejaVuSansMono-Bold.ttf");
    fonts::Canvas canvas(60, 40);
    const auto draw_with = [&](const std::string &bytes) {
        write_file("system/fonts/damaged.ttf", bytes);
        const Font font("damaged", 20);
        ASSERT_NE(font.font, nullptr);
        SetFont(font, -1);
        DrawTextRect(0, 0, 60, 40, "Wag \xC3\xA9\xD0\x96 fi", 0);
    };
    testing::internal::CaptureStderr();
    for (size_t size = 1; size < whole.size(); size += 1 + size / 3)
        draw_with(whole.substr(0, size));
    std::mt19937 random(1);
    for (int i = 0; i < 60; ++i) {
        std::string bytes = whole;
        // Half of the damage goes to the tables at the start.
        const size_t end = i % 2 == 0 ? 400 : bytes.size() - 8;
        bytes.replace(random() % end, 1 + random() % 8,
                      std::string(1 + random() % 8, char(random())));
        draw_with(bytes);
    }
    testing::internal::GetCapturedStderr();
}

TEST_F(Fonts, ListIsSortedWithoutExtensions) {
    std::filesystem::remove_all("system/fonts");
    for (const char *name : {"b.ttf", "A-long.ttf", "a.TTF", "C.otf", "Readme.txt", "ab.ttc"})
        write_file(std::string("system/fonts/") + name, "");
    std::string names;
    for (char **name = EnumFonts(); *name != nullptr; ++name) names += std::string(*name) + ' ';
    EXPECT_EQ(names, "a.TTF A-long.ttf ab.ttc b.ttf C.otf ");
    EXPECT_EQ(kvstate.fontcount, 5);
    EXPECT_STREQ(EnumFontsEx()[2], "ab.ttc");
    std::filesystem::remove_all("system/fonts");
    EXPECT_EQ(*EnumFonts(), nullptr);
}

} // namespace
