// SPDX-License-Identifier: MIT
// Layout beside a slow model that follows the rules character by character and measures every
// prefix of a line anew: same heights, same stopping bytes, same pixels.
#include <climits>
#include <ft2build.h>
#include <gtest/gtest.h>
#include FT_FREETYPE_H

#include "support/encode.h"
#include "support/fonts.h"

namespace {

using fonts::Canvas;
using fonts::Font;
using Text = std::u16string;

struct Case {
    Text text;
    int x, y, w, h, flags;
};

class Layout : public testing::Test {
  protected:
    fonts::Folder folder;
    FT_Library library = nullptr;
    FT_Face regular_face = nullptr, bold_face = nullptr;
    std::unique_ptr<Font> base, bold, grey, cjk;
    ifont *list[3] = {};

    Layout() {
        FT_Init_FreeType(&library);
        FT_New_Face(library, (fonts::dejavu / "DejaVuSans.ttf").c_str(), 0, &regular_face);
        FT_New_Face(library, (fonts::dejavu / "DejaVuSans-Bold.ttf").c_str(), 0, &bold_face);
    }
    ~Layout() override { FT_Done_FreeType(library); }

    void use_size(int size) {
        base = std::make_unique<Font>("default", size);
        bold = std::make_unique<Font>("defaultb", size);
        grey = std::make_unique<Font>("default", size);
        cjk = std::make_unique<Font>("fireflysung", size);
        (*bold)->color = -1;
        (*grey)->color = DGRAY;
        list[0] = *base;
        list[1] = *bold;
        list[2] = *grey;
        RegisterFontList(list, 3);
        FT_Set_Pixel_Sizes(regular_face, 0, unsigned(size));
        FT_Set_Pixel_Sizes(bold_face, 0, unsigned(size));
        SetFont(*base, BLACK);
    }
};

// What the model knows of one character of a line.
struct Placed {
    ifont *font;
    int color, x, advance;
};

class Model {
  public:
    Model(const Case &test, ifont *base, ifont *bold, ifont *grey, ifont *cjk, FT_Face regular_face,
          FT_Face bold_face)
        : c_(test), text_(test.text), base_(base), bold_(bold), grey_(grey), cjk_(cjk),
          regular_face_(regular_face), bold_face_(bold_face) {
        if (c_.flags & TEXT_ROTATE) std::swap(c_.w, c_.h);
    }

    size_t end = 0;
    int height = 0;

    void run(bool draw) {
        while (end < text_.size()) {
            const bool is_last = height + 2 * base_->linespacing > c_.h;
            line(is_last, draw);
            height += base_->linespacing;
            if (is_last) break;
        }
        if (end == 0 && !text_.empty()) end = 1; // only the dots fit
        SetFont(base_, BLACK);
    }

  private:
    // Where each character of text goes, and behind the last one the width of all.
    std::vector<Placed> place(const Text &text) {
        std::vector<Placed> places;
        ifont *font = base_, *aside = nullptr;
        int color = BLACK, pen = 0;
        char16_t before = 0;
        for (const char16_t c : text) {
            int kerning = 0, advance = 0;
            if (c >= 1 && c <= 9) {
                if (c > 3) goto placed;
                font = c == 1 ? base_ : c == 2 ? bold_ : grey_;
                color = c == 3 ? DGRAY : BLACK;
                aside = nullptr;
                before = 0;
            } else if (c != 10 && c != 13 && c != 173) {
                const bool is_cjk = c == 0x4E2D || c == 0x3042;
                if (is_cjk && !aside) aside = std::exchange(font, cjk_), before = 0;
                if (c >= 32 && !is_cjk && aside) font = std::exchange(aside, nullptr), before = 0;
                SetFont(font, color);
                advance = CharWidth(c);
                if (c < 32)
                    before = 0;
                else
                    kerning = kern(font, std::exchange(before, c), c);
            }
        placed:
            places.push_back({font, color, pen + kerning, advance});
            pen += kerning + advance;
        }
        places.push_back({font, color, pen, 0});
        return places;
    }
    int kern(const ifont *font, char16_t first, char16_t second) {
        if (first == 0 || font == cjk_) return 0;
        const FT_Face face = font == bold_ ? bold_face_ : regular_face_;
        const unsigned left = FT_Get_Char_Index(face, first),
                       right = FT_Get_Char_Index(face, second);
        FT_Vector v = {0, 0};
        if (left && right) FT_Get_Kerning(face, left, right, FT_KERNING_DEFAULT, &v);
        return int(v.x >> 6);
    }
    int width(size_t begin, size_t count) { return place(text_.substr(begin, count)).back().x; }

    static bool may_break_after(char16_t c) {
        if (c == ' ') return true;
        if (c < '0') return std::string("\"'().").find(char(c)) == std::string::npos;
        return c >= '[' && c <= '_';
    }

