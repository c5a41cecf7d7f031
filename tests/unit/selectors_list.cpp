// SPDX-License-Identifier: MIT
// Lists as screens: how they open above everything else, and how they go.
#include <climits>
#include <gtest/gtest.h>

#include "kelvane/dialogs.h"
#include "kelvane/keyboard.h"
#include "kelvane/menus.h"
#include "kelvane/selectors.h"
#include "lists_support.h"
#include "support/theme_file.h"

using namespace list_test;

namespace {

class OpenedList : public list_test::Test {
  protected:
    static int open(int count = 100, const irect &place = {}, int flags = 0) {
        ilist list{};
        list.title = "Title";
        list.place = place;
        list.flags = flags;
        list.rows = rows(count);
        return OpenList(&list);
    }
    void expect_closed() const {
        headless::advance(1);
        EXPECT_EQ(GetEventHandler(), headless::handler());
        EXPECT_TRUE(screen() == before);
    }
};

TEST_F(OpenedList, OpensChoosesAndLeavesThePageWhole) {
    const int list = open();
    ASSERT_GT(list, 0);
    EXPECT_EQ(boxes::update_calls(), "FullUpdate ");
    press_all({KEY_DOWN, KEY_NEXT, KEY_OK, KEY_MENU});
    EXPECT_EQ(take_told(), "selected:1 selected:15 chosen:15 context:15 ");
    EXPECT_EQ(GetListRow(list), 15);
    headless::clear_events();
    headless::press(KEY_BACK);
    EXPECT_EQ(take_told(), "closed:15 ");
    EXPECT_EQ(headless::events(), "RESTORE ");
    expect_closed();
    EXPECT_EQ(GetListRow(list), -1);
    use_multi_touch();
    open();
    headless::tap(570, 20);
    EXPECT_EQ(take_told(), "closed:0 ") << "the button in the title";
    expect_closed();
}

TEST_F(OpenedList, RowsMayComeAndGo) {
    const int list = open(0);
    const std::vector<uint8_t> empty = screen();
    press_all({KEY_OK, KEY_DOWN, KEY_MENU});
    UpdateList(list, 100000);
    SelectListRow(list, 50000);
    EXPECT_EQ(GetListRow(list), 50000);
    headless::press(KEY_UP);
    EXPECT_EQ(take_told(), "selected:49999 ");
    UpdateList(list, 20);
    EXPECT_EQ(GetListRow(list), 19);
    UpdateList(list, INT_MIN);
    EXPECT_TRUE(screen() == empty);
    CloseList(list);
    CloseList(list);
    UpdateList(list, 3);
    SelectListRow(list, 3);
    EXPECT_EQ(OpenList(nullptr), 0);
    EXPECT_EQ(take_told(), "");
    expect_closed();
}

TEST_F(OpenedList, ClosesWhatHasOpenedAboveIt) {
    static const imenu menu[] = {{ITEM_ACTIVE, 1, "One", nullptr}, {}};
    static char text[32];
    const std::function<void()> openers[] = {
        [] { Dialog(0, "", "Text", "Yes", "No", [](int) { told += "dialog "; }); },
        [] { OpenMenu(const_cast<imenu *>(menu), 0, 50, 50, [](int) { told += "menu "; }); },
        [] { OpenKeyboard("Name", text, 30, 0, [](char *) { told += "keyboard "; }); },
        [] {
            open(5, {100, 100, 300, 300, 0});
        }};
    for (const auto &above : openers) {
        const int list = open();
        then = [&](int) { above(); };
        headless::press(KEY_OK);
        then = nullptr;
        EXPECT_EQ(take_told(), "chosen:0 ");
        const std::vector<uint8_t> covered = screen();
        UpdateList(list, 50);
        EXPECT_TRUE(screen() == covered) << "it waits";
        CloseList(list);
        take_told();
        expect_closed();
    }
    for (const auto &below : openers) {
        below();
        const int list = open();
        headless::press(KEY_DOWN);
        EXPECT_EQ(take_told(), "selected:1 ");
        CloseDialog();
        CloseContextMenu();
        CloseKeyboard();
        CloseList(list);
        for (int i = 0; i < 3; ++i) CloseList(list - i);
        take_told();
        expect_closed();
    }
}

TEST_F(OpenedList, MayBeClosedByItsOwnCallbackAndOpenedAgain) {
    static int list;
    for (const int key : {KEY_OK, KEY_DOWN, KEY_NEXT, KEY_MENU, KEY_BACK}) {
        list = open();
        then = [](int) {
            then = nullptr;
            CloseList(list);
            list = open(3);
        };
        headless::press(key);
        EXPECT_GT(list, 0);
        CloseList(list);
        take_told();
        expect_closed();
    }
    int numbers[9];
    for (int &number : numbers) number = open();
    EXPECT_EQ(numbers[8], 0) << "above seven others";
    CloseList(numbers[0]);
    expect_closed();
}

TEST_F(OpenedList, MayBeClosedWhileItDraws) {
    static int left, list; // calls until it closes
    for (const irect &at : {irect{}, irect{100, 100, 300, 300, 0}})
        for (const int calls : {0, 1, 4, 20}) {
            ilist closing{};
            closing.title = "Title";
            closing.place = at;
            closing.rows = rows(100);
            closing.rows.fill = [](int, ilistrow *, void *) {
                EXPECT_GE(left, 0) << "nothing is asked any more";
                if (left-- == 0) CloseList(list);
            };
            left = INT_MAX;
            list = OpenList(&closing);
            left = calls;
            press_all({KEY_DOWN, KEY_NEXT, KEY_NEXT, KEY_NEXT, KEY_NEXT, KEY_NEXT});
            EXPECT_EQ(left, -1);
            left = 0;
            expect_closed();
        }
    take_told();
}

TEST_F(OpenedList, ShowsOnlyTheRowsThatChange) {
    const int list = open();
    headless::clear_updates();
    SelectListRow(list, 0);
    EXPECT_EQ(boxes::update_calls(), "");
    SelectListRow(list, 1);
    UpdateListRow(list, 3);
    UpdateListRow(list, 60);
    EXPECT_EQ(boxes::update_calls(), "PartialUpdateBW PartialUpdateBW ");
    EXPECT_EQ(headless::updates()[1].h, 48);
    EXPECT_EQ(take_told(), "");
    CloseList(list);
    expect_closed();
}

TEST_F(OpenedList, IsLaidOutAnewWhenTheScreenIsTurned) {
    int list = open(100, {}, LIST_TURNS);
    headless::command(801);
    EXPECT_EQ(ScreenWidth(), 800);
    headless::press(KEY_NEXT);
    EXPECT_EQ(take_told(), "selected:10 ");
    headless::clear_events();
    CloseList(list);
    headless::advance(1);
    EXPECT_EQ(headless::events(), "SHOW RESTORE ORIENTATION(1,0) ");
    SetOrientation(0);
    list = open();
    headless::command(803);
    EXPECT_EQ(ScreenWidth(), 600) << "that is for the application to do";
    SetOrientation(2);
    headless::advance(1);
    Repaint();
    headless::advance(1);
    const std::vector<uint8_t> turned = screen();
    CloseList(list);
    open();
    EXPECT_TRUE(screen() == turned);
    headless::press(KEY_BACK);
}

// Whatever changes beneath an open screen, it looks as one that is opened afterwards.
TEST_F(OpenedList, FollowsTheThemeTheLanguageAndTheOrientation) {
    use_multi_touch();
    write_file("system/language/en.txt", "Language\n@Date=Date\nTitle=Title\n");
    write_file("system/language/de.txt", "Language\n@Date=Datum\nTitle=Titel\n");
    write_file("system/language/xx.txt", "Language\n%RTL\n");
    write_file("system/themes/look.tqt", ThemeFile("unit.size=5\ncontext_menu.item.height=70\n"
                                                   "application.caption.height=90\n")
                                             .bytes());
    static const imoment start = {2026, 10, 18, 0, 0};
    const std::function<int()> openers[] = {
        [] { return open(); },
        [] {
            return open(100, {100, 300, 400, 400, 0});
        },
        [] { return OpenDateSelector(&start, nullptr, nullptr); },
        [] { return OpenPageSelector(3, 9, nullptr, nullptr); },
        [] { return OpenFontSelector("default", 24, nullptr, nullptr); },
    };
    const std::function<void(bool)> changes[] = {
        [](bool on) { OpenTheme(on ? "look" : ""); },
        [](bool on) { LoadLanguage(on ? "xx" : "en"); },
        [](bool on) { LoadLanguage(on ? "de" : "en"); },
        [](bool on) { SetOrientation(on ? 1 : 0); },
    };
    // How it hears of them.
    const std::function<void(int)> causes[] = {
        [](int) { headless::press(KEY_MUSIC); },
        [](int) {
            SendEvent(GetEventHandler(), EVT_HIDE, 0, 0);
            SendEvent(GetEventHandler(), EVT_SHOW, 0, 0);
        },
        [](int list) { UpdateList(list, 100); }, // of lists only
    };
    const auto close = [](int number) {
        CloseList(number);
        CloseSelector(number);
        headless::advance(1);
    };
    for (size_t i = 0; i < std::size(openers) * std::size(changes) * 3; ++i) {
        const size_t opener = i % std::size(openers), change = i / std::size(openers) / 3;
        const size_t cause = i / std::size(openers) % 3;
        if (opener >= 2 && cause == 2) continue;
        changes[change](false);
        ClearScreen();
        const std::vector<uint8_t> page = screen();
        const int number = openers[opener]();
        changes[change](true);
        causes[cause](number);
        headless::advance(1);
        const std::vector<uint8_t> changed = screen();
        close(number);
        const bool is_turn = change == 3;
        EXPECT_TRUE(is_turn || screen() == page) << opener << " " << change << " " << cause;
        ClearScreen();
        const int anew = openers[opener]();
        EXPECT_TRUE(screen() == changed) << opener << " " << change << " " << cause;
        close(anew);
        changes[change](false);
        headless::advance(1);
    }
    open();
    LoadLanguage("xx");
    headless::press(KEY_MUSIC);
    headless::tap(30, 20);
    EXPECT_EQ(take_told(), "closed:0 ") << "the button is where it is shown";
    LoadLanguage("en");
}

TEST_F(OpenedList, AWindowLiesOnTheScreen) {
    const irect places[] = {{2000, 2000, 300, 300, 0},
                            {-5000, -5000, 300, 300, 0},
                            {INT_MAX, INT_MIN, INT_MAX, INT_MAX, 0},
                            {0, 620, 600, 180, 0},
                            {10, 10, 5, 5, 0}};
    for (const int orientation : {0, 1})
        for (const irect &place : places) {
            SetOrientation(orientation);
            const int list = open(100, place);
            const irect row = GetListRowRect(list, 0);
            EXPECT_GT(row.w, 200) << place.x;
            EXPECT_GE(std::min(row.x, row.y), 0) << place.x;
            EXPECT_LE(row.x + row.w, ScreenWidth()) << place.x;
            EXPECT_LE(row.y + row.h, ScreenHeight()) << place.x;
            CloseList(list);
            headless::advance(1);
        }
    SetOrientation(0);
    const int list = open(100, {0, 620, 600, 180, 0}, LIST_TURNS);
    headless::command(801);
    const irect row = GetListRowRect(list, 0);
    EXPECT_LT(row.y + row.h, 600);
    const std::vector<uint8_t> seen = screen();
    EXPECT_NE(std::count(seen.begin(), seen.end(), 0), 0) << "no white screen";
    CloseList(list);
}

} // namespace
