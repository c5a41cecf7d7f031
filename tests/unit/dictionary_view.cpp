// SPDX-License-Identifier: MIT
// The view of dictionaries and the fast translation: what opens, what keys and fingers do, and what
// is left when they close.
#include <climits>
#include <gtest/gtest.h>
#include <malloc.h>

#include "dictionary_view_support.h"
#include "kelvane/config.h"
#include "kelvane/dialogs.h"
#include "kelvane/keyboard.h"
#include "kelvane/languages.h"
#include "kelvane/text.h"
#include "keyboard/board.h"
#include "menus/stack.h"
#include "support/repeats.h"

namespace {

using namespace dictionary_view;
using dictionary_test::Entries;
using dictionary_test::numbered;
using dictionary_test::screen;
using dictionary_test::write_dictionary;

class DictionaryView : public dictionary_test::Test {};

// A place on the page for a word, in the upper half of 600 x 800 pixels.
const irect upper = {200, 100, 80, 24, 0};

TEST_F(DictionaryView, OpensOnAWordAndLeavesThePageWhole) {
    write_dictionary("Numbers", numbered(40));
    OpenDictionaryView("w20", &upper);
    ASSERT_TRUE(is_open());
    EXPECT_EQ(word(), "w20");
    EXPECT_EQ(view().name, "Numbers");
    EXPECT_EQ(view().words.translation(), "meaning 20");
    EXPECT_EQ(view().words.shown().at(static_cast<size_t>(view().words.selected())), "w20");
    const std::vector<uint8_t> opened = screen();
    const size_t in_word = 110 * 600 + 210, beside = 110 * 600 + 290;
    EXPECT_EQ(opened[in_word], 255 - before[in_word]);
    EXPECT_EQ(opened[beside], before[beside]);
    headless::clear_events();
    press_all({KEY_DOWN, KEY_RIGHT, KEY_BACK});
    expect_closed();
    EXPECT_EQ(headless::events(), "RESTORE ");
}

TEST_F(DictionaryView, LeavesTheWordInSight) {
    const Measures m{.screen_w = 600,
                     .foot = 800,
                     .word = {},
                     .unit = 4,
                     .border = 3,
                     .rule = 2,
                     .hairline = 1,
                     .rim = 8,
                     .tool_w = 44,
                     .tool_h = 44,
                     .row_h = 44,
                     .list_w = 184,
                     .sides = Sides::as_written};
    const struct {
        irect word;
        int y, h;
    } cases[] = {
        {{}, 320, 480},
        {{10, 290, 50, 30, 0}, 320, 480},
        {{10, 300, 50, 30, 0}, 330, 470}, // in the middle: what is left below
        {{10, 440, 50, 30, 0}, 0, 440},   // or above
        {{10, 480, 50, 30, 0}, 0, 480},
        {{10, 770, 50, 30, 0}, 0, 480},
        {{0, 100, 600, 600, 0}, 320, 480}, // nowhere
        {{10, INT_MAX, INT_MAX, INT_MAX, 0}, 320, 480},
        {{INT_MIN, INT_MIN, 10, 10, 0}, 320, 480},
    };
    for (const auto &c : cases) {
        Measures with = m;
        with.word = c.word;
        const Place p = place_view(with);
        EXPECT_EQ(p.whole.y, c.y) << c.word.y;
        EXPECT_EQ(p.whole.h, c.h) << c.word.y;
        EXPECT_LE(p.list.y + p.rows * p.row_h, p.frame.y + p.frame.h - m.border);
    }
    Measures mirrored = m;
    mirrored.sides = Sides::mirrored;
    const Place left = place_view(m), right = place_view(mirrored);
    EXPECT_EQ(right.list.x, 600 - left.list.x - left.list.w);
    EXPECT_EQ(right.tools[5].x, 600 - left.tools[5].x - left.tools[5].w);
}

TEST_F(DictionaryView, KeysWalkThroughAllWordsAndStayAtTheEnds) {
    Entries entries = numbered(50);
    entries[30].first = entries[31].first = entries[32].first; // across two containers
    write_dictionary("Numbers", entries);
    OpenDictionaryView(nullptr, nullptr);
    headless::press(KEY_UP);
    for (size_t i = 0; i < entries.size(); ++i) {
        EXPECT_EQ(view().words.translation(), entries[i].second);
        headless::press(KEY_DOWN);
    }
    EXPECT_EQ(word(), "w49");
    const int rows = view().place.rows;
    for (const auto &[keys, expected] :
         std::vector<std::pair<std::vector<int>, int>>{{{KEY_PREV}, 49 - 2 * rows + 1},
                                                       {{KEY_NEXT2}, 49 - rows + 1},
                                                       {{KEY_NEXT}, 49},
                                                       {{KEY_NEXT}, 49},
                                                       {std::vector<int>(60, KEY_UP), 0},
                                                       {{KEY_PREV2}, 0}}) {
        press_all(keys);
        EXPECT_EQ(view().words.translation(), "meaning " + std::to_string(expected));
    }
    // What an application looks up meanwhile does not lead astray.
    press_all({KEY_DOWN, KEY_DOWN});
    LookupWord("w40", nullptr, nullptr);
    headless::press(KEY_DOWN);
    EXPECT_EQ(word(), "w03");
}

std::string told(const std::vector<Paragraph> &article) {
    constexpr const char *kinds[] = {"headword", "grammar", "sense", "example", "plain"};
    std::string all;
    for (const Paragraph &p : article)
        all += std::string(p.hangs ? "  " : "") + kinds[static_cast<int>(p.kind)] + "(" + p.mark +
               "|" + p.text + ")\n";
    return all;
}

TEST_F(DictionaryView, ArticlesAreReadByTheirCustoms) {
    const struct {
        const char *headword, *translation, *expected;
    } cases[] = {
        {"sea", "", "headword(|sea)\n"},
        {"sea", "Meer", "headword(|sea)\nplain(|Meer)\n"},
        {"sea", "sea /si:/ <noun>\n 1. Meer\n    See\n 2) \u201Cat sea\u201D",
         "headword(|sea)\ngrammar(noun|si:)\n  sense(1|Meer)\n  sense(|See)\n"
         "  sense(2|\u201Cat sea\u201D)\n"},
        {"sea", "<noun> <plural: seas>\n1. Meer\n\"on the sea\"\n- auf See\n\nSee also: ocean",
         "headword(|sea)\ngrammar(noun plural: seas|)\n  sense(1|Meer)\n  example(|\"on the "
         "sea\")\n"
         "  example(|auf See)\nplain(|See also: ocean)\n"},
        {"sea", "seaside\n1.5 km\n123. x", // neither the headword nor numbers of senses
         "headword(|sea)\nplain(|seaside)\nplain(|1.5 km)\nplain(|123. x)\n"},
        {" s\x01", "\x02\t<\r\n/\n<>", "headword(|s)\nplain(|<)\nplain(|/)\nplain(|<>)\n"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(told(read_article(c.headword, c.translation)), c.expected);
    const auto article = read_article("sea", "<noun>\n1. Meer\n\"at sea\"\n2. See");
    EXPECT_EQ(summary(article, Senses::in_a_row), "1. Meer 2. See");
    EXPECT_EQ(summary(article, Senses::on_lines), "1. Meer\n2. See");
    EXPECT_EQ(summary(read_article("sea", "1. Meer"), Senses::on_lines), "Meer");
}

TEST_F(DictionaryView, LongArticlesHavePagesThatLeaveNothingOut) {
    std::string text;
    for (int i = 1; i < 40; ++i)
        text += std::to_string(i) + ". A sense of several words that takes two lines of the page\n";
    const std::string hostile =
        std::string(30000, 'W') + "\xff\xfe\x05\n" + std::string(9000, '\n');
    write_dictionary("Long", {{"long", text}, {"longer", hostile}});
    OpenDictionaryView("long", nullptr);
    headless::press(KEY_RIGHT);
    Article &article = view().article;
    ASSERT_GT(article.pages(), 3);
    size_t seen = 0;
    std::vector<uint8_t> last;
    for (int page = 0; page < article.pages(); ++page) {
        EXPECT_EQ(article.page(), page);
        EXPECT_TRUE(screen() != last);
        last = screen();
        headless::press(page % 2 == 0 ? KEY_NEXT : KEY_DOWN);
    }
    EXPECT_TRUE(screen() == last);
    // Each paragraph begins once, in its order, and each page is within the pane. What goes on on
    // the next page does so with a word.
    for (const Page &page : article.all_pages()) {
        ASSERT_FALSE(page.empty());
        EXPECT_LE(page.back().y + page.back().h, view().place.article.h);
        for (const Piece &piece : page)
            if (piece.begin == 0) {
                EXPECT_EQ(piece.paragraph, seen++);
            } else {
                const std::string &whole = article.paragraphs()[piece.paragraph].text;
                EXPECT_EQ(whole.at(static_cast<size_t>(piece.begin) - 1), ' ');
            }
    }
    EXPECT_EQ(seen, article.paragraphs().size());
    press_all({KEY_PREV, KEY_UP, KEY_LEFT, KEY_DOWN});
    EXPECT_EQ(word(), "longer");
    EXPECT_GT(article.pages(), 20);
    press_all({KEY_RIGHT, KEY_NEXT, KEY_BACK});
    expect_closed();
}

TEST_F(DictionaryView, ObliqueLettersThatAreMissingStandUpright) {
    const Type type = load_look().type;
    EXPECT_TRUE(type.oblique_for("\u201Cn\u00E9n \u043D\u0435\u0442\u201D")->isitalic);
    EXPECT_TRUE(type.oblique_for("\u65E5\u672C")->isitalic); // of a font of their own
    EXPECT_FALSE(type.oblique_for("a \u0627\u0633\u0645")->isitalic);
}

TEST_F(DictionaryView, AWordThatIsNotThereIsToldOf) {
    write_dictionary("Numbers", numbered(10));
    OpenDictionaryView("w05x", &upper); // between two others
    EXPECT_EQ(word(), "w06");
    OpenDictionaryView("zebra", &upper); // replaces the view
    const Paragraph &told = view().article.paragraphs().back();
    EXPECT_EQ(view().article.paragraphs().front().text, "zebra");
    EXPECT_EQ(told.text, GetLangText("@DicNotFound"));
    EXPECT_EQ(word(), "w06");
    // It is asked for again: of the keyboard, and of another dictionary.
    headless::press(KEY_OK);
    EXPECT_STREQ(keyboard::board()->buffer, "zebra");
    headless::press(KEY_BACK);
    write_dictionary("Animals", {{"ant", "first"}, {"zebra", "second"}});
    press_all({KEY_MENU, KEY_UP, KEY_OK});
    EXPECT_EQ(view().words.translation(), "second");
    headless::press(KEY_BACK);
    // What is asked may lie where the dictionary then unpacks other words.
    write_dictionary("Many", numbered(40));
    ASSERT_EQ(OpenDictionary("Many"), 1);
    char *translation = nullptr;
    LookupWord("w00", nullptr, &translation);
    OpenDictionaryView(translation, &upper);
    EXPECT_EQ(view().article.paragraphs().front().text, "meaning 0");
    headless::press(KEY_BACK);
    expect_closed();
}

TEST_F(DictionaryView, WordsOfAnotherDictionaryThatIsOpenAreListed) {
    write_dictionary("Letters", {{"a", "first"}, {"b", "second"}});
    write_dictionary("Numbers", numbered(40));
    ASSERT_EQ(OpenDictionary("Numbers"), 1);
    OpenDictionaryView("w20", &upper);
    LookupWord("w30", nullptr, nullptr); // does no harm
    headless::press(KEY_DOWN);
    EXPECT_EQ(word(), "w21");
    const std::vector<std::string> letters = {"a", "b"};
    ASSERT_EQ(OpenDictionary("Letters"), 1);
    headless::press(KEY_DOWN);
    EXPECT_EQ(view().words.shown(), letters);
    EXPECT_EQ(view().name, "Letters");
    headless::press(KEY_DOWN);
    EXPECT_EQ(word(), "b");
    write_dictionary("Signs", {{"b", "flat"}, {"c", "whole"}});
    ASSERT_EQ(OpenDictionary("Signs"), 1);
    headless::press(KEY_UP);
    EXPECT_EQ(view().words.shown().back(), "c") << "another one that has the word as well";
    CloseDictionary();
    for (const int key : {KEY_UP, KEY_NEXT, KEY_DOWN}) {
        headless::press(key);
        EXPECT_EQ(word(), "");
        EXPECT_TRUE(view().words.shown().empty());
    }
    headless::press(KEY_BACK);
    expect_closed();
}

TEST_F(DictionaryView, WithoutADictionaryAMessageSaysSo) {
    write_file("system/dictionaries/Broken.dic", "SDIC but no more");
    for (const auto open : {OpenDictionaryView, OpenFastTranslation}) {
        const int64_t start = headless::now();
        open("word", &upper);
        EXPECT_FALSE(is_open());
        EXPECT_GE(headless::now() - start, 3000);
        expect_closed();
    }
    EXPECT_EQ(OpenControlledDictionaryView("word", nullptr), 0);
}

TEST_F(DictionaryView, TheKeyboardAsksForAnotherWord) {
    write_dictionary("Numbers", numbered(40));
    OpenDictionaryView("w20", &upper);
    const std::vector<uint8_t> opened = screen();
    tap_tool(Tool::keyboard);
    ASSERT_EQ(IsKeyboardOpened(), 1);
    headless::press(KEY_BACK);
    EXPECT_EQ(IsKeyboardOpened(), 0);
    EXPECT_TRUE(screen() == opened);
    headless::press(KEY_OK);
    for (const char c : std::string("w07")) headless::raw(hw::typed_character, 0, c, 0);
    CloseKeyboard(); // nothing was asked for
    EXPECT_EQ(word(), "w20");
    use_multi_touch();
    headless::press(KEY_OK);
    for (const char c : std::string("w07")) headless::raw(hw::typed_character, 0, c, 0);
    headless::press(KEY_OK);
    EXPECT_EQ(word(), "w07");
    headless::press(KEY_BACK);
    expect_closed();
}

TEST_F(DictionaryView, TheDictionarysOwnLayoutServes) {
    write_dictionary(
        "Own", numbered(3),
        "QQ: Own\na\n\n\n\n\n\nA\n\n\n\n\n\n\u05D0 \u05D1 ok\n--\nA ok\n--\n1 ok\n--\n");
    use_multi_touch();
    OpenDictionaryView(nullptr, nullptr);
    headless::press(KEY_OK);
    ASSERT_EQ(IsKeyboardOpened(), 1);
    EXPECT_EQ(keyboard::board()->language().code, "QQ");
    press_all({KEY_BACK, KEY_BACK});
    expect_closed();
}

TEST_F(DictionaryView, TheMenuChangesTheDictionaryForGood) {
    write_dictionary("Letters", {{"a", "first"}, {"b", "second"}});
    write_dictionary("Numbers", numbered(40));
    write_file("system/dictionaries/Broken.dic", "SDIC");
    OpenDictionaryView("b", &upper);
    EXPECT_EQ(view().name, "Letters");
    press_all({KEY_MENU, KEY_BACK});
    EXPECT_EQ(view().name, "Letters");
    press_all({KEY_MENU, KEY_DOWN, KEY_OK});
    EXPECT_EQ(view().name, "Numbers");
    EXPECT_EQ(std::string(ReadString(kvstate.cfg, "dictionary", "")), "Numbers");
    headless::press(KEY_MENU); // one that cannot be opened leaves the other
    press_all({KEY_UP, KEY_UP, KEY_OK});
    EXPECT_EQ(view().name, "Numbers");
    EXPECT_EQ(std::string(ReadString(kvstate.cfg, "dictionary", "")), "Numbers");
    headless::press(KEY_BACK);
    expect_closed();
    CloseDictionary();
    OpenDictionaryView(nullptr, nullptr);
    EXPECT_EQ(view().name, "Numbers");
}

TEST_F(DictionaryView, TheOwnerClosesItFromUnderWhatIsAbove) {
    write_dictionary("Numbers", numbered(40));
    const int first = OpenControlledDictionaryView("w01", &upper);
    const int second = OpenControlledDictionaryView("w02", &upper);
    ASSERT_GT(first, 0);
    CloseControlledDictionaryView(first);
    CloseControlledDictionaryView(0);
    EXPECT_EQ(word(), "w02");
    CloseControlledDictionaryView(second);
    expect_closed();
    CloseControlledDictionaryView(second);
    for (const int above : {KEY_OK, KEY_MENU}) { // the keyboard, the menu
        const int view = OpenControlledDictionaryView("w03", nullptr);
        headless::press(above);
        EXPECT_TRUE(IsKeyboardOpened() || menus::level_count() > 0);
        CloseControlledDictionaryView(view);
        EXPECT_FALSE(IsKeyboardOpened() || menus::level_count() > 0);
        expect_closed();
    }
    const int view = OpenControlledDictionaryView("w03", nullptr);
    headless::detail::settle();
    Dialog(ICON_QUESTION, "", "Sure?", "Yes", nullptr, boxes::answer);
    const std::vector<uint8_t> asked = screen();
    CloseControlledDictionaryView(view);
    OpenFastTranslation("w04", nullptr); // not above a dialog
    EXPECT_EQ(OpenControlledDictionaryView("w04", nullptr), 0);
    headless::detail::settle();
    EXPECT_TRUE(screen() == asked);
    headless::press(KEY_OK);
    expect_closed();
}

TEST_F(DictionaryView, FingersUseToolsRowsAndPages) {
    std::string text;
    for (int i = 0; i < 40; ++i) text += "a line of the article\n";
    Entries entries = numbered(60);
    entries[2].second = text;
    write_dictionary("Numbers", entries);
    use_multi_touch();
    OpenDictionaryView("w00", &upper);
    tap(view().place.row(2));
    EXPECT_EQ(word(), "w02");
    tap_tool(Tool::article);
    EXPECT_EQ(view().focus, Pane::article);
    const irect pane = view().place.article, list = view().place.list;
    headless::tap(pane.x + pane.w - 20, pane.y + 50);
    EXPECT_EQ(view().article.page(), 1);
    headless::tap(pane.x + 20, pane.y + 50);
    EXPECT_EQ(view().article.page(), 0);
    const auto swipe = [](int x1, int y1, int x2, int y2) {
        headless::pointer(EVT_POINTERDOWN, x1, y1);
        headless::pointer(EVT_POINTERMOVE, x2, y2);
        headless::pointer(EVT_POINTERUP, x2, y2);
    };
    swipe(pane.x + 200, pane.y + 50, pane.x + 20, pane.y + 60);
    EXPECT_EQ(view().article.page(), 1);
    swipe(list.x + 50, list.y + 200, list.x + 60, list.y + 20);
    EXPECT_EQ(word(), "w0" + std::to_string(view().place.rows));
    const std::string kept = word();
    tap_tool(Tool::voice); // there is none: a message
    const irect close = view().place.tools[5];
    headless::pointer(EVT_POINTERDOWN, close.x + 10, close.y + 10);
    EXPECT_EQ(view().pressed, Tool::close);
    headless::pointer(EVT_POINTERUP, pane.x + 10, pane.y + 10); // thought better of
    EXPECT_EQ(word(), kept);
    EXPECT_FALSE(view().pressed);
    tap_tool(Tool::close);
    expect_closed();
    OpenDictionaryView("w00", &upper);
    headless::tap(300, 20); // beside it
    expect_closed();
}

TEST_F(DictionaryView, ATurnLaysItOutAnewAndTheApplicationDraws) {
    write_dictionary("Numbers", numbered(40));
    OpenDictionaryView("w20", &upper);
    headless::raw(EVT_ORIENTATION, 0, 1, 0);
    SetOrientation(1);
    GetEventHandler()(EVT_KEYPRESS, KEY_DOWN, 0); // the keys of the device turn with it
    EXPECT_EQ(word(), "w21");
    EXPECT_EQ(view().place.whole.w, 800);
    EXPECT_EQ(view().place.whole.y + view().place.whole.h, 600);
    headless::clear_events();
    headless::press(KEY_BACK);
    EXPECT_FALSE(is_open());
    EXPECT_NE(headless::events().find("SHOW"), std::string::npos);
    EXPECT_NE(headless::events().find("RESTORE ORIENTATION(1,0)"), std::string::npos);
}

TEST_F(DictionaryView, RightToLeftItIsMirrored) {
    write_dictionary("Numbers", numbered(40));
    write_file("system/language/xx.txt", "Language\n%RTL\n");
    LoadLanguage("xx");
    OpenDictionaryView("w20", nullptr);
    EXPECT_GT(view().place.list.x, view().place.article.x);
    headless::press(KEY_LEFT);
    EXPECT_EQ(view().focus, Pane::article);
    headless::press(KEY_RIGHT);
    EXPECT_EQ(view().focus, Pane::list);
    headless::press(KEY_BACK);
    LoadLanguage("en");
    expect_closed();
}

class FastTranslation : public dictionary_test::Test {
  protected:
    FastTranslation() { write_dictionary("Numbers", numbered(40)); }
};

TEST_F(FastTranslation, AnyKeyAndATapBesideItCloseIt) {
    for (const int key : {KEY_OK, KEY_BACK, KEY_UP, KEY_NEXT2, KEY_MENU}) {
        OpenFastTranslation("w20", &upper);
        EXPECT_FALSE(screen() == before);
        headless::clear_events();
        headless::press(key);
        expect_closed();
        EXPECT_EQ(headless::events(), "RESTORE ");
    }
    OpenFastTranslation("w20", &upper);
    headless::tap(20, 700);
    expect_closed();
}

TEST_F(FastTranslation, AFingerThatWasDownDoesNotCount) {
    use_multi_touch();
    headless::pointer(EVT_POINTERDOWN, 210, 110);
    OpenFastTranslation("w20", &upper);
    const std::vector<uint8_t> opened = screen();
    headless::pointer(EVT_POINTERUP, 210, 110);
    EXPECT_TRUE(screen() == opened);
    headless::tap(20, 700);
    expect_closed();
}

TEST_F(FastTranslation, ATapOnItOpensTheView) {
    OpenFastTranslation("w20", &upper);
    headless::tap(230, 170);
    ASSERT_TRUE(is_open());
    EXPECT_EQ(word(), "w20");
    EXPECT_EQ(view().mark.area().x, upper.x);
    OpenFastTranslation("w21", &upper); // and the view gives way to the box
    EXPECT_FALSE(is_open());
    headless::press(KEY_OK);
    expect_closed();
}

// Wherever the word is, and whatever it means.
TEST_F(FastTranslation, FitsOnTheScreenAndLeavesThePageWhole) {
    const std::string wide(3000, 'W');
    write_dictionary(
        "Numbers", {{"a", wide}, {"b", ""}, {"c", "/x/ <n>\n1. \u05D0\u05D1\n2. y"}, {wide, "d"}});
    const irect places[] = {{},
                            {0, 0, 10, 10, 0},
                            {590, 790, 100, 100, 0},
                            {0, 400, 600, 30, 0},
                            {-50, -50, 60, 60, 0},
                            {INT_MIN, 0, INT_MAX, INT_MAX, 0},
                            {INT_MAX, INT_MAX, INT_MAX, INT_MAX, 0}};
    const std::string absent(5000, 'x');
    for (const irect &place : places)
        for (const char *word : {"a", "b", "c", wide.c_str(), "\xff\x01", absent.c_str(), ""}) {
            OpenFastTranslation(word, &place);
            EXPECT_FALSE(screen() == before);
            headless::press(KEY_OK);
            expect_closed();
        }
    OpenFastTranslation(nullptr, nullptr);
    headless::press(KEY_OK);
    expect_closed();
}

TEST_F(FastTranslation, ManyOpeningsDoNotGrow) {
    hw::observe_updates(nullptr);
    const auto open = [&](int count) {
        for (int i = 0; i < count; ++i) {
            OpenFastTranslation("w20", &upper);
            OpenDictionaryView("w21", &upper);
            GetEventHandler()(EVT_KEYPRESS, KEY_DOWN, 0);
            GetEventHandler()(EVT_KEYPRESS, KEY_BACK, 0);
            while (!queue_is_empty()) kv_process_event_loop_quick();
            headless::clear_events();
        }
    };
    open(20);
    const size_t allocated = mallinfo2().uordblks;
    open(repeats(400, 60));
    EXPECT_LT(mallinfo2().uordblks, allocated + 10000);
}

TEST_F(FastTranslation, TheEndOfTheScreenTakesEverythingAway) {
    OpenFastTranslation("w20", &upper);
    restart_with("");
    EXPECT_EQ(GetEventHandler(), headless::handler());
    write_dictionary("Numbers", numbered(40));
    OpenDictionaryView("w20", &upper);
    headless::press(KEY_OK);
    restart_with("");
    EXPECT_FALSE(is_open());
    EXPECT_EQ(IsKeyboardOpened(), 0);
}

} // namespace