    void line(bool is_last, bool draw) {
        const size_t begin = end;
        size_t count = 0;
        bool overflows = false;
        for (; begin + count < text_.size() && text_[begin + count] != '\n' && !overflows;
             count += !overflows) {
            char16_t &c = text_[begin + count];
            c = c == 0x02D0 ? u':' : c == 0x02CC ? u'\u200B' : c;
            overflows = count > 0 && width(begin, count + 1) > c_.w;
        }
        const bool by_newline = !overflows && begin + count < text_.size();
        if (overflows && (!is_last || (c_.flags & (ALIGN_JUSTIFY | TEXT_DOTS)) == ALIGN_JUSTIFY))
            for (size_t back = count; back > 0; --back)
                if (may_break_after(text_[begin + back - 1])) {
                    count = back;
                    break;
                }
        int line_width = width(begin, count);
        if (overflows && (c_.flags & ALIGN_RIGHT) && text_[begin + count - 1] == ' ')
            line_width = width(begin, count - 1);
        end = begin + count;
        while (end < text_.size() && text_[end] == ' ') ++end;
        if (end < text_.size() && text_[end] == '\n') ++end;
        while (count > 0 && text_[begin + count - 1] == ' ') --count;
        Text shown = text_.substr(begin, count);
        if (is_last && (c_.flags & TEXT_DOTS) && end < text_.size()) {
            const int dots = place(u"...").back().x;
            while (!shown.empty() && place(shown).back().x + dots > c_.w) shown.pop_back();
            line_width = place(shown).back().x + dots;
            if (shown.size() < count) end = begin + shown.size();
            shown += u"...";
        }
        if (draw && !shown.empty()) paint(shown, line_width, overflows && !by_newline);
    }

    void paint(const Text &shown, int line_width, bool may_justify) {
        std::vector<Placed> places = place(shown);
        const int spaces = int(std::count(shown.begin(), shown.end(), u' '));
        int extra = 0, x = c_.x, fraction = 0;
        if ((c_.flags & ALIGN_JUSTIFY) && may_justify && spaces > 0)
            extra = std::max(0, (c_.w - places.back().x) * 256 / spaces);
        else if (c_.flags & ALIGN_CENTER)
            x += (c_.w - line_width) / 2;
        else if (c_.flags & ALIGN_RIGHT)
            x += c_.w - line_width;
        const int start = x;
        for (size_t i = 0; i < shown.size(); ++i) {
            const Placed &p = places[i];
            const char16_t c = shown[i];
            const int top = c_.y + height + base_->baseline - p.font->baseline;
            SetFont(p.font, p.color);
            if (c >= 17 && c <= 23)
                DrawSymbol(x + p.x, top, c <= 21 ? c - 16 : c - 14);
            else if (c >= 32 && c != 173)
                DrawString(x + p.x, top, encode(Text(1, c)).c_str());
            if (c != ' ') continue;
            fraction += extra % 256;
            x += extra / 256 + fraction / 256;
            fraction %= 256;
        }
        const int length = x + places.back().x - start;
        if ((c_.flags & TEXT_UNDERLINE) && length > 0)
            FillArea(start, c_.y + height + base_->baseline + 1, length, 1, BLACK);
    }

