// SPDX-License-Identifier: MIT
// Glyphs on the canvas: blending, clipping, both depths, symbols; a dozen pictures, bit by bit; and
// that a page is measured and drawn again without FreeType.
#include <dlfcn.h>
#include <ft2build.h>
#include <gtest/gtest.h>
#include <png.h>
#include FT_FREETYPE_H

#include "support/fonts.h"
#include "text/current.h"

namespace {

int freetype_calls = 0;

// The library's calls of FreeType pass through the functions below, which count them.
template <class Function, class... Arguments>
auto count_and_call(const char *name, Function *, Arguments... arguments) {
    ++freetype_calls;
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name))(arguments...);
}

} // namespace

#define COUNT_AND_CALL(name, ...) return count_and_call(#name, name, __VA_ARGS__)

extern "C" {
FT_Error FT_Load_Glyph(FT_Face face, FT_UInt index, FT_Int32 flags) {
    COUNT_AND_CALL(FT_Load_Glyph, face, index, flags);
}
FT_UInt FT_Get_Char_Index(FT_Face face, FT_ULong c) {
    COUNT_AND_CALL(FT_Get_Char_Index, face, c);
}
FT_Error FT_Get_Kerning(FT_Face face, FT_UInt left, FT_UInt right, FT_UInt mode, FT_Vector *out) {
    COUNT_AND_CALL(FT_Get_Kerning, face, left, right, mode, out);
}
FT_Error FT_Set_Pixel_Sizes(FT_Face face, FT_UInt width, FT_UInt height) {
    COUNT_AND_CALL(FT_Set_Pixel_Sizes, face, width, height);
}
FT_Error FT_Render_Glyph(FT_GlyphSlot slot, FT_Render_Mode mode) {
    COUNT_AND_CALL(FT_Render_Glyph, slot, mode);
}
}

