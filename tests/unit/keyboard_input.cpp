// SPDX-License-Identifier: MIT
// What fingers and keys do, and what the screen shows of it.
#include <gtest/gtest.h>
#include <malloc.h>

#include "hw_seam.h"
#include "kelvane/config.h"
#include "kelvane/timers.h"
#include "keyboard/commands.h"
#include "keyboard_support.h"
#include "support/repeats.h"

using namespace keyboard;

namespace {

class ByFinger : public keyboard_test::Test {
  protected:
    static void down(const irect &r) {
        headless::pointer(EVT_POINTERDOWN, r.x + r.w / 2, r.y + r.h / 2);
    }
    static void up(const irect &r) {
        headless::pointer(EVT_POINTERUP, r.x + r.w / 2, r.y + r.h / 2);
    }
    static int64_t blackness(const irect &r) {
        const auto pixels = part(r);
        return std::count(pixels.begin(), pixels.end(), 0);
    }
    static bool lies_in(const headless::Update &u, const irect &r) {
        constexpr int widened = 4;
        return u.x >= r.x - widened && u.y >= r.y - widened && u.x + u.w <= r.x + r.w + widened &&
               u.y + u.h <= r.y + r.h + widened;
    }
};

TEST_F(ByFinger, APressedKeyIsBlackWithinTheEvent) {
    open("");
    const irect q = place_of('q');
    const auto plain = part(q);
    headless::clear_updates();
    down(q);
    EXPECT_GT(blackness(q), q.w * q.h / 2);
    ASSERT_FALSE(headless::updates().empty());
    EXPECT_TRUE(lies_in(headless::updates()[0], q));
    up(q);
    EXPECT_TRUE(part(q) == plain);
    EXPECT_EQ(text(), "q");
    const irect ok = place_of(code::cancel);
    down(ok);
    EXPECT_GT(blackness(ok), ok.w * ok.h / 2);
    headless::pointer(EVT_POINTERUP, 300, 20);
    EXPECT_LT(blackness(ok), ok.w * ok.h / 4) << "let go beside it";
    EXPECT_EQ(IsKeyboardOpened(), 1);
}

// The key, what stands above it while it is pressed, and the line: nothing else is shown.
TEST_F(ByFinger, ATapUpdatesNoMoreThanItChanges) {
    open("text", KBD_NOSELECT);
    const irect g = place_of('g'), line = board()->place.entry;
    headless::clear_updates();
    tap(g);
    const irect around{g.x - 8, g.y - g.h - 8, g.w + 16, 2 * g.h + 16, 0};
    bool shows_line = false;
    for (const headless::Update &u : headless::updates()) {
        EXPECT_TRUE(lies_in(u, line) || lies_in(u, around)) << u.x << " " << u.y;
        EXPECT_EQ(u.mode, 1);
        shows_line = shows_line || lies_in(u, line);
    }
    EXPECT_TRUE(shows_line);
}

TEST_F(ByFinger, AFingerThatSlidesTypesWhereItIsLifted) {
    open("");
    down(place_of('q'));
    const irect w = place_of('w');
    headless::pointer(EVT_POINTERMOVE, w.x + 5, w.y + 5);
    EXPECT_GT(blackness(w), w.w * w.h / 2);
    up(w);
    EXPECT_EQ(text(), "w");
    down(place_of('a'));
    headless::pointer(EVT_POINTERMOVE, 300, 20);
    headless::pointer(EVT_POINTERUP, 300, 20);
    EXPECT_EQ(text(), "w");
    tap_code(code::enter);
    expect_closed_with("w;");
}

TEST_F(ByFinger, ShiftNumbersAndLanguagesChangeTheKeysAfterAPause) {
    kvstate.cfg = kvstate.cfg ? kvstate.cfg : OpenConfig("./system/config/global.cfg", nullptr);
    open("");
    const auto change = [&](uint16_t key) {
        const int64_t start = headless::now();
        tap_code(key);
        EXPECT_GE(headless::now() - start, 390);
    };
    change(code::shift);
    tap_keys(u"QW");
    change(code::numbers);
    EXPECT_EQ(board()->shift, Shift::numbers);
    tap_keys(u"1");
    change(code::numbers);
    tap_keys(u"w");
    change(code::numbers);
    keyboard::type(*board(), code::shift);
    EXPECT_EQ(board()->shift, Shift::upper) << "from the second state to the first";
    change(code::language);
    EXPECT_EQ(board()->shift, Shift::upper);
    tap_keys(u"\u0416");
    EXPECT_STREQ(ReadString(kvstate.cfg, "layout", ""), "RU");
    change(code::shift);
    change(code::numbers);
    change(code::language);
    EXPECT_EQ(board()->shift, Shift::lower);
    tap_keys(u"\u0457");
    tap_code(code::enter);
    expect_closed_with("QW1w\u0416\u0457;");
    open("");
    EXPECT_EQ(board()->language().code, "UK") << "as it was left";
    tap_code(code::language);
    EXPECT_EQ(board()->language().code, "EN");
    headless::press(KEY_BACK);
}

TEST_F(ByFinger, ATapInTheLinePlacesTheCursor) {
    open("iiiiiiiiii");
    const irect line = board()->place.entry;
    const auto tap_line = [&](int x) { headless::tap(x, line.y + line.h / 2); };
    tap_line(line.x + 8);
    EXPECT_EQ(board()->entry.cursor(), 0U);
    type("a");
    tap_line(line.x + line.w / 2);
    EXPECT_EQ(board()->entry.cursor(), 11U);
    headless::press(KEY_LEFT);
    type("b");
    EXPECT_EQ(text(), "aiiiiiiiiibi");
    const irect icon = icon_rect(*board());
    tap(icon);
    EXPECT_EQ(text(), "");
    headless::press(KEY_BACK);
    expect_closed_with("-;");
}

TEST_F(ByFinger, LongTextsAreScrolledToTheCursor) {
    open(std::string(80, 'm') + "i", KBD_NOSELECT, 90);
    EXPECT_GT(board()->scroll, 0);
    const irect line = board()->place.entry;
    headless::tap(line.x + line.w - 60, line.y + line.h / 2);
    EXPECT_GE(board()->entry.cursor(), 78U);
    for (int i = 0; i < 90; ++i) headless::press(KEY_LEFT);
    EXPECT_EQ(board()->scroll, 0);
    headless::press(KEY_OK);
    expect_closed_with(std::string(80, 'm') + "i;");
}

TEST_F(ByFinger, AHeldBackspaceGoesOn) {
    open("0123456789", KBD_NOSELECT);
    const irect key = place_of(code::backspace);
    down(key);
    headless::advance(349 + 4 * 150);
    const size_t left = board()->entry.text().size();
    EXPECT_LE(left, 7U);
    up(key);
    headless::advance(1000);
    EXPECT_EQ(board()->entry.text().size(), left) << "nor when it is let go";
    headless::press(KEY_BACK);
}

TEST_F(ByFinger, APressThatNobodyEndsIsEnded) {
    open("");
    const irect q = place_of('q');
    down(q);
    headless::advance(4900);
    EXPECT_GT(blackness(q), q.w * q.h / 2);
    headless::advance(200);
    EXPECT_LT(blackness(q), q.w * q.h / 4);
    EXPECT_EQ(IsKeyboardOpened(), 1);
    headless::press(KEY_BACK);
    expect_closed_with("-;");
}

TEST_F(ByFinger, PasswordsShowDotsAndTheLastCharacterForASecond) {
    open("", KBD_PASSWORD);
    const irect line = board()->place.entry;
    type("wm");
    const auto last_shown = part(line);
    headless::advance(900);
    EXPECT_TRUE(part(line) == last_shown);
    headless::advance(200);
    const auto dots = part(line);
    EXPECT_TRUE(dots != last_shown);
    tap(icon_rect(*board()));
    EXPECT_TRUE(part(line) != dots) << "the eye";
    tap(icon_rect(*board()));
    EXPECT_TRUE(part(line) == dots);
    type("\bm");
    headless::press(KEY_RIGHT);
    headless::advance(1100);
    EXPECT_TRUE(part(line) == dots) << "a cursor that cannot move leaves the letter its second";
    EXPECT_EQ(text(), "wm") << "no sign that clears it";
    headless::press(KEY_OK);
    expect_closed_with("wm;");
    open("il", KBD_PASSWORD | KBD_NOSELECT);
    const auto stored = part(line);
    type("x");
    tap(icon_rect(*board()));
    EXPECT_EQ(text(), "") << "what was stored is never shown, only cleared";
    headless::press(KEY_BACK);
    open("wm", KBD_PASSWORD | KBD_NOSELECT);
    EXPECT_TRUE(part(line) == stored) << "letters of other widths";
    headless::press(KEY_BACK);
}

TEST_F(ByFinger, TheHintIsPutAwayBeforeWhatItCovers) {
    open("");
    const irect q = place_of('q');
    type("x");
    tap(q);
    const auto plain = keyboard_test::screen();
    headless::press(KEY_BACK);
    open("");
    down(q);
    ASSERT_GT(board()->hint.w, 0);
    type("x");
    up(q);
    EXPECT_TRUE(keyboard_test::screen() == plain);
    headless::press(KEY_BACK);
    OpenKeyboard(nullptr, nullptr, 9, KBD_NOHATCH, keyboard_test::answer);
    headless::detail::settle();
    down(place_of('q'));
    ASSERT_GT(board()->hint.w, 0);
    CloseKeyboard();
    expect_closed_with("-;-;-;");
}

// What ends meanwhile is drawn once the box above has closed.
TEST_F(ByFinger, NothingIsDrawnOverABoxAbove) {
    open("", KBD_PASSWORD);
    type("w");
    headless::advance(1100);
    const auto plain = keyboard_test::screen();
    type("\bw");
    down(place_of('q'));
    Dialog(0, nullptr, "Above", "OK", nullptr, [](int) {});
    headless::detail::settle();
    const auto covered = keyboard_test::screen();
    headless::advance(6000);
    EXPECT_TRUE(keyboard_test::screen() == covered);
    headless::press(KEY_OK);
    EXPECT_TRUE(keyboard_test::screen() == plain);
}

TEST_F(ByFinger, SixRowsServeWhereALayoutHasNoTouchRows) {
    write_file("system/language/keyboard/zz.kbd",
               "ZZ\n$%\n12\nqwe\nasd\nyxc\n.,\n$%\n12\nQWE\nASD\nYXC\n.,\n");
    LoadKeyboard("zz");
    open("");
    tap_keys(u"q1$");
    tap_code(code::shift);
    tap_keys(u"Q.");
    tap_code(code::backspace);
    tap_code(code::wide_space);
    tap_code(code::enter);
    expect_closed_with("q1$Q ;");
    write_file("system/language/keyboard/yy.kbd", "YY\n\n\nqwe\n");
    LoadKeyboard("yy");
    open("");
    headless::press(KEY_MENU);
    tap_keys(u"q"); // without capitals the keys stay
    EXPECT_EQ(text(), "q");
}

TEST_F(ByFinger, TypedCharactersAreForAnOpenEntryOnly) {
    headless::clear_events();
    type("x");
    EXPECT_EQ(headless::events(), "");
    open("");
    headless::raw(hw::typed_character, 0, 0x436, 0);
    type("\x1B\x02\n"
         "ab\b");
    Dialog(0, nullptr, "Above", "OK", nullptr, [](int) {});
    type("zz");
    headless::press(KEY_OK);
    EXPECT_EQ(text(), "\u0436a");
    headless::press(KEY_OK);
    expect_closed_with("\u0436a;");
}

// A digit that is typed is the one that can be read, wherever the cursor goes on.
TEST_F(ByFinger, ATemplateOfAPasswordShowsTheDigitThatWasTyped) {
    open("12-34", KBD_DATE | KBD_PASSWORD);
    tap_keys(u"9");
    EXPECT_EQ(board()->revealed, 0U);
    tap_keys(u"8");
    EXPECT_EQ(board()->revealed, 1U) << "not the sign before the cursor";
    headless::press(KEY_OK);
    expect_closed_with("98-34;");
}

TEST_F(ByFinger, TemplatesByFinger) {
    open("22.11.26", KBD_DATE);
    tap_keys(u"31");
    tap_code(code::backspace);
    tap_code(code::enter);
    expect_closed_with("32.11.26;");
}

class ByKeys : public keyboard_test::Test {
  protected:
    ByKeys() { use_keys(); }
    static void keys(const std::vector<int> &codes) {
        for (const int code : codes) headless::press(code);
    }
    static void select_command(uint16_t wanted) {
        while (board()->grid->area().is_zone) headless::press(KEY_DOWN);
        for (int i = 0; i < 9 && board()->grid->key()->code != wanted; ++i)
            headless::press(KEY_RIGHT);
        ASSERT_EQ(board()->grid->key()->code, wanted);
    }
};

TEST_F(ByKeys, ZonesAreEnteredAndLeft) {
    open("");
    EXPECT_FALSE(board()->grid->key());
    keys({KEY_OK, KEY_OK});
    EXPECT_EQ(text(), "g") << "the middle of the middle zone";
    EXPECT_FALSE(board()->grid->is_inside_zone()) << "the next way begins at the zones";
    keys({KEY_LEFT, KEY_OK, KEY_UP, KEY_LEFT, KEY_OK});
    EXPECT_EQ(text(), "gq");
    keys({KEY_UP, KEY_OK, KEY_BACK, KEY_OK, KEY_OK});
    EXPECT_EQ(text().size(), 3U);
    keys({KEY_PREV, KEY_NEXT, KEY_PREV2});
    EXPECT_EQ(text(), "gq ");
    EXPECT_EQ(board()->entry.cursor(), 2U);
    keys({KEY_OK, KEY_BACK, KEY_BACK});
    expect_closed_with("-;");
}

TEST_F(ByKeys, CommandsHaveARowOfTheirOwn) {
    open("old", KBD_NOSELECT);
    const auto command = [](uint16_t wanted) {
        select_command(wanted);
        headless::press(KEY_OK);
    };
    command(code::backspace);
    EXPECT_EQ(text(), "ol");
    EXPECT_EQ(board()->grid->key()->code, code::backspace) << "more of them are near";
    const int64_t start = headless::now();
    command(code::shift);
    EXPECT_GE(headless::now() - start, 390);
    EXPECT_TRUE(board()->grid->area().is_zone) << "back in the middle";
    keys({KEY_OK, KEY_OK});
    EXPECT_EQ(text(), "olG");
    command(code::language);
    keys({KEY_OK, KEY_OK});
    EXPECT_EQ(text(), "olG\u041F");
    command(code::space);
    command(code::clear);
    EXPECT_EQ(result(), "");
    command(code::enter);
    expect_closed_with(";");
}

TEST_F(ByKeys, PasswordsHaveTheEyeAmongTheCommands) {
    open("", KBD_PASSWORD);
    type("wm");
    headless::advance(1100);
    select_command(code::eye);
    const auto dots = keyboard_test::screen();
    headless::press(KEY_OK);
    EXPECT_TRUE(keyboard_test::screen() != dots);
    EXPECT_EQ(text(), "wm");
    headless::press(KEY_OK);
    EXPECT_TRUE(keyboard_test::screen() == dots);
    headless::press(KEY_BACK);
    open("wm", KBD_PASSWORD);
    select_command(code::eye);
    const auto stored = keyboard_test::screen();
    headless::press(KEY_OK);
    EXPECT_TRUE(keyboard_test::screen() == stored) << "what was there before is never shown";
    type("wm");
    headless::advance(1100);
    EXPECT_TRUE(keyboard_test::screen() == dots) << "nor is the eye open for what comes";
    headless::press(KEY_BACK);
    open("wm");
    for (const GridKey &key : board()->grid->keys()) EXPECT_NE(key.code, code::eye);
    headless::press(KEY_BACK);
    expect_closed_with("-;-;-;");
}

TEST_F(ByKeys, ALongLabelStaysOnItsKey) {
    const auto others = [&] {
        std::vector<std::vector<uint8_t>> parts;
        for (const GridKey &key : board()->grid->keys())
            if (key.code != code::enter) parts.push_back(part(grid_rect(*board(), key)));
        headless::press(KEY_BACK);
        return parts;
    };
    open("text");
    const auto plain = others();
    buffer = "text";
    OpenKeyboard("Title\0Accept this with everything", buffer.data(), 4, KBD_CUSTOM_ENTER_KEY,
                 keyboard_test::answer);
    headless::detail::settle();
    EXPECT_TRUE(others() == plain);
}

TEST_F(ByKeys, RowsOfFewKeysAreWalkedThrough) {
    open("", KBD_NUMERIC);
    ASSERT_TRUE(board()->grid->key());
    keys({KEY_OK, KEY_DOWN, KEY_OK, KEY_RIGHT, KEY_OK});
    EXPECT_EQ(text(), "256");
    headless::press(KEY_MENU);
    keys({KEY_OK});
    EXPECT_EQ(text(), "2566") << "there is no shift";
    headless::press(KEY_BACK);
    expect_closed_with("-;");
}

TEST_F(ByKeys, AHeldDirectionGoesOnAndAHeldKeyDoesNot) {
    open("");
    headless::key_down(KEY_OK);
    headless::advance(1600);
    headless::key_up(KEY_OK);
    EXPECT_EQ(text(), "");
    headless::key_down(KEY_RIGHT);
    headless::advance(1100);
    headless::key_up(KEY_RIGHT);
    headless::press(KEY_OK);
    EXPECT_EQ(text(), "g") << "three steps lead round to the middle";
    headless::press(KEY_BACK);
}

TEST_F(ByKeys, AFingerTypesHereToo) {
    open("");
    for (const GridKey &key : board()->grid->keys())
        if (key.code == 'q') {
            tap(grid_rect(*board(), key));
            break;
        }
    EXPECT_EQ(text(), "q");
    headless::press(KEY_BACK);
    headless::press(KEY_BACK);
    expect_closed_with("-;");
}

TEST_F(ByKeys, TheSelectionIsDrawnAndTakenBack) {
    open("");
    const auto start = keyboard_test::screen();
    keys({KEY_RIGHT});
    EXPECT_TRUE(keyboard_test::screen() != start);
    keys({KEY_LEFT});
    EXPECT_TRUE(keyboard_test::screen() == start);
    keys({KEY_OK, KEY_UP, KEY_RIGHT, KEY_BACK, KEY_DOWN, KEY_RIGHT, KEY_LEFT, KEY_UP, KEY_RIGHT});
    EXPECT_TRUE(keyboard_test::screen() == start);
    headless::press(KEY_BACK);
    expect_closed_with("-;");
    open("", KBD_INVERTED_ENTER_KEY);
    EXPECT_TRUE(keyboard_test::screen() != start);
}

// Of any kind, by fingers and by keys, and with what opens above; neither the record of the runtime
// nor the memory in use grows.
TEST_F(ByKeys, OpeningsEndAsTheyBegan) {
    const auto open_and_close = [&](int i) {
        i % 2 ? use_keys() : use_fingers();
        open("text", (i % 16) | (i % 3 ? 0 : int{KBD_NOHATCH}) | (i % 5 ? 0 : int{KBD_PASSWORD}));
        if (i % 7 == 0) Dialog(0, nullptr, "Above", "OK", nullptr, boxes::answer);
        type("9");
        if (i % 11) headless::press(KEY_OK);
        CloseKeyboard();
        keyboard_test::answers.clear();
        headless::clear_events();
        headless::clear_updates();
    };
    constexpr int all_kinds = 16 * 3 * 5 * 7 * 11;
    for (int i = 0; i < 64; ++i) open_and_close(i);
    const size_t in_use = mallinfo2().uordblks;
    for (int i = 0; i < times(repeats(300, 100), 10'000); ++i) open_and_close(i % all_kinds);
    headless::detail::settle();
    EXPECT_LE(mallinfo2().uordblks, in_use + 100'000);
    EXPECT_TRUE(keyboard_test::screen() == before);
    EXPECT_EQ(GetDialogShow(), 0);
    EXPECT_EQ(GetEventHandler(), headless::handler());
}

} // namespace
