// SPDX-License-Identifier: MIT
// Long texts page by page, as a reader goes through a book, beside one layout of the whole; and
// what is read piece by piece beside the whole text.
#include <climits>
#include <cstring>
#include <gtest/gtest.h>

#include "support/encode.h"
#include "support/fonts.h"
#include "text/reader.h"
#include "text/units.h"

namespace {

using fonts::Canvas;
using fonts::Font;

// Words and gaps in random order, then an end in the middle of a character.
std::string book(const std::vector<std::string> &words, const std::vector<std::string> &gaps,
                 int count) {
    std::mt19937 random(static_cast<unsigned>(count));
    std::string text = words[0];
    while (count-- > 0) {
        // Mostly single spaces.
        text += random() % 4 != 0 ? " " : gaps[random() % gaps.size()];
        text += words[random() % words.size()];
    }
    return text + "\xE4\xB8";
}

const std::vector<std::string> gaps = {", ", ". ", "\n", "\n   ", "   ", " \n\n", "-", "\r\n"};

// All of a direction: so every page has the direction of the whole.
const std::string left_to_right =
    book({"words", "of", "AVATAR", "\u0442\u0435\u043A\u0441\u0442", "caf\u00E9", "(1.5)",
          "\u4E2D\u6587\u3068\u304B\u306A\u3002", "\xFF\x80", "\xF0\x9F\x98\x80", "\u2019tis",
          "soft\u00ADhyphen", "\x11", "inconceivablylongwordsthatarecut"},
         gaps, 4000);
const std::string right_to_left =
    book({"\u0627\u0644\u0633\u0644\u0627\u0645", "\u0639\u0644\u064A\u0643\u0645",
          "\u05D1\u05B0\u05E8\u05B5\u05D0", "(\u05D0)", "12", "\u0661\u0662\u0663", "\u0644\u0627"},
         gaps, 4000);

class Paging : public testing::Test {
  protected:
    fonts::Folder folder;
};

// With ALIGN_JUSTIFY a page ends as a line within it does: so pages one below the other are the
// whole text.
TEST_F(Paging, PagesAreTheWholeText) {
    const struct {
        const std::string &text;
        int w, h, size;
    } table[] = {{left_to_right, 300, 400, 20},
                 {left_to_right, 120, 30, 11},
                 {right_to_left, 300, 400, 20},
                 {right_to_left, 150, 90, 13},
                 {left_to_right, 40, 1, 16}};
    for (const auto &row : table) {
        const Font font("default", row.size);
        SetFont(font, BLACK);
        const int height = TextRectHeightEx(row.w, INT_MAX, row.text.c_str(), ALIGN_JUSTIFY);
        Canvas whole(row.w, height), pages(row.w, height);
        int used = 0, top = 0;
        kvstate.canvas = &whole.canvas;
        EXPECT_STREQ(DrawTextRect3(0, 0, row.w, INT_MAX, row.text.c_str(), ALIGN_JUSTIFY, &used),
                     "");
        EXPECT_EQ(used, height);
        kvstate.canvas = &pages.canvas;
        for (const char *at = row.text.c_str(); *at != '\0'; top += used) {
            const char *next = DrawTextRect3(0, top, row.w, row.h, at, ALIGN_JUSTIFY, &used);
            ASSERT_GT(next, at);
            at = next;
        }
        EXPECT_EQ(top, height);
        EXPECT_TRUE(pages.pixels == whole.pixels) << row.w << ' ' << row.h;
        kvstate.canvas = &whole.canvas; // what `pages` restores
    }
}

// A page that begins with a number or a dash runs as the first letter of the text does, however far
// it is: here behind a page of numbers. Behind a hundred thousand it is not seen.
TEST_F(Paging, TheDirectionIsThatOfTheFirstLetter) {
    const Font font("default", 20);
    SetFont(font, BLACK);
    const auto page = [](const std::string &text) {
        Canvas canvas(300, 200);
        DrawTextRect(0, 0, 300, 200, text.c_str(), 0);
        return canvas.pixels;
    };
    std::string numbers;
    while (numbers.size() < 99990) numbers += "12 34 \u0665 ";
    std::string many = numbers;
    while (many.size() < 200000) many += "56 ";
    EXPECT_EQ(page(numbers + "word \u05D0"), page(numbers));
    EXPECT_NE(page(numbers + "\u05D0 word"), page(numbers));
    EXPECT_EQ(page(many + "\u05D0"), page(numbers));
}

// Only the dots fit on the line: they stand for its first character, so that the next page goes on.
TEST_F(Paging, EveryPageTakesACharacter) {
    const Font font("default", 20);
    SetFont(font, BLACK);
    for (const int flags : {0, int{TEXT_DOTS}, TEXT_DOTS | ALIGN_JUSTIFY | VALIGN_BOTTOM})
        for (const int w : {INT_MIN, -1, 0, 1, StringWidth("..."), StringWidth("....")})
            for (const int h : {INT_MIN, 0, 1, 40}) {
                int pages = 0;
                for (const char *at = "words \u05D0\n \n\xE4"; *at != '\0' && pages < 20; ++pages)
                    at = DrawTextRect(0, 0, w, h, at, flags);
                EXPECT_LT(pages, 20) << w << ' ' << h << ' ' << flags;
            }
}

std::u16string random_text(std::mt19937 &random) {
    // Letters that join and that do not, marks, numbers, formatting, line ends.
    static const std::u16string
        usual = u"ab 1.\u05D0\u0628\u0644\u0627\u0633\u0628\u064E\u0662 ",
        rare = u"\n\u200D\u200C\u200E\u200F\u061C\u0640\u1820\u180A\uA840\uFFF9("
               u"]\u4E2D\u302A\uFE8D\u0001",
        marks = u"\u202A\u202B\u202C\u202D\u202E\u2066\u2067\u2068\u2069";
    const size_t rareness = 2 + random() % 60, mark_rareness = 20 << random() % 12;
    const bool has_spaces = random() % 3 != 0;
    std::u16string text;
    for (size_t n = random() % 3000; n > 0; --n) {
        const std::u16string &from = random() % mark_rareness == 0 ? marks
                                     : random() % rareness == 0    ? rare
                                                                   : usual;
        const char16_t c = from[random() % from.size()];
        text += c == ' ' && !has_spaces ? u'\u0628' : c;
    }
    return text;
}

std::string hexadecimal(const std::string &utf8) {
    std::string out;
    const char *s = utf8.c_str(), *const end = s + std::strlen(s);
    while (s < end) {
        char number[8];
        std::snprintf(number, sizeof number, " %X", utf8::next(s, end));
        out += number;
    }
    return out;
}

TEST_F(Paging, PiecesJoinAsTheWholeTextDoes) {
    std::mt19937 random(8);
    int waits = 0;
    for (int round = 0; round < 500; ++round) {
        std::string utf8 = encode(random_text(random));
        if (!utf8.empty() && round % 2 == 0) utf8[random() % utf8.size()] = char(0xE4);
        text::Units whole(utf8.c_str());
        arabic_shape(whole.data(), whole.size());
        text::Reader reader(utf8.c_str(), INT_MAX);
        std::vector<uint16_t> read; // as it was when it was read: it stays
        while (reader.read()) {
            waits += reader.size() % 256 != 0;
            read.insert(read.end(), reader.data() + read.size(), reader.data() + reader.size());
        }
        ASSERT_EQ(read.size(), size_t(whole.size()));
        const auto differs = std::mismatch(read.begin(), read.end(), whole.data()).first;
        ASSERT_TRUE(differs == read.end())
            << std::hex << *differs << " for " << whole.data()[differs - read.begin()] << std::dec
            << " at " << differs - read.begin() << " of:" << hexadecimal(utf8);
        const int at = static_cast<int>(random() % (read.size() + 1));
        const char *end = utf8.c_str() + std::strlen(utf8.c_str());
        ASSERT_EQ(reader.address(at), utf8::skip(utf8.c_str(), end, static_cast<size_t>(at)));
        const auto direction = text::direction_of(whole.data(), whole.size());
        ASSERT_EQ(reader.direction() == text::Direction::right_to_left,
                  direction == text::Direction::right_to_left);
        text::Reader fresh(utf8.c_str(), INT_MAX);
        ASSERT_EQ(fresh.direction(), reader.direction()); // before anything is read
    }
    EXPECT_GT(waits, 400);
}

} // namespace