namespace {

using fonts::Canvas;
using fonts::Font;

constexpr const char *mixed = "Wavy AV \xC3\xA9\xC3\xBC \xD0\x96\xD1\x83\xD0\xBA \xD7\x90\xD7\x91 "
                              "\xE4\xB8\xAD\xE6\x96\x87 \x11\x02 bold \x01 and 12.";

class Drawing : public testing::Test {
  protected:
    fonts::Folder folder;
};

TEST_F(Drawing, APageIsMeasuredAgainWithoutFreeType) {
    const Font font("default", 24), bold("defaultb", 24);
    ifont *list[] = {font, bold};
    RegisterFontList(list, 2);
    SetFont(font, BLACK);
    std::string page;
    for (int i = 0; i < 40; ++i) page += std::string(mixed) + (i % 7 == 0 ? "\n" : " - ");
    Canvas canvas(600, 800);
    const auto measure = [&] {
        return TextRectHeight(560, page.c_str(), ALIGN_JUSTIFY) + StringWidth(page.c_str()) +
               MinimalTextRectWidth(300, page.c_str());
    };
    freetype_calls = 0;
    const int first = measure();
    EXPECT_GT(freetype_calls, 20);
    freetype_calls = 0;
    EXPECT_EQ(measure(), first);
    EXPECT_EQ(freetype_calls, 0);

    const auto draw = [&] { DrawTextRect(20, 20, 560, 760, page.c_str(), ALIGN_JUSTIFY); };
    draw();
    freetype_calls = 0;
    draw();
    EXPECT_EQ(freetype_calls, 0);
    // Another font of the same face at another size, and back.
    const Font other("default", 30);
    SetFont(other, BLACK);
    StringWidth("other");
    SetFont(font, BLACK);
    freetype_calls = 0;
    EXPECT_EQ(measure(), first);
    EXPECT_EQ(freetype_calls, 0);
}

// More distinct characters than the tables number, in a face that kerns: all is remembered.
TEST_F(Drawing, ManyDistinctCharactersAreRememberedToo) {
    const Font font("default", 20);
    SetFont(font, BLACK);
    std::string text;
    for (int c = 0xC0; c < 0x590; ++c)
        if (c != 0x2CC && c != 0x2D0) text += {char(0xC0 | c >> 6), char(0x80 | (c & 63)), 'V'};
    const int width = StringWidth(text.c_str());
    freetype_calls = 0;
    EXPECT_EQ(StringWidth(text.c_str()), width);
    EXPECT_EQ(freetype_calls, 0);
}

// Black text on white is the coverage itself; any colours follow from it, on both depths.
TEST_F(Drawing, ColoursAreBlendedByCoverage) {
    const Font font("default", 30);
    SetFont(font, BLACK);
    Canvas coverage(100, 40);
    DrawString(3, 2, "Sage");
    ASSERT_GT(std::count(coverage.pixels.begin(), coverage.pixels.end(), 0), 50);
    const int papers[] = {0xFFFFFF, 0x000000, 0x3080C0}, inks[] = {0x000000, 0xFFFFFF, 0xE01040};
    for (const int depth : {8, 24})
        for (const int paper : papers)
            for (const int ink : inks) {
                Canvas canvas(100, 40, depth);
                FillArea(0, 0, 100, 40, paper);
                const std::vector<uint8_t> before = canvas.pixels;
                Canvas full(1, 1, depth);
                DrawPixel(0, 0, ink);
                kvstate.canvas = &canvas.canvas;
                SetFont(nullptr, ink);
                DrawString(3, 2, "Sage");
                const int channels = depth / 8;
                for (size_t i = 0; i < canvas.pixels.size(); ++i) {
                    const int a = 255 - coverage.pixels[i / size_t(channels)];
                    const int to = full.pixels[i % size_t(channels)];
                    ASSERT_EQ(canvas.pixels[i], (before[i] * (255 - a) + to * a + 127) / 255);
                }
                kvstate.canvas = &coverage.canvas; // what full and canvas will restore
            }
}

TEST_F(Drawing, OnlyPixelsInsideTheClipChange) {
    const Font font("default", 24);
    SetFont(font, BLACK);
    std::mt19937 random(3);
    for (int i = 0; i < 300; ++i) {
        const int depth = i % 2 == 0 ? 8 : 24;
        const auto draw = [&] {
            const int x = int(random() % 120) - 40, y = int(random() % 100) - 30;
            i % 3 == 0 ? DrawStringR(x, y + 40, "Clipped W") : DrawString(x, y, "Clipped W\x13");
        };
        const int cx = int(random() % 60) - 5, cy = int(random() % 40) - 5, cw = int(random() % 50),
                  ch = int(random() % 40);
        const std::mt19937 same = random;
        Canvas whole(70, 50, depth);
        draw();
        random = same;
        Canvas clipped(70, 50, depth);
        SetClip(cx, cy, cw, ch);
        draw();
        for (int y = 0; y < 50; ++y)
            for (int x = 0; x < 70; ++x) {
                const bool inside = x >= cx && x < cx + cw && y >= cy && y < cy + ch;
                ASSERT_EQ(clipped.at(x, y), inside ? whole.at(x, y) : 255) << i;
            }
    }
}

TEST_F(Drawing, MonochromeFontsDrawOnlyInk) {
    const Font font("default", 24, 0);
    SetFont(font, 0x808080);
    Canvas canvas(300, 40);
    DrawString(0, 0, "No greys \x11\x15");
    for (const uint8_t pixel : canvas.pixels) ASSERT_TRUE(pixel == 255 || pixel == 128);
    EXPECT_GT(std::count(canvas.pixels.begin(), canvas.pixels.end(), 128), 300);
}

TEST_F(Drawing, NothingIsDrawnWithoutACanvasOrFont) {
    const Font font("default", 24);
    SetFont(font, BLACK);
    DrawString(0, 0, "x\x11");
    DrawSymbol(0, 0, 1);
    Canvas canvas(30, 30);
    DrawSymbol(0, 0, 6);
    CloseFont(nullptr);
    text::restore_font(nullptr, BLACK);
    DrawString(0, 0, "x");
    DrawSymbol(0, 0, 1);
    EXPECT_EQ(canvas.pixels, std::vector<uint8_t>(900, 255));
}

// Ten thousand glyphs of many sizes: memory stays bounded, and what was dropped is drawn again.
TEST_F(Drawing, CachesAreBounded) {
    Canvas canvas(400, 400);
    std::string text;
    for (int c = 0x100; c < 0x250; ++c) text += {char(0xC0 | c >> 6), char(0x80 | (c & 63))};
    std::vector<uint8_t> first;
    for (int size = 10; size < 400; size += 3) {
        const Font font("default", size);
        SetFont(font, BLACK);
        DrawTextRect(0, 0, 400, 400, text.c_str(), 0);
        if (size == 10) first = canvas.pixels;
        ClearScreen();
    }
    const Font font("default", 10);
    SetFont(font, BLACK);
    DrawTextRect(0, 0, 400, 400, text.c_str(), 0);
    EXPECT_EQ(canvas.pixels, first);
}

struct Picture {
    const char *name;
    int w, h;
    const char *font;
    int size, aa;
    const char *text;
    int flags;
};

const Picture pictures[] = {
    {"kerning", 260, 30, "default", 24, 1, "AVATAR Wolf To. fly", 0},
    {"mono", 220, 30, "default", 20, 0, "Crisp without greys", 0},
    {"bold-italic", 200, 26, "defaultbi", 18, 1, "Bold and oblique", ALIGN_CENTER},
    {"justified", 200, 80, "default", 15, 1,
     "Every line of a paragraph is full, but not its last one.", ALIGN_JUSTIFY},
    {"dots", 150, 36, "default", 15, 1, "A text that does not fit into these two lines at all",
     TEXT_DOTS},
    {"right", 150, 40, "default", 15, 1, "Lines that end at the right edge", ALIGN_RIGHT},
    {"underlined", 150, 60, "default", 15, 1, "centred and under lines",
     ALIGN_CENTER | VALIGN_MIDDLE | TEXT_UNDERLINE},
    {"rotated", 50, 120, "default", 16, 1, "Upwards, two lines", TEXT_ROTATE | VALIGN_MIDDLE},
    {"russian", 200, 50, "default", 17, 1, "Съешь ещё этих мягких французских булок", 0},
    {"hebrew", 200, 50, "default", 17, 1, "בְּרֵאשִׁית (1 + 2) English סוף", ALIGN_RIGHT},
    {"arabic", 200, 60, "default", 20, 1, "السلام عليكم، ١٢٣ لا بأس", ALIGN_RIGHT},
    {"cjk", 200, 50, "default", 18, 1, "中文とかな。 and Latin", 0},
    {"symbols", 220, 30, "default", 24, 1, "\x11 \x12 \x13 \x14 \x15 \x16 \x17", 0},
    {"combining", 120, 26, "default", 18, 1, "e\u0301 a\u0308 n\u0303 ǆ ﬁ", 0},
};

std::vector<uint8_t> read_grey_png(const std::filesystem::path &file, unsigned w, unsigned h) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&image, file.c_str()) || image.width != w ||
        image.height != h)
        return {};
    image.format = PNG_FORMAT_GRAY;
    std::vector<uint8_t> pixels(w * h);
    png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr);
    return pixels;
}

