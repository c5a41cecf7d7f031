// SPDX-License-Identifier: MIT
// Files of layouts, their loading, and the ways of five keys through them.
#include <algorithm>
#include <climits>
#include <gtest/gtest.h>
#include <map>
#include <queue>
#include <set>
#include <sstream>

#include "ground/letter_case.h"
#include "ground/utf8.h"
#include "internal.h"
#include "kelvane/config.h"
#include "kelvane/keyboard.h"
#include "keyboard/kinds.h"
#include "keyboard/layout.h"
#include "keyboard/load.h"
#include "keyboard/selection.h"
#include "support/encode.h"
#include "support/tempdir.h"

using namespace keyboard;

namespace {

namespace fs = std::filesystem;

const fs::path keyboards = fs::path(SOURCE_DIR) / "data/keyboard";

// The rows of a block, "." for no key, codes below 32 as "<n>".
std::string picture(const Block &block) {
    std::string out;
    for (const RowSpan &span : block_rows) {
        for (size_t i = span.first; i < span.first + span.width; ++i) {
            const uint16_t c = block[i];
            if (c == 0)
                out += ".";
            else if (c < 32)
                out += "<" + std::to_string(c) + ">";
            else
                out += encode(std::u16string(1, static_cast<char16_t>(c)));
        }
        out += "\n";
    }
    return out;
}

// "code@column,row+width" of each key.
std::string picture(const TouchLayout &layout) {
    std::ostringstream out;
    for (const TouchKey &k : layout.keys)
        out << (k.code > 32 ? encode(std::u16string(1, static_cast<char16_t>(k.code)))
                            : std::to_string(k.code))
            << "@" << k.pos.x << "," << k.pos.y << "+" << k.pos.w << " ";
    return out.str();
}

std::vector<Language> sections(std::string_view text) {
    std::vector<Language> languages;
    read_sections(text, languages);
    return languages;
}

const std::string empty_blocks(12, '\n');

TouchLayout touch(const std::string &rows) {
    const auto read = sections("XX:\n" + empty_blocks + rows);
    return read.empty() ? TouchLayout{} : read[0].touch_lower;
}

TEST(KeyboardLayouts, RowsOfABlockAreCentredAndCut) {
    const auto read = sections("ab name \t\r\n"
                               "123\r\n"
                               "  qw er  \n"
                               "abcdefghijkl\n"
                               "\n"
                               "\x02\xD0\x96\xFF\n"
                               "abcdefghijklmno\n"
                               "x\n");
    ASSERT_EQ(read.size(), 1U);
    EXPECT_EQ(read[0].code, "ab");
    EXPECT_EQ(picture(read[0].lower), "....123....\n"
                                      "...qw.er...\n"
                                      "abcdefghi\n"
                                      ".........\n"
                                      "...<2>\u0416\uFFFD...\n"
                                      "abcdefghijk\n");
    EXPECT_EQ(picture(read[0].upper).substr(0, 12), ".....x.....\n");
    EXPECT_TRUE(read[0].touch_lower.empty()) << "the header has no colon";
    EXPECT_TRUE(read[0].has_shift());
}

TEST(KeyboardLayouts, HeadersTellWhereSectionsEnd) {
    const struct {
        std::string text;
        std::vector<std::string> codes;
    } cases[] = {{"", {}},
                 {" \r\nEN\n", {}},
                 {"\xEF\xBB\xBF"
                  "EN\n",
                  {"EN"}},
                 {"E\n", {"E"}},
                 {"\u0416\u0417 x\n", {"\u0416\u0417"}},
                 {"EN\n" + empty_blocks + "RU\n" + empty_blocks, {"EN", "RU"}},
                 {"EN\n" + empty_blocks + "\nRU\n" + empty_blocks, {"EN"}},
                 {"A1:\n" + empty_blocks + "q\n--\nQ\n--\n1\n--\nB\n", {"A1", "B"}},
                 {"A\n" + empty_blocks + "B\n" + empty_blocks + "C\n" + empty_blocks + "D\n",
                  {"A", "B", "C"}},
                 {std::string(70, 'x') + ":\n" + empty_blocks + "y\n", {"xx", "y"}},
                 {std::string("E\0N:\n", 5), {"E"}}};
    for (const auto &c : cases) {
        std::vector<std::string> codes;
        for (const Language &l : sections(c.text)) codes.push_back(l.code);
        EXPECT_EQ(codes, c.codes) << c.text;
    }
}

TEST(KeyboardLayouts, LongLinesEndBeforeTheCharacterThatIsCut) {
    const auto block = sections("A\n" + std::string(254, ' ') + "\u0416\n");
    EXPECT_EQ(picture(block[0].lower).substr(0, 12), "...........\n");
}

TEST(KeyboardLayouts, TokensOfTouchRows) {
    const struct {
        const char *rows;
        const char *keys;
        int columns;
    } cases[] = {{"q w sp:5 bs:2", "q@0,0+1 w@1,0+1 32@2,0+5 8@7,0+2 ", 9},
                 {"spmspsp", "5@0,0+1 32@1,0+1 32@2,0+1 ", 3},
                 {"shclnuna lg ok", "2@0,0+1 3@1,0+1 4@2,0+1 1@4,0+1 10@5,0+1 ", 6},
                 {"cn:3 a\tb", "a@3,0+1 b@4,0+1 ", 5},
                 {"a:b : ::2 :0", "a@0,0+1 :@1,0+1 b@2,0+1 :@3,0+1 :@4,0+2 :@6,0+1 0@7,0+1 ", 8},
                 {"s p s\u0416:9 x:9", "s@0,0+1 p@1,0+1 s@2,0+1 \u0416@3,0+9 x@12,0+4 ", 16},
                 {"a\n--\nb\n", "a@0,0+1 ", 1},
                 {"--\n--\na\nb\n--", "a@0,0+1 b@0,1+1 ", 1},
                 {"a\n\nb\nc\n--\n", "a@0,0+1 ", 1},
                 {"\nb\n--\nA\n--\n", "", 0},
                 {"1\n2\n3\n4\n5\n6\n7\n8\n9\n--\n",
                  "1@0,0+1 2@0,1+1 3@0,2+1 4@0,3+1 5@0,4+1 6@0,5+1 7@0,6+1 ", 1}};
    for (const auto &c : cases) {
        const TouchLayout layout = touch(c.rows);
        EXPECT_EQ(picture(layout), c.keys) << c.rows;
        EXPECT_EQ(layout.columns, c.columns) << c.rows;
        for (int row = 0; row < 9; ++row)
            for (int column = -1; column < 18; ++column) {
                int expected = -1;
                for (size_t i = 0; i < layout.keys.size(); ++i) {
                    const irect &p = layout.keys[i].pos;
                    if (row == p.y && column >= p.x && column < p.x + p.w)
                        expected = static_cast<int>(i);
                }
                EXPECT_EQ(layout.key_at(column, row), expected) << c.rows;
            }
    }
}

TEST(KeyboardLayouts, KeysAfterThe84thAreDropped) {
    std::string rows;
    for (int i = 0; i < 7; ++i) rows += "a b c d e f g h i j k l m n o q\n";
    const TouchLayout layout = touch(rows + "--\n");
    EXPECT_EQ(layout.keys.size(), 84U);
    EXPECT_EQ(layout.rows, 7);
    EXPECT_EQ(layout.key_at(3, 5), 83);
    EXPECT_EQ(layout.key_at(4, 5), -1);
}

TEST(KeyboardLayouts, AnEndedLayoutIsReadUpToItsMark) {
    const auto read = sections("A:\n" + empty_blocks + "a\n\nb\n--\nU\n--\n1\n--\nB\n");
    ASSERT_EQ(read.size(), 2U);
    EXPECT_EQ(picture(read[0].touch_upper), "U@0,0+1 ");
    EXPECT_EQ(picture(read[0].touch_numeric), "1@0,0+1 ");
}

TEST(KeyboardLayouts, TheBuiltInOneIsEnglish) {
    const Layouts built = builtin_layouts();
    ASSERT_EQ(built.languages.size(), 1U);
    EXPECT_EQ(built.language().code, "EN");
    EXPECT_EQ(picture(built.language().lower), "_@$%:;!?\"()\n"
                                               "`1234567890\n"
                                               "qwertyuio\n"
                                               "asdfghjkl\n"
                                               "zxcvbnmp'\n"
                                               ".=+-~.\x2E,*/.\n");
    EXPECT_TRUE(built.has_top_rows());
    EXPECT_TRUE(built.is_zoned());
    EXPECT_FALSE(built.has_touch());
    const TouchLayout as_touch = touch_of_block(built.language().lower);
    EXPECT_EQ(as_touch.rows, 7);
    EXPECT_EQ(as_touch.columns, 11);
}

class KeyboardFiles : public testing::Test {
  protected:
    static void put(const std::string &name, const std::string &text) {
        write_file("system/language/keyboard/" + name, text);
    }
    static std::string codes() {
        std::string all;
        for (const Language &l : user_layouts().languages) all += l.code + " ";
        return all + std::to_string(user_layouts().current);
    }
    ~KeyboardFiles() override {
        CloseConfigNoSave(kvstate.cfg);
        kvstate.cfg = nullptr;
        reset_layouts();
    }
    TempDir dir_;
};

TEST_F(KeyboardFiles, NamesAreFilesOrCodes) {
    put("en.kbd", "EN\n" + empty_blocks);
    put("RU.kbd", "RU\n" + empty_blocks);
    put("ru.kbd", "ru\n" + empty_blocks);
    put("uk.kbd", "UK\n" + empty_blocks + "U2\n" + empty_blocks);
    put("mine.kbd", "M1\n" + empty_blocks + "M2\n");
    put("fifteen-letters.kbd", "FL\n");
    put("empty.kbd", "\n");
    const struct {
        const char *name;
        const char *codes;
    } cases[] = {{"en", "EN 0"},
                 {"EN", "EN 0"},
                 {"RU", "RU 0"},
                 {"ru", "ru 0"},
                 {"en_ru", "EN ru 0"},
                 {"EN-RU-UK", "EN RU UK 0"},
                 {"uk-en-ru", "UK U2 EN 0"},
                 {"xx-en", "EN 0"},
                 {"xx-yy-zz-RU", "EN 0"},
                 {"en-empty", "EN 0"},
                 {"empty", "EN 0"},
                 {"mine", "M1 M2 0"},
                 {"fifteen-letters and more", "FL 0"},
                 {"", "EN 0"},
                 {"zz-yy-xx", "EN 0"},
                 {nullptr, "EN 0"}};
    for (const auto &c : cases) {
        LoadKeyboard(c.name);
        EXPECT_EQ(codes(), c.codes) << (c.name ? c.name : "null");
    }
}

TEST_F(KeyboardFiles, TheLanguageUsedLastIsRemembered) {
    put("three.kbd", "EN\n" + empty_blocks + "RU\n" + empty_blocks + "DE\n" + empty_blocks);
    kvstate.cfg = OpenConfig("./system/config/global.cfg", nullptr);
    WriteString(kvstate.cfg, "layout", "ru: Russian");
    LoadKeyboard("three");
    EXPECT_EQ(codes(), "EN RU DE 1");
    Layouts copy = user_layouts();
    choose_next_language(copy);
    EXPECT_EQ(copy.current, 2U);
    EXPECT_EQ(codes(), "EN RU DE 2") << "the next keyboard has it too";
    choose_next_language(copy);
    EXPECT_EQ(read_file("system/config/global.cfg"), "layout=EN\n");
    WriteString(kvstate.cfg, "layout", "zz");
    LoadKeyboard("three");
    EXPECT_EQ(codes(), "EN RU DE 0");
}

TEST_F(KeyboardFiles, NamesAreListedWithoutDotFiles) {
    EXPECT_EQ(EnumKeyboards()[0], nullptr);
    for (const char *name : {"ru.kbd", "en.kbd", ".phone.kbd", "en.txt", "b.KBD"}) put(name, "x");
    std::string names;
    for (char **name = EnumKeyboards(); *name; ++name) names += std::string(*name) + " ";
    EXPECT_EQ(names, "b en ru ");
    fs::remove_all("system/language/keyboard");
    EXPECT_EQ(EnumKeyboards()[0], nullptr) << "read anew";
}

TEST_F(KeyboardFiles, ExternalKeysStandForThoseOfTheLanguage) {
    put("two.kbd", "RU\n" + empty_blocks + "EN\n" + empty_blocks);
    put("two.extkbd", "\uFEFF\nru\r\n\nqwe  \u0439\u0446\r\n]\t\u044A\n\nXX\nq z\nEN\n\xFF \x01\n");
    LoadKeyboard("two");
    const Language &russian = user_layouts().languages[0];
    EXPECT_EQ(russian.typed('q'), 0x439);
    EXPECT_EQ(russian.typed(']'), 0x44A);
    EXPECT_EQ(russian.typed('e'), 'e') << "the second word is shorter";
    EXPECT_EQ(russian.typed('\b'), '\b');
    EXPECT_EQ(user_layouts().languages[1].typed('q'), 'q');
}

// Where a grid stands: its area, and the key in it.
std::vector<int> state_of(const SelectionGrid &grid) {
    const GridKey &area = grid.area().keys.front();
    const GridKey *key = grid.key();
    return {area.column, area.row, key ? key->column : -1, key ? key->row : -1};
}

// The presses to the key at each place, breadth first.
std::map<std::pair<int, int>, int> presses_from(const SelectionGrid &start) {
    std::map<std::pair<int, int>, int> found;
    std::set<std::vector<int>> seen{state_of(start)};
    std::queue<std::pair<SelectionGrid, int>> states;
    states.emplace(start, 0);
    for (; !states.empty(); states.pop()) {
        const auto &[grid, presses] = states.front();
        std::vector<SelectionGrid> next(5, grid);
        constexpr Step steps[] = {Step::up, Step::down, Step::left, Step::right};
        for (size_t i = 0; i < 4; ++i) next[i].move(steps[i]);
        if (next[4].choose()) found.try_emplace({grid.key()->column, grid.key()->row}, presses + 1);
        for (const SelectionGrid &state : next)
            if (seen.insert(state_of(state)).second) states.emplace(state, presses + 1);
    }
    return found;
}

// From wherever the last character was.
void expect_short_ways(const Block &block, bool is_zoned) {
    const SelectionGrid home(block, is_zoned, {2, 1, 3, 8, 32, 10, 6, 7, 27});
    std::set<std::vector<int>> starts;
    for (const GridKey &from : home.keys()) {
        SelectionGrid start = home;
        start.go_to(from);
        start.leave_zone();
        if (!starts.insert(state_of(start)).second) continue;
        const auto presses = presses_from(start);
        for (const GridKey &to : home.keys()) {
            const auto way = presses.find({to.column, to.row});
            ASSERT_TRUE(way != presses.end()) << from.code << " to " << to.code;
            EXPECT_LE(way->second, 8) << from.code << " to " << to.code;
        }
    }
}

TEST(KeyboardWays, EveryKeyIsAtMostEightPressesAway) {
    for (const auto &file : fs::directory_iterator(keyboards)) {
        SCOPED_TRACE(file.path());
        Layouts layouts;
        read_sections(read_file(file.path()), layouts.languages);
        for (const Language &language : layouts.languages) {
            expect_short_ways(language.lower, layouts.is_zoned());
            if (language.has_shift()) expect_short_ways(language.upper, layouts.is_zoned());
        }
    }
    Block holes{};
    for (const size_t cell : {0, 10, 22, 30, 40, 49, 59}) holes[cell] = 'x';
    expect_short_ways(holes, true);
    expect_short_ways(holes, false);
    expect_short_ways(Block{}, true);
}

// A character as a capital; itself where that takes two.
char16_t capital(char16_t c) {
    const std::string upper = ground::upper_case(encode({c}).c_str());
    const char *at = upper.data(), *end = at + upper.size();
    const auto first = static_cast<char16_t>(utf8::next(at, end));
    return at == end ? first : c;
}

// Every letter and digit that people of a language write, small and capital.
TEST(KeyboardData, EachLayoutTypesEveryLetterOfItsLanguage) {
    const std::map<std::string, std::u16string> alphabets = {
        {"en", u"abcdefghijklmnopqrstuvwxyz"},
        {"de", u"abcdefghijklmnopqrstuvwxyz\u00E4\u00F6\u00FC\u00DF"},
        {"fr", u"abcdefghijklmnopqrstuvwxyz\u00E0\u00E2\u00E7\u00E8\u00E9\u00EA\u00EB\u00EE\u00EF"
               u"\u00F4\u00F9\u00FB\u0153\u00E6\u00FF\u00C6\u0178\u0152\u00C9"},
        {"es", u"abcdefghijklmnopqrstuvwxyz\u00E1\u00E9\u00ED\u00F3\u00FA\u00FC\u00F1"},
        {"pl", u"abcdefghijklmnopqrstuvwxyz\u0105\u0107\u0119\u0142\u0144\u00F3\u015B\u017A\u017C"},
        {"ru", u"\u0430\u0431\u0432\u0433\u0434\u0435\u0451\u0436\u0437\u0438\u0439\u043A\u043B"
               u"\u043C\u043D\u043E\u043F\u0440\u0441\u0442\u0443\u0444\u0445\u0446\u0447\u0448"
               u"\u0449\u044A\u044B\u044C\u044D\u044E\u044F"},
        {"uk", u"\u0430\u0431\u0432\u0433\u0491\u0434\u0435\u0454\u0436\u0437\u0438\u0456\u0457"
               u"\u0439\u043A\u043B\u043C\u043D\u043E\u043F\u0440\u0441\u0442\u0443\u0444\u0445"
               u"\u0446\u0447\u0448\u0449\u044C\u044E\u044F"},
        {"ar", u"\u0621\u0623\u0624\u0625\u0626\u0627\u0628\u0629\u062A\u062B\u062C\u062D\u062E"
               u"\u062F\u0630\u0631\u0632\u0633\u0634\u0635\u0636\u0637\u0638\u0639\u063A\u0641"
               u"\u0642\u0643\u0644\u0645\u0646\u0647\u0648\u0649\u064A"},
        {"he", u"\u05D0\u05D1\u05D2\u05D3\u05D4\u05D5\u05D6\u05D7\u05D8\u05D9\u05DA\u05DB\u05DC"
               u"\u05DD\u05DE\u05DF\u05E0\u05E1\u05E2\u05E3\u05E4\u05E5\u05E6\u05E7\u05E8\u05E9"
               u"\u05EA"},
        {".phone", u"0123456789+*#"},
        {".numeric", u"0123456789.-"},
        {".ipaddr", u"0123456789.:"},
        {".clock", u"0123456789"},
        {".hex", u"0123456789ABCDEF"},
        {".url", u"abcdefghijklmnopqrstuvwxyz0123456789.:/-_~%?=&#@+"},
        {".entext", u"abcdefghijklmnopqrstuvwxyz0123456789"}};
    std::set<std::string> seen;
    for (const auto &file : fs::directory_iterator(keyboards)) {
        const std::string name = file.path().stem();
        SCOPED_TRACE(name);
        seen.insert(name);
        ASSERT_TRUE(alphabets.contains(name));
        for (const Language &l : sections(read_file(file.path()))) {
            std::set<uint16_t> keys, touched;
            for (const Block *block : {&l.lower, &l.upper})
                keys.insert(block->begin(), block->end());
            for (const auto *layout : {&l.touch_lower, &l.touch_upper, &l.touch_numeric})
                for (const TouchKey &key : layout->keys) touched.insert(key.code);
            for (const auto *layout : {&l.touch_lower, &l.touch_upper, &l.touch_numeric})
                EXPECT_FALSE(layout->empty());
            EXPECT_TRUE(touched.contains(code::backspace) && touched.contains(code::enter));
            for (char16_t c : alphabets.at(name)) {
                EXPECT_TRUE(keys.contains(c)) << encode({c}) << " has no cell";
                EXPECT_TRUE(touched.contains(c)) << encode({c}) << " has no touch key";
                EXPECT_TRUE(keys.contains(capital(c))) << encode({c}) << " has no capital";
                EXPECT_TRUE(touched.contains(capital(c))) << encode({c}) << " has no capital";
            }
        }
    }
    for (const auto &[name, alphabet] : alphabets) EXPECT_TRUE(seen.contains(name)) << name;
}

} // namespace