    Case c_;
    Text text_;
    ifont *base_, *bold_, *grey_, *cjk_;
    FT_Face regular_face_, bold_face_;
};

Case random_case(std::mt19937 &random) {
    static const Text plain = u"abcdefg hijkl mnop AVTWaTo.,  ",
                      rare = u"-/"
                             u"\"'()[]_:"
                             u"09\u00AD\r\n\né\u042F\u0436\u0443\u02D0\u02CC\u4E2D\u3042\uFF0C\x11"
                             u"\x15\x17\x02\x03\x01\x07";
    const auto below = [&](int n) { return int(random() % unsigned(n)); };
    Case test;
    const int length = below(below(4) == 0 ? 400 : 60);
    const int rareness = 2 + below(30);
    for (int i = 0; i < length; ++i) {
        const Text &from = below(rareness) == 0 ? rare : plain;
        test.text += from[size_t(below(int(from.size())))];
    }
    test.w = below(5) == 0 ? below(30) : 40 + below(260);
    test.h = below(4) == 0 ? 2000 : below(120);
    test.x = below(20);
    test.y = below(20);
    constexpr int alignments[] = {ALIGN_LEFT, ALIGN_CENTER, ALIGN_RIGHT, ALIGN_JUSTIFY,
                                  ALIGN_JUSTIFY | ALIGN_RIGHT};
    test.flags = alignments[below(5)] | (below(3) == 0 ? TEXT_DOTS : 0) |
                 (below(4) == 0 ? TEXT_UNDERLINE : 0);
    return test;
}

TEST_F(Layout, AgreesWithTheModel) {
    std::mt19937 random(2026);
    for (int i = 0; i < 4000; ++i) {
        if (i % 500 == 0) use_size(9 + i / 100);
        const Case test = random_case(random);
        const std::string utf8 = encode(test.text);
        Model model(test, *base, *bold, *grey, *cjk, regular_face, bold_face);
        // Every fourth text is drawn, too.
        const bool draw = i % 4 == 0;
        Canvas expected(340, 300);
        model.run(draw);
        Canvas canvas(340, 300);
        SetFont(*base, BLACK);
        int height = -1;
        const char *end =
            DrawTextRect3(test.x, test.y, test.w, test.h, utf8.c_str(), test.flags, &height);
        const std::string context = "text " + std::to_string(i) + " \"" + utf8 + "\" w " +
                                    std::to_string(test.w) + " h " + std::to_string(test.h) +
                                    " flags " + std::to_string(test.flags);
        ASSERT_EQ(height, model.height) << context;
        ASSERT_EQ(end - utf8.c_str(), long(encode(test.text.substr(0, model.end)).size()))
            << context;
        ASSERT_EQ(TextRectHeightEx(test.w, test.h, utf8.c_str(), test.flags), height) << context;
        ASSERT_TRUE(!draw || canvas.pixels == expected.pixels) << context;
        ASSERT_EQ(GetFont(), *base);
        ASSERT_EQ(kvstate.current_color, BLACK);
    }
}

// Rotated text is the same picture turned by 90 degrees, with every flag.
TEST_F(Layout, RotatedTextIsTheTurnedPicture) {
    std::mt19937 random(7);
    use_size(18);
    for (int i = 0; i < 300; ++i) {
        Case test = random_case(random);
        constexpr int vertical[] = {0, VALIGN_MIDDLE, VALIGN_BOTTOM};
        test.flags |= vertical[i % 3];
        test.h = 20 + test.h % 200;
        const std::string utf8 = encode(test.text);
        Canvas upright(test.w + 1, test.h);
        int height = 0;
        const char *end = DrawTextRect3(0, 0, test.w, test.h, utf8.c_str(), test.flags, &height);
        Canvas turned(test.h, test.w + 1);
        int turned_height = 0;
        ASSERT_EQ(DrawTextRect3(0, 1, test.h, test.w, utf8.c_str(), test.flags | TEXT_ROTATE,
                                &turned_height),
                  end);
        ASSERT_EQ(turned_height, height);
        for (int y = 0; y < test.h; ++y)
            for (int x = 0; x <= test.w; ++x)
                ASSERT_EQ(turned.at(y, test.w - x), upright.at(x, y)) << utf8;
    }
}

TEST_F(Layout, VerticalAlignmentMovesTheText) {
    use_size(20);
    const int line = (*base)->linespacing;
    const struct {
        int flags, top;
    } table[] = {
        {VALIGN_TOP, 0}, {VALIGN_MIDDLE, (100 - 2 * line) / 2}, {VALIGN_BOTTOM, 100 - 2 * line}};
    for (const auto &row : table) {
        Canvas expected(80, 100);
        DrawString(0, row.top, "one");
        DrawString(0, row.top + line, "two");
        Canvas canvas(80, 100);
        DrawTextRect(0, 0, 80, 100, "one\ntwo", row.flags);
        EXPECT_EQ(canvas.pixels, expected.pixels) << row.flags;
    }
}

TEST_F(Layout, RightToLeftInterfacesMirrorAlignment) {
    use_size(20);
    const struct {
        int flags, same_as;
    } table[] = {{ALIGN_LEFT, ALIGN_RIGHT},
                 {0, ALIGN_RIGHT},
                 {ALIGN_RIGHT, ALIGN_LEFT},
                 {ALIGN_CENTER, ALIGN_CENTER}};
    for (int is_rtl : {0, 1}) {
        text::hooks.is_rtl = is_rtl ? [] { return 1; } : [] { return 0; };
        for (const auto &row : table) {
            Canvas expected(90, 30);
            DrawTextRect(0, 0, 90, 30, "text", is_rtl ? row.same_as : row.flags);
            Canvas canvas(90, 30);
            DrawTextRect(0, 0, 90, 30, "text", row.flags | TEXT_RTL_MIRROR);
            EXPECT_EQ(canvas.pixels, expected.pixels) << row.flags;
        }
    }
    text::hooks = {};
}

TEST_F(Layout, BreaksInExamples) {
    use_size(20);
    const int ls = (*base)->linespacing;
    const auto lines = [&](int w, const char *text) { return TextRectHeight(w, text, 0) / ls; };
    const int aa = StringWidth("aa"), dash = StringWidth("aa-");
    EXPECT_EQ(TextRectHeight(100, "", 0), 0);
    EXPECT_EQ(lines(100, "\n"), 1);
    EXPECT_EQ(lines(100, "a\n\nb"), 3);
    EXPECT_STREQ(DrawTextRect(0, 0, dash, 1, "aa-aa", ALIGN_JUSTIFY), "aa");
    EXPECT_STREQ(DrawTextRect(0, 0, dash + 1, 1, "aa.aaa", ALIGN_JUSTIFY), "aaa"); // by force
    EXPECT_STREQ(DrawTextRect(0, 0, aa, 1, "aaaaa", 0), "aaa");
    for (const int edge : {1, 0, -1, INT_MIN}) {
        EXPECT_STREQ(DrawTextRect(0, 0, edge, edge, "xyz", 0), "yz"); // a line, and a character
        EXPECT_EQ(TextRectHeightEx(edge, edge, "xyz", 0), ls);
        EXPECT_EQ(lines(edge, "xyz"), 3);
    }
    EXPECT_STREQ(DrawTextRect(0, 0, StringWidth("  aa"), 2 * ls, "a\n  aa b", 0),
                 "b"); // an indent is a line's own
    EXPECT_STREQ(DrawTextRect(0, 0, aa, ls, "aa   aa", 0), "aa");
    const irect r = iRect(0, 0, dash, 1, ALIGN_JUSTIFY);
    EXPECT_STREQ(DrawTextRect2(&r, "aa-aa"), "aa");
    EXPECT_EQ(DrawTextRect2(nullptr, "aa-aa")[0], 'a');
}

TEST_F(Layout, WidthsOfManyLines) {
    use_size(20);
    const char *text = "some words of a text that is long";
    const auto width = [](const char *s) { return StringWidth(s); };
    EXPECT_EQ(MinimalTextRectWidth(width("some words "), text), width("some words "));
    EXPECT_EQ(MinimalTextRectWidth(5000, "a\nlonger\nb"), width("longer"));
    EXPECT_EQ(MinimalTextRectWidth(50, ""), 0);
    EXPECT_EQ(GetMultilineStringWidth(text, 5000, nullptr, 0), width(text));
    EXPECT_EQ(GetMultilineStringWidth("wide words fit here", width("wide words f"), nullptr, 0),
              width("wide words"));
    EXPECT_EQ(GetMultilineStringWidth("incomprehensible", 50, nullptr, 0), 50);
    const int measured = GetMultilineStringWidth("a b", 5000, *bold, 0);
    EXPECT_EQ(GetFont(), *base);
    SetFont(*bold, BLACK);
    EXPECT_EQ(measured, width("a b"));
}

// The layouts of absurd arguments end, and draw nothing outside the canvas.
TEST_F(Layout, AbsurdArguments) {
    use_size(20);
    const std::string word(100000, 'w');
    EXPECT_EQ(TextRectHeightEx(0, INT_MAX, word.c_str(), 0), 100000 * (*base)->linespacing);
    std::string large;
    while (large.size() < 10'000'000) large += "words and ";
    EXPECT_GT(StringWidth(large.c_str()), 0);
    const char *end = DrawTextRect(0, 0, 560, INT_MAX, large.c_str(), ALIGN_JUSTIFY);
    EXPECT_EQ(end - large.c_str(), 100000);
    // Brackets and isolates without end.
    for (const char *unit : {"\xD7\x90(a)", "\xE2\x81\xA7\xD7\x90\xE2\x81\xA9"}) {
        std::string mixed;
        while (mixed.size() < 3'000'000) mixed += unit;
        EXPECT_GT(StringWidth(mixed.c_str()), 0);
    }
    Canvas canvas(50, 50);
    for (const int v : {INT_MIN, -1, 0, INT_MAX})
        for (const int s : {INT_MIN, 0, INT_MAX})
            for (int flags = 0; flags < 0x1000; flags += 0x3B) {
                DrawTextRect(v, s, s, v, "a b c d\n\xFF e \x11", flags);
                DrawTextRect(s, v, v, s, "\xD7\x90 ab 1", flags);
            }
    for (const int spacing : {INT_MIN, -1, 0, INT_MAX}) {
        (*base)->linespacing = spacing;
        (*base)->baseline = (*base)->height = spacing;
        SetFont(*base, BLACK);
        DrawTextRect(0, 0, 30, 30, "a b\nc \x12", VALIGN_BOTTOM | TEXT_UNDERLINE);
    }
    EXPECT_EQ(DrawTextRect(0, 0, 9, 9, nullptr, 0), nullptr);
    EXPECT_EQ(StringWidthExt("abc", -5), 0);
}

} // namespace