void write_grey_png(const std::filesystem::path &file, const Canvas &canvas) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = png_uint_32(canvas.canvas.width);
    image.height = png_uint_32(canvas.canvas.height);
    image.format = PNG_FORMAT_GRAY;
    png_image_write_to_file(&image, file.c_str(), 0, canvas.pixels.data(), 0, nullptr);
}

// A picture is changed by looking at the new one and copying it, never by this test.
TEST_F(Drawing, PicturesAreAsExpected) {
    const auto expected = std::filesystem::path(SOURCE_DIR "/tests/unit/text_pictures");
    const auto drawn = std::filesystem::temp_directory_path() / "kelvane-text-pictures";
    for (const Picture &picture : pictures) {
        const Font font(picture.font, picture.size, picture.aa);
        SetFont(font, BLACK);
        Canvas canvas(picture.w, picture.h);
        DrawTextRect(0, 0, picture.w, picture.h, picture.text, picture.flags);
        const std::string file = std::string(picture.name) + ".png";
        if (read_grey_png(expected / file, unsigned(picture.w), unsigned(picture.h)) ==
            canvas.pixels)
            continue;
        std::filesystem::create_directories(drawn);
        write_grey_png(drawn / file, canvas);
        ADD_FAILURE() << drawn / file << " differs from " << expected / file
                      << ", which FreeType 2.12.1 drew; this is " << FREETYPE_MAJOR << '.'
                      << FREETYPE_MINOR << '.' << FREETYPE_PATCH;
    }
}

} // namespace
