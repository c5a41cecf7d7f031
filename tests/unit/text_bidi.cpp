// SPDX-License-Identifier: MIT
// Right-to-left text: the order of lines, joined letters, and UTF-8 that is not well formed.
#include <cstdlib>
#include <cstring>
#include <fribidi/fribidi.h>
#include <gtest/gtest.h>
#include <random>

#include "ground/utf8.h"
#include "support/fonts.h"
#include "text/bidi.h"

namespace {

using Units = std::u16string;

const uint16_t *units(const Units &text) {
    return reinterpret_cast<const uint16_t *>(text.data());
}

Units converted(const Units &text, int direction) {
    auto *convert = direction == 2 ? rtl_convert_r : rtl_convert_l;
    unsigned short *copy = convert(units(text), int(text.size()));
    Units out(copy, copy + text.size());
    std::free(copy);
    return out;
}

// The order of Latin letters in which capitals stand for Hebrew ones.
Units hebrew(const std::string &text) {
    Units out;
    for (const char c : text)
        out += c >= 'A' && c <= 'Z' ? char16_t(0x05D0 + c - 'A') : char16_t(c);
    return out;
}

TEST(Bidi, LinesAreReordered) {
    const struct {
        const char *line;
        int direction; // of the text
        const char *shown;
    } table[] = {
        {"plain text", 0, "plain text"},     {"one ABC two", 1, "one CBA two"},
        {"ABC one DEF", 2, "FED one CBA"},   {"ABC 123 DEF", 2, "FED 123 CBA"},
        {"ABC 1.5, 2-3", 2, "2-3 ,1.5 CBA"}, {"ABC (D) [E]", 2, "[E] (D) CBA"},
        {"a (ABC) b", 1, "a (CBA) b"},       {"ABC a+b DEF.", 2, ".FED a+b CBA"},
        {"a ABC 12", 1, "a 12 CBA"},         {"ABC", 2, "CBA"},
    };
    for (const auto &row : table) {
        const Units line = hebrew(row.line);
        EXPECT_EQ(rtl_direction(units(line), int(line.size())), row.direction) << row.line;
        EXPECT_EQ(converted(line, row.direction), hebrew(row.shown)) << row.line;
    }
    EXPECT_EQ(rtl_direction(nullptr, 3), 0);
    EXPECT_EQ(rtl_convert_l(nullptr, 3), nullptr);
}

// Random lines, beside FriBidi's own whole conversion, which would also join letters.
TEST(Bidi, OrderIsThatOfFriBidi) {
    const Units alphabet = u"aZ 1,.-+()[]%/\u05D0\u05D1\u0608\u061B\u0661\u0662\u060C\u200E"
                           u"\u200F\u202B\u202C\u2067\u2069\u00E9\t";
    std::mt19937 random(11);
    for (int i = 0; i < 5000; ++i) {
        Units line;
        for (size_t n = random() % 24; n > 0; --n) line += alphabet[random() % alphabet.size()];
        const int size = int(line.size());
        for (const int direction : {1, 2}) {
            FriBidiParType base = direction == 2 ? FRIBIDI_PAR_RTL : FRIBIDI_PAR_LTR;
            std::vector<FriBidiChar> in(line.begin(), line.end()), out(line.size() + 1);
            ASSERT_TRUE(line.empty() || fribidi_log2vis(in.data(), size, &base, out.data(), nullptr,
                                                        nullptr, nullptr));
            out.resize(line.size());
            ASSERT_EQ(converted(line, direction), Units(out.begin(), out.end()));
        }
        // A line of which nothing runs right to left stays as it is.
        if (rtl_direction(units(line), size) == 0) {
            ASSERT_EQ(converted(line, 1), line);
        }
    }
}

TEST(Bidi, ArabicLettersAreJoined) {
    const struct {
        Units text, shaped;
    } table[] = {
        {u"\u0628", u"\uFE8F"},                         // alone
        {u"\u0628\u0628\u0628", u"\uFE91\uFE92\uFE90"}, // initial, medial, final
        {u"\u0628\u0627\u0628", u"\uFE91\uFE8E\uFE8F"}, // alef joins to the right only
        {u"\u0644\u0627", u"\uFEFF\uFEFB"},             // lam-alef
        {u"\u0628\u0644\u0627", u"\uFE91\uFEFF\uFEFC"}, // after a joining letter
        {u"\u067E\u06CC", u"\uFB58\uFBFD"},             // Persian peh, yeh
        {u"\u0628\n\u0628", u"\uFE8F\n\uFE8F"},         // lines do not join
        {u"latin \u05D0", u"latin \u05D0"},
    };
    for (auto [text, shaped] : table) {
        arabic_shape(reinterpret_cast<unsigned short *>(text.data()), int(text.size()));
        EXPECT_EQ(text, shaped);
    }
    arabic_shape(nullptr, 4);
}

TEST(Bidi, CharactersKeepTheirFontWhenTheyMove) {
    using text::Direction, text::visual_line;
    const auto shown = [](const Units &line, Direction direction) {
        const std::vector<uint16_t> visual = visual_line(units(line), int(line.size()), direction);
        return Units(visual.begin(), visual.end());
    };
    // The code 2 stands before its letters again, and the line's own font (0) comes back.
    EXPECT_EQ(shown(hebrew("AB\2CD"), Direction::right_to_left),
              hebrew("\2DC") + Units(1, 0) + hebrew("BA"));
    EXPECT_EQ(shown(hebrew("x\1AB\2y"), Direction::left_to_right), hebrew("x\1BA\2y"));
}

// A bracket that is drawn mirrored was not measured: its entry makes the tables of the layout,
// which goes on in the middle of the text, grow. At which number of letters they move is their
// affair.
TEST(Bidi, LayoutGoesOnAfterAMirroredBracket) {
    const fonts::Folder folder;
    const fonts::Canvas canvas(120, 400);
    const std::string letters[] = {"\u05D0", "\u05D1", "\u05D2", "\u05D3", "\u05D4", "\u05D5"};
    for (int count = 1; count <= 6; ++count) {
        std::string word, text = "(";
        for (int i = 0; i < count; ++i) word += letters[i];
        for (int i = 0; i < 20; ++i) text += word + ' ';
        const fonts::Font font("default", 20 + count);
        SetFont(font, BLACK);
        int height = 0;
        DrawTextRect3(0, 0, 120, 99999, text.c_str(), 0, &height);
        EXPECT_EQ(height, TextRectHeight(120, text.c_str(), 0));
    }
}

TEST(Utf8, BrokenTextBecomesReplacementCharacters) {
    const struct {
        const char *bytes;
        Units text;
    } table[] = {
        {"a\xC3\xA9\xE2\x82\xAC", u"aé€"},
        {"\xEF\xBF\xBF\xED\x9F\xBF\xEE\x80\x80", u"\uFFFF\uD7FF\uE000"},
        {"\xF0\x9F\x98\x80x", u"\uFFFDx"},                 // beyond 16 bits
        {"\x80\xBFx", u"\uFFFD\uFFFDx"},                   // stray continuations
        {"\xC0\x80\xC1\xBF", u"\uFFFD\uFFFD\uFFFD\uFFFD"}, // overlong
        {"\xE0\x80\x80", u"\uFFFD\uFFFD\uFFFD"},
        {"\xF0\x80\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"}, // a surrogate
        {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"\xFF\xFE", u"\uFFFD\uFFFD"},
        {"\xE2\x82x\xE2\x82", u"\uFFFDx\uFFFD"}, // cut short: one, and nothing is lost
        {"\xF0\x9F\x98", u"\uFFFD"},
        {"\xC3", u"\uFFFD"},
        {"12345678\xC3\xA9\xC3(87654321\xE4\xB8\xAD", u"12345678é\uFFFD(87654321中"},
    };
    for (const auto &row : table) {
        const size_t bytes = std::strlen(row.bytes);
        uint16_t out[40];
        const char *s = row.bytes;
        const size_t count = utf8::decode(s, s + bytes, out, 40);
        EXPECT_EQ(Units(out, out + count), row.text) << row.bytes;
        EXPECT_EQ(s, row.bytes + bytes);
        EXPECT_EQ(utf8::skip(row.bytes, row.bytes + bytes, count), s);
        s = row.bytes;
        EXPECT_EQ(utf8::next(s, s + bytes), row.text[0]);
        EXPECT_EQ(utf8::skip(row.bytes, row.bytes + bytes, 1), s);
    }
}

// Long texts are decoded in blocks, to the same characters as one by one.
TEST(Utf8, BlocksGiveWhatSingleCharactersGive) {
    constexpr const char *pieces[] = {
        "a",    " ",    "\xD0\xB6", "\xC2\xA0",        "\xDF\xBF", "\xE2\x80\x99",
        "\xD1", "\x80", "\xC1\xBF", "\xF0\x9F\x98\x80"};
    std::mt19937 random(5);
    for (int round = 0; round < 2000; ++round) {
        // Mostly letters of two bytes and spaces; the rest is rarer in some texts than in others.
        const size_t strangers = random() % 3 * 100;
        std::string text;
        while (text.size() < random() % 120)
            text +=
                pieces[random() % 400 < strangers ? random() % std::size(pieces) : random() % 4];
        const char *const end = text.data() + text.size();
        Units expected;
        for (const char *s = text.data(); s < end;) expected += utf8::next(s, end);
        const size_t room = random() % 2 != 0 ? expected.size() : random() % 100;
        std::vector<uint16_t> out(room);
        const char *s = text.data();
        const size_t count = utf8::decode(s, end, out.data(), room);
        EXPECT_EQ(Units(out.begin(), out.begin() + static_cast<ptrdiff_t>(count)),
                  expected.substr(0, room));
        EXPECT_EQ(s, utf8::skip(text.data(), end, count));
    }
}

// Every way to read text reads broken text the same way.
TEST(Utf8, BrokenTextIsReadTheSameWayEverywhere) {
    const fonts::Folder folder;
    const fonts::Font font("default", 20);
    SetFont(font, BLACK);
    constexpr const char *broken = "a\xFF\xE0\x80z", *replaced = "a\uFFFD\uFFFD\uFFFDz";
    EXPECT_EQ(StringWidth(broken), StringWidth(replaced));
    EXPECT_EQ(StringWidthExt(broken, 3), StringWidthExt(replaced, 7));
    EXPECT_EQ(MinimalTextRectWidth(500, broken), MinimalTextRectWidth(500, replaced));
    EXPECT_STREQ(DrawTextRect(0, 0, StringWidthExt(replaced, 7), 1, broken, 0), "\x80z");
    const auto draw = [](const char *text, void (*draw_string)(int, int, const char *)) {
        fonts::Canvas canvas(99, 99);
        draw_string(5, 60, text);
        return canvas.pixels;
    };
    for (const auto draw_string : {DrawString, DrawStringR})
        EXPECT_EQ(draw(broken, draw_string), draw(replaced, draw_string));
}

} // namespace
