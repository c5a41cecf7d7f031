// SPDX-License-Identifier: MIT
// Opening, every flag and every ending.
#include <gtest/gtest.h>

#include "kelvane/config.h"
#include "kelvane/languages.h"
#include "kelvane/menus.h"
#include "kelvane/timers.h"
#include "keyboard_support.h"
#include "support/theme_file.h"

using namespace keyboard;

namespace {

class Keyboards : public keyboard_test::Test {
  protected:
    static std::string &answers() { return keyboard_test::answers; }
    // The next expectation starts afresh.
    void forget() {
        answers().clear();
        headless::clear_events();
        headless::clear_updates();
    }
};

TEST_F(Keyboards, EnterWritesBackAndCancelRestores) {
    open("old");
    EXPECT_EQ(IsKeyboardOpened(), 1);
    EXPECT_EQ(GetDialogShow(), 1);
    EXPECT_EQ(kvstate.msgtop, board()->place.whole.y);
    EXPECT_NE(kvstate.uiflags & UI_KEYBOARD_OPEN, 0);
    type("new");
    EXPECT_EQ(result(), "old") << "until Enter";
    tap_code(code::enter);
    expect_closed_with("new;");
    EXPECT_EQ(result(), "new");
    open("old");
    type("x");
    tap_code(code::clear);
    EXPECT_EQ(result(), "");
    type("y");
    tap_code(code::cancel);
    expect_closed_with("new;-;");
    EXPECT_EQ(result(), "old");
}

TEST_F(Keyboards, AllCharactersOfTheBufferAndNoMore) {
    open("\u0416\u0417", KBD_NOSELECT, 3);
    type("abcdef");
    EXPECT_EQ(text(), "\u0416\u0417ab");
    headless::press(KEY_OK);
    expect_closed_with("\u0416\u0417a;");
    open("longer than that", 0, 6);
    EXPECT_EQ(text(), "longer");
    headless::press(KEY_BACK);
    EXPECT_EQ(result(), "longer than that");
    open("x", 0, -5);
    type("ab");
    headless::press(KEY_OK);
    EXPECT_EQ(result(), "");
    char small[4] = "";
    OpenKeyboard(nullptr, small, 1, 0, keyboard_test::answer);
    headless::raw(hw::typed_character, 0, 0x20AC, 0);
    headless::press(KEY_OK);
    EXPECT_STREQ(small, "\u20AC") << "three bytes a character";
}

// What the handler before hears, in the order of the flags.
TEST_F(Keyboards, FlagsSayWhatTheHandlerBeforeHears) {
    const struct {
        int flags;
        uint16_t ending;
        const char *events;
    } cases[] = {
        {0, code::enter, "RESTORE SHOW "},
        {KBD_NO_SHOW, code::cancel, "RESTORE "},
        {KBD_NOHATCH, code::enter, "RESTORE "},
        {KBD_SENDKEYBOARDSTATEEVENTS, code::enter, "RESTORE SHOW KEYPRESS(16,0) KEYRELEASE(16,0) "},
        {KBD_SENDKEYBOARDSTATEEVENTS | KBD_NO_SHOW, code::cancel,
         "RESTORE KEYPRESS(16,0) KEYRELEASE(16,0) "},
        {KBD_NEXT_KEY, code::enter, "RESTORE SHOW "},
        {KBD_NEXT_KEY, code::next, "RESTORE SHOW KEYPRESS(16,0) KEYRELEASE(16,0) "},
        {KBD_SENDKEYBOARDSTATEEVENTS, code::none, "RESTORE SHOW "}};
    for (const auto &c : cases) {
        SetKeyboardRate(700, 300);
        open("text", c.flags);
        EXPECT_EQ(GetKeyboardFlags(), c.flags);
        EXPECT_EQ(kvstate.keytime1, 500);
        forget();
        if (c.ending == code::none)
            CloseKeyboard();
        else
            tap_code(c.ending);
        expect_closed_with(c.ending == code::cancel || c.ending == code::none ? "-;" : "text;");
        const std::string heard = headless::events();
        EXPECT_EQ(heard.substr(0, heard.find("MTSYNC")), c.events) << std::hex << c.flags;
        EXPECT_EQ(kvstate.keytime1, 700);
        EXPECT_EQ(kvstate.keytime2, 300);
    }
}

TEST_F(Keyboards, FlagsSayWhatIsUpdated) {
    const struct {
        int flags;
        const char *opening, *closing;
    } cases[] = {{0, "SoftUpdate ", "FullUpdate SoftUpdate "},
                 {KBD_NOHATCH, "SoftUpdate ", "SoftUpdate "},
                 {KBD_NOUPDATE_AFTER_OPEN, "", "FullUpdate SoftUpdate "},
                 {KBD_NOUPDATE_AFTER_CLOSE, "SoftUpdate ", ""}};
    for (const auto &c : cases) {
        headless::clear_updates();
        open("text", c.flags);
        EXPECT_EQ(keyboard_test::update_calls(), c.opening) << std::hex << c.flags;
        headless::clear_updates();
        const int64_t start = headless::now();
        headless::press(KEY_BACK);
        EXPECT_EQ(keyboard_test::update_calls(), c.closing) << std::hex << c.flags;
        EXPECT_EQ(headless::now() - start >= 50, !(c.flags & KBD_NOUPDATE_AFTER_CLOSE));
        EXPECT_TRUE(keyboard_test::screen() == before);
    }
    open("text");
    headless::clear_updates();
    CloseKeyboard();
    EXPECT_EQ(keyboard_test::update_calls(), "FullUpdate ") << "not after a call";
}

TEST_F(Keyboards, TheRestOfTheScreenIsHatchedOrLeft) {
    open("text");
    const int top = board()->place.whole.y;
    const auto rows = static_cast<std::ptrdiff_t>(top) * kvstate.framebuffer->scanline;
    EXPECT_FALSE(
        std::equal(before.begin(), before.begin() + rows, keyboard_test::screen().begin()));
    headless::press(KEY_BACK);
    open("text", KBD_NOHATCH);
    EXPECT_TRUE(std::equal(before.begin(), before.begin() + rows, keyboard_test::screen().begin()));
    headless::press(KEY_BACK);
    write_file("system/themes/clear.tqt", ThemeFile("keyboard.transparent.screen=1\n").bytes());
    OpenTheme("clear");
    open("text");
    EXPECT_TRUE(std::equal(before.begin(), before.begin() + rows, keyboard_test::screen().begin()))
        << "a pixel of eight bits is not dimmed";
    headless::press(KEY_BACK);
    expect_closed_with("-;-;-;");
}

TEST_F(Keyboards, EnterCanBeRelabelledInvertedAndSwitchedOff) {
    open("text", KBD_NO_ENTER | KBD_NEXT_KEY);
    for (const uint16_t key : {code::enter, code::next}) tap_code(key);
    headless::press(KEY_OK);
    EXPECT_EQ(IsKeyboardOpened(), 1);
    headless::press(KEY_BACK);
    forget();
    char find[64] = "";
    OpenKeyboard("Title\0@Next", find, 9, KBD_CUSTOM_ENTER_KEY | KBD_INVERTED_ENTER_KEY,
                 keyboard_test::answer);
    EXPECT_EQ(board()->enter_label, GetLangText("@Next"));
    EXPECT_FALSE(board()->enter_is_ok);
    const irect r = board()->place.buttons[0];
    EXPECT_EQ(keyboard_test::screen()[static_cast<size_t>((r.y + 2) * ScreenWidth() + r.x + 20)],
              0);
    headless::press(KEY_OK);
    expect_closed_with(";");
}

TEST_F(Keyboards, WithoutABufferCharactersGoToTheHandlerBefore) {
    OpenKeyboard(nullptr, nullptr, 9, KBD_NO_SHOW, keyboard_test::answer);
    headless::detail::settle();
    const irect whole = board()->place.whole;
    headless::clear_events();
    tap_keys(u"q");
    tap_code(code::backspace);
    tap_code(code::clear);
    type("Z");
    EXPECT_EQ(headless::events(),
              "KEYPRESS(113,0) KEYRELEASE(113,0) KEYPRESS(90,0) KEYRELEASE(90,0) ");
    headless::press(KEY_OK);
    expect_closed_with("-;");
    irect asked;
    GetKeyboardRectWithParams(&asked, nullptr, nullptr, 0);
    EXPECT_EQ(asked.h, whole.h);
    GetKeyboardRectWithParams(&asked, "Title", "", 0);
    EXPECT_GT(asked.h, whole.h);
}

TEST_F(Keyboards, CallbacksMayOpenTheNextThing) {
    static char shared[32];
    OpenKeyboard("One", shared, 9, 0, [](char *) {
        answers() += "1";
        OpenKeyboardEx(
            "Two", shared, 9, 0,
            [](char *result, void *data) {
                answers() += std::string(result) + *static_cast<char *>(data);
                Dialog(0, nullptr, "Sure?", "Yes", "No", [](int) { answers() += "!"; });
            },
            const_cast<char *>("2"));
    });
    type("a");
    headless::press(KEY_OK);
    EXPECT_EQ(answers(), "1");
    ASSERT_EQ(IsKeyboardOpened(), 1);
    EXPECT_EQ(text(), "a");
    type("b");
    headless::press(KEY_OK);
    EXPECT_EQ(GetDialogShow(), 1);
    headless::press(KEY_OK);
    expect_closed_with("1b2!");
}

TEST_F(Keyboards, OpeningAnotherOneClosesTheFirst) {
    open("first");
    char second[32] = "second";
    OpenKeyboard("Second", second, 9, 0, keyboard_test::answer);
    EXPECT_EQ(answers(), "-;");
    EXPECT_EQ(GetDialogShow(), 1);
    headless::press(KEY_OK);
    expect_closed_with("-;second;");
    // A callback that opens one of its own goes before the one that was about to open.
    static char own[32] = "own";
    forget();
    OpenKeyboard("First", second, 9, 0,
                 [](char *) { OpenKeyboard("Own", own, 9, 0, keyboard_test::answer); });
    char third[32] = "third";
    OpenKeyboard("Third", third, 9, 0, keyboard_test::answer);
    EXPECT_EQ(answers(), "-!;");
    EXPECT_EQ(text(), "own");
    headless::press(KEY_OK);
    expect_closed_with("-!;own;");
}

TEST_F(Keyboards, APageThatIsDrawnLateDoesNotStayAboveTheNextOne) {
    static char next[16] = "text";
    open("text");
    const irect whole = board()->place.whole;
    const auto shown = part(whole);
    headless::on_event([](int type, int, int) {
        if (type == EVT_SHOW) FillArea(0, 0, ScreenWidth(), ScreenHeight(), BLACK);
        return 0;
    });
    OpenKeyboard("Title", next, 9, 0, [](char *) { OpenKeyboard("Title", next, 9, 0, nullptr); });
    headless::detail::settle();
    EXPECT_TRUE(part(whole) == shown);
    headless::press(KEY_OK);
    ASSERT_EQ(IsKeyboardOpened(), 1);
    EXPECT_TRUE(part(whole) == shown) << "opened by a callback";
    headless::press(KEY_BACK);
}

// Whatever is closed first: nothing stays above that gives the input to a handler that is gone.
TEST_F(Keyboards, WhatIsAboveIsClosedFirst) {
    imenu items[] = {{ITEM_ACTIVE, 1, const_cast<char *>("One"), nullptr}, {}};
    const auto open_dialog = [] { Dialog(0, nullptr, "Above", "OK", nullptr, boxes::answer); };
    const auto open_menu = [&] { OpenMenu(items, 0, 9, 9, [](int) { answers() += "menu"; }); };
    char other[32] = "";
    open("first");
    open_dialog();
    open_menu();
    CloseKeyboard();
    expect_closed_with("-;");
    open_menu();
    open("second");
    open_menu();
    open_dialog();
    OpenKeyboard("Third", other, 9, 0, keyboard_test::answer);
    EXPECT_EQ(answers(), "-;-;");
    EXPECT_EQ(GetDialogShow(), 1);
    CloseContextMenu();
    expect_closed_with("-;-;-;");
    open_dialog();
    open("fourth");
    OpenProgressbar(0, nullptr, "Above", 0, nullptr);
    CloseDialog();
    EXPECT_EQ(GetDialogShow(), 2) << "the bar alone";
    CloseKeyboard();
    CloseDialog();
    expect_closed_with("-;-;-;-;");
    open_dialog();
    open("fifth");
    headless::press(KEY_OK);
    headless::press(KEY_OK);
    expect_closed_with("-;-;-;-;fifth;");
}

TEST_F(Keyboards, ACallbackMayCloseTheScreen) {
    char first[8] = "", second[8] = "";
    OpenKeyboard("First", first, 2, 0, [](char *) {
        answers() += "closed";
        ClearOnExit();
    });
    OpenKeyboard("Second", second, 2, 0, keyboard_test::answer);
    EXPECT_EQ(IsKeyboardOpened(), 0);
    EXPECT_EQ(answers(), "closed");
}

TEST_F(Keyboards, SpecialLayoutsAndTheWayBack) {
    const struct {
        int kind;
        const char *typed, *result;
        bool has_shift;
    } cases[] = {{KBD_ENTEXT, "ab", "ab", true},
                 {KBD_PHONE, "+49", "+49", false},
                 {KBD_NUMERIC, "12", "12", false},
                 {KBD_IPADDR, "10.", "10.", false},
                 {KBD_URL, "a/", "a/", true},
                 {KBD_HEX, "0F", "0F", false},
                 {3, "q", "q", true},
                 {6, "q", "q", true},
                 {15, "q", "q", true}};
    for (const auto &c : cases) {
        forget();
        open("", c.kind);
        for (const char key : std::string(c.typed)) tap_code(static_cast<uint16_t>(key));
        const int64_t start = headless::now();
        if (place_of(code::shift).w > 0) tap_code(code::shift);
        headless::press(KEY_MENU);
        EXPECT_EQ(headless::now() > start + 389, c.has_shift) << c.kind;
        tap_code(code::enter);
        EXPECT_EQ(result(), c.result);
    }
    open("");
    EXPECT_EQ(board()->layouts.languages.size(), 3U) << "the user's again";
    headless::press(KEY_BACK);
}

TEST_F(Keyboards, CustomLayoutsAndWhatReplacesThem) {
    write_file("system/language/keyboard/plain.kbd", "PL\n\n\nxyz\n");
    write_file("system/language/keyboard/touch.kbd",
               "TO: x\n" + std::string(12, '\n') + "m n\n--\nM N\n--\n1 2\n--\n");
    const struct {
        const char *name;
        int flags;
        const char *code;
    } cases[] = {{"touch", 0, "TO"},   {"TOUCH", 0, "TO"},
                 {"plain", 0, "EN"},   {"plain", KBD_KEEP_LAYOUT, "PL"},
                 {"missing", 0, "EN"}, {nullptr, KBD_KEEP_LAYOUT, "EN"}};
    char text[32] = "";
    for (const auto &c : cases) {
        OpenCustomKeyboard(c.name, "Title", text, 9, c.flags, keyboard_test::answer);
        EXPECT_EQ(board()->language().code, c.code);
        const bool is_user = board()->layouts.languages.size() == 3;
        EXPECT_EQ(is_user, c.name && !(c.flags & KBD_KEEP_LAYOUT) && std::string(c.code) == "EN");
        CloseKeyboard();
    }
    use_keys();
    OpenCustomKeyboard("plain", "Title", text, 9, 0, keyboard_test::answer);
    EXPECT_EQ(board()->language().code, "PL") << "fingers alone need touch rows";
    CloseKeyboard();
}

TEST_F(Keyboards, ItFollowsAScreenThatIsTurned) {
    for (const auto use : {use_fingers, use_keys}) {
        SetOrientation(0);
        use();
        open("text", KBD_NOSELECT);
        for (const int orientation : {1, 3, 2, 0}) {
            SetOrientation(orientation);
            const auto send = [](int type, int x, int y) {
                SendEvent(GetEventHandler(), type, x, y);
                headless::detail::settle();
            };
            send(EVT_POINTERMOVE, 0, 0);
            const irect whole = board()->place.whole, key = place_of('q');
            EXPECT_EQ(whole.w, ScreenWidth());
            EXPECT_EQ(whole.y + whole.h, ScreenHeight());
            send(EVT_POINTERDOWN, key.x + 1, key.y + 1);
            send(EVT_POINTERUP, key.x + 1, key.y + 1);
        }
        EXPECT_EQ(text(), board()->way == Way::finger ? "textqqqq" : "text");
        CloseKeyboard();
    }
    EXPECT_EQ(kvstate.msgtop, ScreenHeight());
}

TEST_F(Keyboards, AThemeThatChangesMeanwhileIsForTheNextOne) {
    write_file("system/themes/large.tqt", ThemeFile("unit.size=6\n").bytes());
    for (const auto use : {use_keys, use_fingers}) {
        OpenTheme("none");
        use();
        open("text");
        type("\b");
        const auto shown = keyboard_test::screen();
        OpenTheme("large");
        FillArea(0, board()->place.whole.y, ScreenWidth(), 200, BLACK);
        SendEvent(GetEventHandler(), EVT_SHOW, 0, 0);
        headless::detail::settle();
        EXPECT_TRUE(keyboard_test::screen() == shown);
        CloseKeyboard();
        open("text");
        EXPECT_EQ(board()->look.unit, 6);
        CloseKeyboard();
    }
    expect_closed_with("-;-;-;-;");
}

TEST_F(Keyboards, AScreenThatWasTurnedIsDrawnByTheApplication) {
    for (const int flags : {0, int{KBD_NO_SHOW}, int{KBD_NOHATCH}}) {
        SetOrientation(0);
        open("text", flags);
        SetOrientation(1);
        headless::clear_events();
        headless::press(KEY_BACK);
        EXPECT_EQ(headless::events(), "RESTORE SHOW ") << flags;
    }
    irect turned;
    GetKeyboardRect(&turned);
    EXPECT_EQ(turned.w, 800);
    EXPECT_EQ(turned.y + turned.h, 600);
}

TEST_F(Keyboards, WhatCannotBeDone) {
    CloseKeyboard();
    GetKeyboardRect(nullptr);
    GetKeyboardRectWithParams(nullptr, nullptr, nullptr, 0);
    expect_closed_with("");
    open("text");
    SendEvent(GetEventHandler(), 124, 0, 0);
    headless::raw(40, 0, 1, 2);
    EXPECT_EQ(IsKeyboardOpened(), 1);
    CloseApp();
    headless::advance(100);
    ClearOnExit();
    EXPECT_EQ(answers(), "") << "nobody is called when the application ends";
    EXPECT_EQ(IsKeyboardOpened(), 0);
}

TEST_F(Keyboards, PasswordsAreNotLogged) {
    testing::internal::CaptureStderr();
    open("secret", KBD_PASSWORD, 12);
    headless::press(KEY_BACK);
    open("plain", KBD_NOSELECT, 12);
    headless::press(KEY_BACK);
    const std::string log = testing::internal::GetCapturedStderr();
    EXPECT_NE(log.find("OpenKeyboard('Title', '', 12, F=2000000)\n"), log.npos);
    EXPECT_NE(log.find("OpenKeyboard('Title', 'plain', 12, F=200)\n"), log.npos);
}

} // namespace
