// SPDX-License-Identifier: MIT
// Pages of a text: that they are what is drawn, in any script, and end where their rules say.
#include <climits>
#include <cstring>
#include <gtest/gtest.h>

#include "support/fonts.h"
#include "support/repeats.h"

namespace {

using fonts::Canvas;
using fonts::Font;
using Strings = std::vector<std::string>;

class Pages : public testing::Test {
  protected:
    fonts::Folder folder;
};

const Strings
    latin = {"a",    "of",    "word",  "AVATAR", "4,312",     "1/2",  "-5",
             "3.14", "tea-m", "(no)",  "(12)",   "$7,000.50", "end.", "inconceivablylongwords",
             "MP-3", "é",     "x\xFF", "ﬁn"},
    arabic = {"السلام", "لا", "في", "١٢٣", "4,312", "word", "\u202Bعليكم\u202C", "(ب)"},
    japanese = {"日本", "の", "は", "東京", "4,312", "カタカナ", "。", "本を"};
const Strings gaps = {" ", " ", " ", " ", " ", ", ", ". ", "-", "\n", "\n\n", "  ", "\n\n\n "};
const Strings marks = {"\017", "\016", "\002", "\016\002", "\003"};

std::string random_text(std::mt19937 &random, bool with_marks) {
    const Strings &words = *std::array{&latin, &arabic, &japanese}[random() % 3];
    std::string text;
    for (size_t n = 5 + random() % 300; n > 0; --n) {
        if (with_marks && random() % 6 == 0) text += marks[random() % marks.size()];
        text += words[random() % words.size()];
        if (&words != &japanese || random() % 8 == 0) text += gaps[random() % gaps.size()];
    }
    return text;
}

int random_flags(std::mt19937 &random) {
    int flags = 0;
    for (const int flag : {int{ALIGN_JUSTIFY}, int{ALIGN_RIGHT}, int{VALIGN_BOTTOM},
                           int{TEXT_ROTATE}, int{TEXT_WHOLE_WORDS}, int{TEXT_WHOLE_NUMBERS},
                           int{TEXT_MARKS}, int{TEXT_NO_WIDOWS}, int{TEXT_NO_EMPTY_TOP}})
        if (random() % 3 == 0) flags |= flag;
    return random() % 10 == 0 ? flags | TEXT_DOTS : flags;
}

// Asks for a few pages at a time, as for a text that is long.
std::vector<int> paginate(const std::string &text, int w, int first_h, int h, int flags) {
    std::vector<int> starts(1);
    for (int found = 4; found == 4;) {
        int some[4];
        const int base = starts.back();
        found = Paginate(text.c_str() + base, w, base == 0 ? first_h : h, h, flags, some, 4);
        for (int i = 1; i < found; ++i) starts.push_back(base + some[i]);
    }
    return starts;
}

TEST_F(Pages, AreWhatIsDrawn) {
    std::mt19937 random(19);
    const Font bold("defaultb", 17), cjk("fireflysung", 20);
    ifont *list[] = {bold, bold, cjk};
    Canvas canvas(400, 400);
    size_t pages = 0;
    for (int round = 0; round < repeats(250, 60); ++round) {
        const Font font(random() % 3 ? "default" : "fireflysung", 8 + int(random() % 30));
        SetFont(font, BLACK);
        RegisterFontList(list, 3);
        const bool has_marks = random() % 2 == 0;
        const std::string text = random_text(random, has_marks);
        const int w = int(random() % 400 >> random() % 5), h = int(random() % 300),
                  flags = random_flags(random), first_h = int(random() % 300);
        std::vector<int> starts(text.size() + 1);
        const int count =
            Paginate(text.c_str(), w, first_h, h, flags, starts.data(), int(starts.size()));
        ASSERT_GT(count, 0);
        EXPECT_EQ(Paginate(text.c_str(), w, first_h, h, flags, nullptr, 0), count);
        starts.resize(size_t(count));
        const bool may_hold = has_marks && (flags & TEXT_MARKS) != 0;
        if (!may_hold) {
            EXPECT_EQ(paginate(text, w, first_h, h, flags), starts);
        }
        EXPECT_EQ(starts[0], 0);
        starts.push_back(int(text.size()));
        for (size_t i = 0; i < size_t(count); ++i, ++pages) {
            ASSERT_LT(starts[i], starts[i + 1]);
            const char *const page = text.c_str() + starts[i];
            const int page_h = i == 0 ? first_h : h;
            const auto end_of = [&](const char *end) { return int(end - text.c_str()); };
            ASSERT_EQ(end_of(DrawTextPage(0, 0, w, page_h, text.c_str(), starts[i], flags)),
                      starts[i + 1])
                << "page " << i << " flags " << flags << " text " << text;
            if (may_hold) continue;
            ASSERT_EQ(end_of(TextRectEnd(w, page_h, page, flags)), starts[i + 1]);
            ASSERT_EQ(end_of(DrawTextRect(0, 0, w, page_h, page, flags)), starts[i + 1]);
        }
    }
    EXPECT_GT(pages, 400u);
    RegisterFontList(nullptr, 0);
}

// Through a text and back, every page shows what it showed, whatever was drawn before.
TEST_F(Pages, BackIsWhatWasThere) {
    std::mt19937 random(23);
    const Font font("default", 18), bold("defaultb", 17), cjk("fireflysung", 20);
    ifont *list[] = {bold, bold, cjk};
    SetFont(font, BLACK);
    RegisterFontList(list, 3);
    for (int round = 0; round < repeats(40, 10); ++round) {
        const std::string text = random_text(random, true) + random_text(random, true);
        const int w = 60 + int(random() % 200), h = 60 + int(random() % 100);
        const int flags = (random_flags(random) & ~TEXT_ROTATE) | TEXT_MARKS;
        std::vector<int> starts(text.size());
        starts.resize(
            size_t(Paginate(text.c_str(), w, h, h, flags, starts.data(), int(starts.size()))));
        const auto page = [&](size_t i) {
            Canvas canvas(w, h);
            const char *const end = DrawTextPage(0, 0, w, h, text.c_str(), starts[i], flags);
            const int next = i + 1 < starts.size() ? starts[i + 1] : int(text.size());
            EXPECT_EQ(end - text.c_str(), next) << i;
            return canvas.pixels;
        };
        std::vector<decltype(Canvas(1, 1).pixels)> forth;
        for (size_t i = 0; i < starts.size(); ++i) forth.push_back(page(i));
        for (size_t i = starts.size(); i-- > 0;)
            ASSERT_TRUE(page(i) == forth[i]) << i << " flags " << flags << " text " << text;
    }
    RegisterFontList(nullptr, 0);
}

// No page is longer than what is laid out at once; a font holds beyond that.
TEST_F(Pages, AFontHoldsBehindTheLongestPage) {
    const Font regular("default", 12), bold("defaultb", 17);
    ifont *list[] = {regular, bold};
    SetFont(regular, BLACK);
    RegisterFontList(list, 2);
    std::string text = "\016\002";
    while (text.size() < 120'000) text += "words words ";
    int starts[100];
    const int count = Paginate(text.c_str(), 500, INT_MAX, 400, TEXT_MARKS, starts, 100);
    ASSERT_GT(count, 10);
    for (int i = 1; i + 1 < count; ++i)
        ASSERT_EQ(DrawTextPage(0, 0, 500, 400, text.c_str(), starts[i], TEXT_MARKS) - text.c_str(),
                  starts[i + 1]);
    RegisterFontList(nullptr, 0);
}

// Where the last line of a page may end, found without the layout: in any text.
TEST_F(Pages, EndAtWordsAndBetweenNumbers) {
    const Font font("default", 16);
    SetFont(font, BLACK);
    std::mt19937 random(4);
    const auto is_digit = [](char c) { return c >= '0' && c <= '9'; };
    const int w = StringWidth("inconceivablylongwords inconceivably");
    for (int round = 0; round < repeats(300, 100); ++round) {
        const std::string text = random_text(random, false);
        std::vector<int> starts(text.size() + 1);
        const int flags = TEXT_WHOLE_NUMBERS | (round % 2 ? TEXT_WHOLE_WORDS : 0);
        const int h = 1 + int(random() % 100);
        starts.resize(
            size_t(Paginate(text.c_str(), w, h, h, flags, starts.data(), int(starts.size()))));
        for (size_t i = 1; i < starts.size(); ++i) {
            const size_t at = size_t(starts[i]);
            const char before = text[at - 1], c = text[at], next = text.c_str()[at + 1];
            const bool is_sign = std::strchr(",./", before) != nullptr;
            EXPECT_FALSE(is_digit(before) && is_digit(c)) << text.substr(at - 5, 10);
            EXPECT_FALSE(is_digit(before) && std::strchr(",./", c) && is_digit(next));
            EXPECT_FALSE(is_sign && is_digit(text[at - 2]) && is_digit(c)) << text.substr(at - 5);
            const bool is_whole = (flags & TEXT_WHOLE_WORDS) != 0 && (before | c) > 0;
            EXPECT_FALSE(is_whole && std::isalpha(before) && std::isalpha(c))
                << text.substr(at - 5);
        }
    }
}

// Where the lines of a text begin, each laid out alone, and which are the first and the last of
// their paragraphs.
struct LinePlace {
    int begin;
    bool is_first, is_last;
};

std::vector<LinePlace> lines_of(const std::string &text, int w) {
    std::vector<LinePlace> lines;
    bool is_first = true;
    for (const char *at = text.c_str(); *at != '\0';) {
        const char *const next = TextRectEnd(w, 1, at, TEXT_WHOLE_WORDS);
        const bool is_last = *next == '\0' || next[-1] == '\n';
        lines.push_back({int(at - text.c_str()), is_first, is_last});
        is_first = is_last;
        at = next;
    }
    return lines;
}

TEST_F(Pages, LeaveNoLineAlone) {
    const Font font("default", 16);
    SetFont(font, BLACK);
    std::mt19937 random(6);
    int ends = 0;
    for (int round = 0; round < repeats(60, 20); ++round) {
        std::string text;
        while (text.size() < 4000) {
            for (size_t words = 1 + random() % 12; words > 0; --words) text += "words ";
            text.back() = '\n';
        }
        const int w = StringWidth("words words words "), count = 4 + int(random() % 20);
        const int h = count * font->linespacing;
        const std::vector<LinePlace> lines = lines_of(text, w);
        std::vector<int> starts(text.size());
        starts.resize(size_t(Paginate(text.c_str(), w, h, h, TEXT_WHOLE_WORDS | TEXT_NO_WIDOWS,
                                      starts.data(), int(starts.size()))));
        size_t line = 0;
        for (size_t i = 1; i < starts.size(); ++i, ++ends) {
            const size_t before = line;
            while (line < lines.size() && lines[line].begin < starts[i]) ++line;
            ASSERT_EQ(lines[line].begin, starts[i]) << "pages end with lines";
            EXPECT_LE(line - before, size_t(count));
            EXPECT_GE(line - before + 2, size_t(count)) << "no more is moved than it takes";
            EXPECT_TRUE(lines[line].is_first || !lines[line].is_last);
            EXPECT_TRUE(lines[line].is_first || !lines[line - 1].is_first);
        }
    }
    EXPECT_GT(ends, 100);
}

TEST_F(Pages, EndWhereTheirRulesSay) {
    const Font font("default", 20);
    SetFont(font, BLACK);
    const int line = font->linespacing, word = StringWidth("mmmm "), wide = 1000;
    const struct {
        const char *text;
        int w, lines, flags;
        Strings pages;
    } table[] = {
        {"a\nb\n\017H\ntext", wide, 3, TEXT_MARKS, {"a\nb\n", "\017H\ntext"}},
        {"a\nb\n\017H\ntext", wide, 3, 0, {"a\nb\n\017H\n", "text"}},
        {"a\n\017H\n\n\ntext", wide, 4, TEXT_MARKS, {"a\n", "\017H\n\n\ntext"}},
        {"a\n\017H\n\nb\nc", wide, 4, TEXT_MARKS, {"a\n\017H\n\nb\n", "c"}},
        {"a\n\017H\n\017I\nb", wide, 3, TEXT_MARKS, {"a\n", "\017H\n\017I\nb"}},
        {"a\nmmmm\017 mmmm\nb", word, 3, TEXT_MARKS, {"a\n", "mmmm\017 mmmm\nb"}},
        {"\017H\n\017H\n\017H\nb", wide, 2, TEXT_MARKS, {"\017H\n\017H\n", "\017H\nb"}}, // too many
        {"mmmm mmmm mmmm mmmm mmmm", word, 4, TEXT_NO_WIDOWS, {"mmmm mmmm mmmm ", "mmmm mmmm"}},
        {"mmmm mmmm mmmm mmmm mmmm", word, 4, TEXT_WHOLE_WORDS, {"mmmm mmmm mmmm mmmm ", "mmmm"}},
        {"a\nmmmm mmmm mmmm", word, 2, TEXT_NO_WIDOWS, {"a\n", "mmmm ", "mmmm mmmm"}},
        {"a\nb\nmmmm mmmm mmmm", word, 3, TEXT_NO_WIDOWS, {"a\nb\n", "mmmm mmmm mmmm"}},
        {"a\nmmmm mmmm\nb", word, 2, TEXT_NO_WIDOWS, {"a\n", "mmmm mmmm\n", "b"}},
        {"a\nb\n\n\nc", wide, 2, TEXT_NO_EMPTY_TOP, {"a\nb\n\n\n", "c"}},
        {"a\nb\n\n\nc", wide, 2, 0, {"a\nb\n", "\n\n", "c"}},
        {"a\r\n\017H\r\n\r\n\r\ntext", wide, 4, TEXT_MARKS, {"a\r\n", "\017H\r\n\r\n\r\ntext"}},
        {"a\n\017H\n \n\u00AD\001\n\016\ntext",
         wide,
         5,
         TEXT_MARKS,
         {"a\n", "\017H\n \n\u00AD\001\n\016\ntext"}},
        {"a\r\nb\r\n\r\n\r\nc", wide, 2, TEXT_NO_EMPTY_TOP, {"a\r\nb\r\n\r\n\r\n", "c"}},
        {"a\nb\n  \n\u00AD\n c", wide, 2, TEXT_NO_EMPTY_TOP, {"a\nb\n  \n\u00AD\n", " c"}},
        {"a\nb\n \r\n ", wide, 2, TEXT_NO_EMPTY_TOP, {"a\nb\n \r\n "}},
        {"a\nb\n\017\nc", wide, 2, TEXT_NO_EMPTY_TOP, {"a\nb\n", "\017\nc"}}, // as wide as a symbol
        {"a\nb\n\017\nc", wide, 2, TEXT_NO_EMPTY_TOP | TEXT_MARKS, {"a\nb\n\017\n", "c"}},
        {"mmmm mmmm", word + 12, 1, TEXT_WHOLE_WORDS, {"mmmm ", "mmmm"}},
        {"mmmm-5 4",
         StringWidth("mmmm-"),
         1,
         TEXT_WHOLE_WORDS,
         {"mmmm-", "5 4"}}, // the word's sign
        {"mmm -5 4", StringWidth("mmm -"), 1, TEXT_WHOLE_NUMBERS, {"mmm ", "-5 4"}},
        {"mm 4,312", StringWidth("mm 4,3"), 1, TEXT_WHOLE_NUMBERS, {"mm ", "4,312"}},
        {"mm \u22125", StringWidth("mm \u2212"), 1, TEXT_WHOLE_NUMBERS, {"mm ", "\u22125"}},
        {"mm 4\u00A0312", StringWidth("mm 4\u00A03"), 1, TEXT_WHOLE_NUMBERS, {"mm ", "4\u00A0312"}},
        {"mm 4\u202F312", StringWidth("mm 4\u202F"), 1, TEXT_WHOLE_NUMBERS, {"mm ", "4\u202F312"}},
        {"mm 4\u2019312", StringWidth("mm 4\u20193"), 1, TEXT_WHOLE_NUMBERS, {"mm ", "4\u2019312"}},
        {"mm\u2019s5", StringWidth("mm\u2019s"), 1, TEXT_WHOLE_NUMBERS, {"mm\u2019s", "5"}},
        {"mm 4,312", StringWidth("mm 4,3"), 2, TEXT_WHOLE_NUMBERS, {"mm 4,312"}},
        {"mm 4,312", StringWidth("mm 4...."), 1, TEXT_DOTS | TEXT_WHOLE_NUMBERS, {"mm ", "4,312"}},
    };
    for (const auto &row : table) {
        SCOPED_TRACE(testing::Message() << &row - table << ' ' << row.text);
        int starts[8] = {};
        const int h = row.lines * line,
                  count = Paginate(row.text, row.w, h, h, row.flags, starts, 8);
        const std::string text = row.text;
        Strings pages;
        for (int i = 0; i < count; ++i)
            pages.push_back(text.substr(size_t(starts[i]), i + 1 < count
                                                               ? size_t(starts[i + 1] - starts[i])
                                                               : std::string::npos));
        EXPECT_EQ(pages, row.pages);
    }
}

// A held font is that of all lines to the line feed, on the next page, too.
TEST_F(Pages, AFontHoldsToTheLineFeed) {
    const Font regular("default", 20), bold("defaultb", 20);
    ifont *list[] = {regular, bold};
    bold->color = -1;
    bold->linespacing = regular->linespacing;
    RegisterFontList(list, 2);
    const std::string words = "several words that go on for some lines, even ones in a hurry";
    const std::string text = "\016\002" + words + "\n", all = text + words;
    const int w = 150, h = 2 * regular->linespacing;
    const auto picture = [&](const char *from, int start, const Font &font, int flags) {
        Canvas canvas(w, h);
        SetFont(font, BLACK);
        DrawTextPage(0, 0, w, h, from, start, flags);
        return canvas.pixels;
    };
    for (const int flags : {TEXT_MARKS | ALIGN_JUSTIFY, TEXT_MARKS | TEXT_WHOLE_WORDS | ALIGN_RIGHT,
                            TEXT_MARKS | ALIGN_CENTER}) {
        SetFont(regular, BLACK);
        int starts[100];
        const int count = Paginate(text.c_str(), w, h, h, flags, starts, 100);
        ASSERT_GT(count, 2);
        for (int i = 0; i < count; ++i)
            EXPECT_TRUE(picture(text.c_str(), starts[i], regular, flags) ==
                        picture(text.c_str() + (i == 0 ? 2 : starts[i]), 0, bold, flags))
                << i << ' ' << flags;
        EXPECT_TRUE(picture(all.c_str(), int(text.size()), regular, flags) ==
                    picture(words.c_str(), 0, regular, flags));
    }
    RegisterFontList(nullptr, 0);
}

TEST_F(Pages, BadArgumentsAreAnsweredInKind) {
    int starts[2] = {7, 7};
    EXPECT_EQ(Paginate(nullptr, 100, 100, 100, 0, starts, 2), 0);
    EXPECT_EQ(Paginate("", 100, 100, 100, 0, starts, 2), 0);
    EXPECT_EQ(Paginate("two words", 100, 100, 100, 0, starts, -1), 0);
    EXPECT_EQ(starts[0], 7);
    EXPECT_EQ(Paginate("two\nwords", 10, 1, 1, 0, starts, 2), 1); // no font: all of it
    EXPECT_EQ(TextRectEnd(1, 1, nullptr, 0), nullptr);
    EXPECT_STREQ(TextRectEnd(1, 1, "words", 0), "");
    EXPECT_EQ(DrawTextPage(0, 0, 1, 1, nullptr, 3, 0), nullptr);
    EXPECT_STREQ(DrawTextPage(0, 0, 1, 1, "words", INT_MIN, TEXT_MARKS), "");
    EXPECT_STREQ(DrawTextPage(0, 0, 1, 1, "words", INT_MAX, TEXT_MARKS), "");
}

} // namespace
