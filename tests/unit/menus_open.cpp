// SPDX-License-Identifier: MIT
// Menus by keys and by finger over a page, as an application opens them.
#include <gtest/gtest.h>
#include <malloc.h>

#include "kelvane/languages.h"
#include "kelvane/updates.h"
#include "menus_support.h"
#include "support/repeats.h"

using namespace menu_test;

namespace {

class Menus : public menu_test::Test {};

imenu leaf[] = {{ITEM_ACTIVE, 70, "Leaf", nullptr}, {ITEM_ACTIVE, 71, "Twig", nullptr}, {}};

TEST_F(Menus, EveryKeyDoesWhatItSays) {
    const struct {
        std::vector<int> keys;
        const char *answer;
    } cases[] = {{{KEY_OK}, "1 "},
                 {{KEY_NEXT}, "1 "},
                 {{KEY_DOWN, KEY_OK}, "3 "},
                 {{KEY_NEXT2, KEY_NEXT2, KEY_NEXT}, "5 "},
                 {{KEY_UP, KEY_OK}, "5 "},
                 {{KEY_PREV2, KEY_PREV2, KEY_OK}, "3 "},
                 {{KEY_BACK}, "-1 "},
                 {{KEY_MENU}, "-1 "},
                 {{KEY_POWER}, "-1 "},
                 {{KEY_LEFT}, "-1 "},
                 {{KEY_PREV}, "-1 "},
                 {{KEY_RIGHT, KEY_HOME, KEY_PLUS, KEY_MUSIC, KEY_DOWN, KEY_OK}, "3 "}};
    Items items(
        {ITEM_HEADER, ITEM_ACTIVE, ITEM_SEPARATOR, ITEM_BULLET, ITEM_INACTIVE, ITEM_ACTIVE});
    for (const auto &c : cases) {
        answers.clear();
        items.open(1);
        for (const int key : c.keys) {
            EXPECT_EQ(answers, "");
            headless::press(key);
        }
        expect_closed_with(c.answer);
    }
}

TEST_F(Menus, WhatCannotBeOpenedIsIgnored) {
    Items items({ITEM_ACTIVE}), empty({});
    OpenMenu(nullptr, 0, 0, 0, answer);
    OpenMenuEx(nullptr, 0, 0, 0, answer);
    OpenMenuEx(empty.get(), 0, 0, 0, answer);
    OpenMenuEx(items.get(), 0, 0, 0, nullptr);
    OpenContextMenu(nullptr);
    SetContextMenu(nullptr);
    SetContextMenu("unknown");
    UpdateMenuEx(items.get());
    CloseContextMenu();
    OpenMenu3x3(nullptr, nullptr, 0, answer);
    CalculatePosition(nullptr, nullptr, nullptr);
    GetMenuRect(nullptr, leaf);
    EXPECT_EQ(CreateContextMenu(nullptr), nullptr);
    expect_closed_with("");
}

TEST_F(Menus, AMenuWithoutAChoiceCanOnlyBeDismissed) {
    for (const auto &types :
         {std::vector<int>{ITEM_HEADER, ITEM_INACTIVE}, {ITEM_HIDDEN | 2}, {4}}) {
        answers.clear();
        Items items(types);
        items.open();
        press_all({KEY_OK, KEY_NEXT, KEY_DOWN, KEY_UP, KEY_RIGHT});
        EXPECT_EQ(answers, "");
        EXPECT_EQ(current(), -1);
        headless::press(KEY_BACK);
        expect_closed_with("-1 ");
    }
}

TEST_F(Menus, SixLevelsOpenAndTheSeventhDoesNot) {
    imenu levels[8][3] = {};
    for (int i = 0; i < 8; i++) {
        levels[i][0] = {ITEM_ACTIVE, static_cast<short>(10 * i), "Plain", nullptr};
        levels[i][1] = {ITEM_SUBMENU, static_cast<short>(10 * i + 1), "Deeper",
                        i < 7 ? levels[i + 1] : nullptr};
    }
    OpenMenu(levels[0], 1, 24, 58, answer);
    for (int level = 2; level <= 6; level++) {
        headless::press(level % 2 ? KEY_OK : KEY_RIGHT);
        EXPECT_EQ(menus::level_count(), level);
        EXPECT_EQ(current(), 0) << "the first that can be chosen";
        headless::press(KEY_DOWN);
    }
    headless::press(KEY_OK);
    EXPECT_EQ(menus::level_count(), 6);
    headless::press(KEY_PREV);
    headless::press(KEY_LEFT);
    EXPECT_EQ(menus::level_count(), 4);
    EXPECT_EQ(current(), 1) << "the row that opened it";
    press_all({KEY_UP, KEY_OK});
    expect_closed_with("30 ");
}

TEST_F(Menus, EachLevelPutsBackWhatItCovers) {
    imenu menu[] = {{ITEM_HEADER, 0, "Title", nullptr},
                    {ITEM_SUBMENU, 1, "More", leaf},
                    {ITEM_SUBMENU, 2, "Nothing", nullptr},
                    {}};
    OpenMenu(menu, 1, 24, 58, answer);
    const std::vector<uint8_t> first = screen();
    EXPECT_TRUE(first != before);
    headless::press(KEY_RIGHT);
    EXPECT_TRUE(screen() != first);
    headless::press(KEY_LEFT);
    EXPECT_TRUE(screen() == first);
    press_all({KEY_DOWN, KEY_OK, KEY_RIGHT});
    EXPECT_EQ(menus::level_count(), 1) << "there is no submenu";
    headless::press(KEY_UP);
    EXPECT_TRUE(screen() == first);
    headless::clear_updates();
    press_all({KEY_RIGHT, KEY_DOWN, KEY_OK});
    expect_closed_with("71 ");
    EXPECT_EQ(std::string(headless::updates().back().call), "FullUpdate");
}

TEST_F(Menus, TheCanvasClipAndFontOfTheApplicationStay) {
    std::vector<uint8_t> pixels(64 * 64, 7);
    icanvas own = {64, 64, 64, 8, 0, 63, 0, 63, pixels.data()};
    ifont *font = OpenFont("default", 13, 1);
    SetCanvas(&own);
    SetClip(3, 4, 20, 30);
    SetFont(font, 0x123456);
    Items items({ITEM_HEADER, ITEM_ACTIVE, ITEM_ACTIVE});
    items.open(1);
    press_all({KEY_DOWN, KEY_OK});
    const irect clip = GetClipRect();
    EXPECT_EQ(GetCanvas(), &own);
    EXPECT_EQ(std::vector({clip.x, clip.y, clip.w, clip.h}), std::vector({3, 4, 20, 30}));
    EXPECT_EQ(GetFont(), font);
    EXPECT_EQ(kvstate.current_color, 0x123456);
    EXPECT_EQ(pixels, std::vector<uint8_t>(64 * 64, 7));
    SetCanvas(nullptr);
    CloseFont(font);
    expect_closed_with("2 ");
}

TEST_F(Menus, AStepUpdatesTheMenuOnceInBlackAndWhite) {
    Items items({ITEM_ACTIVE, ITEM_ACTIVE, ITEM_ACTIVE});
    items.open();
    const irect r = menus::top()->rect;
    headless::advance(100);
    headless::clear_updates();
    headless::press(KEY_DOWN);
    ASSERT_EQ(headless::updates().size(), 1U);
    const headless::Update &u = headless::updates()[0];
    EXPECT_EQ(u.mode, UPDATE_BW);
    EXPECT_LE(u.x, r.x);
    EXPECT_GE(u.x, r.x - 4);
    EXPECT_LE(u.w, r.w + 8);
    EXPECT_LE(u.h, r.h + 8);
    headless::press(KEY_BACK);
}

TEST_F(Menus, FingersChooseAndDismiss) {
    for (int multi_touch = 0; multi_touch < 2; ++multi_touch) {
        multi_touch ? use_multi_touch() : use_keys();
        Items items({ITEM_HEADER, ITEM_ACTIVE, ITEM_INACTIVE, ITEM_SEPARATOR, ITEM_ACTIVE});
        answers.clear();
        items.open(1);
        for (const int row : {2, 3, 0}) tap_row(row);
        headless::tap(menus::top()->rect.x + 40, menus::top()->rect.y + 1);
        EXPECT_EQ(answers, "") << "nothing there to choose";
        EXPECT_EQ(current(), 1);
        const irect last = row_rect(4), first = row_rect(1);
        headless::pointer(EVT_POINTERDOWN, last.x + 50, last.y + 10);
        EXPECT_EQ(current(), 4);
        headless::pointer(EVT_POINTERUP, first.x + 50, first.y + 10);
        EXPECT_EQ(answers, "") << "lifted on another row";
        tap_row(4);
        expect_closed_with("4 ");
        items.open(1);
        headless::tap(590, 790);
        expect_closed_with("4 -1 ");
    }
}

TEST_F(Menus, ATapOutsideClosesOneLevel) {
    for (const auto turn : {write_left_to_right, write_right_to_left}) {
        answers.clear();
        turn();
        imenu menu[] = {{ITEM_SUBMENU, 1, "More", leaf}, {}};
        OpenMenu(menu, 0, 200, 58, answer);
        tap_row(0);
        ASSERT_EQ(menus::level_count(), 2);
        headless::tap(590, 790);
        EXPECT_EQ(menus::level_count(), 1);
        headless::tap(590, 790);
        expect_closed_with("-1 ");
    }
}

TEST_F(Menus, TitleBarsHaveAButtonThatDismisses) {
    for (const bool is_first : {true, false}) {
        answers.clear();
        Items items({is_first ? ITEM_HEADER : ITEM_ACTIVE, ITEM_HEADER, ITEM_ACTIVE});
        items.open(2);
        const irect r = menus::top()->rect;
        headless::tap(r.x + r.w - 3 - 8 - 16, r.y + 3 + 26);
        expect_closed_with(is_first ? "-1 " : "0 ");
    }
}

TEST_F(Menus, PagesTurnWithTheSelectionAndHeldKeys) {
    std::vector<int> types(60, ITEM_ACTIVE);
    types[0] = ITEM_HEADER;
    Items items(types);
    items.open(1);
    const menus::Menu &menu = *menus::top();
    ASSERT_GT(menu.level().last_page, 2);
    SendEvent(GetEventHandler(), EVT_KEYREPEAT, KEY_DOWN, 1);
    headless::advance(10);
    EXPECT_EQ(menu.level().page, 1);
    const menus::Row &selected = *menu.level().selected();
    EXPECT_EQ((&selected - 1)->item.position, -1) << "it follows the repeated title";
    headless::press(KEY_UP);
    headless::press(KEY_UP);
    EXPECT_EQ(menu.level().page, 0) << "past the top of a page";
    SendEvent(GetEventHandler(), EVT_KEYREPEAT, KEY_PREV2, 2);
    headless::advance(10);
    EXPECT_EQ(menu.level().page, 0);
    for (int i = 0; i < 9; i++) SendEvent(GetEventHandler(), EVT_KEYREPEAT, KEY_NEXT2, 3);
    headless::advance(10);
    EXPECT_EQ(menu.level().page, menu.level().last_page);
    headless::press(KEY_OK);
    EXPECT_NE(answers, "-1 ");
}

// A finger goes down on the middle of a row, moves so far and, unless it rests, is lifted there.
enum class Then { lift, rest };
void drag(const irect &row, int dy, Then then = Then::lift) {
    const int x = row.x + row.w / 2, y = row.y + row.h / 2;
    headless::pointer(EVT_POINTERDOWN, x, y);
    headless::pointer(EVT_POINTERMOVE, x, y + dy / 2);
    headless::pointer(EVT_POINTERMOVE, x, y + dy);
    if (then == Then::lift) headless::pointer(EVT_POINTERUP, x, y + dy);
}

TEST_F(Menus, RowsFollowTheFingerAndStopAtTheEnds) {
    use_multi_touch();
    Items items(std::vector<int>(60, ITEM_ACTIVE));
    items.open(0);
    const irect menu = menus::top()->rect, first = row_rect(0), ninth = row_rect(8);
    const std::vector<uint8_t> at_first = screen();
    drag(ninth, -6 * first.h, Then::rest);
    EXPECT_EQ(row_rect(8).y, ninth.y - 6 * first.h) << "before it is lifted";
    EXPECT_TRUE(screen() != at_first);
    headless::pointer(EVT_POINTERUP, ninth.x + 9, ninth.y + first.h / 2 - 5 * first.h);
    EXPECT_EQ(row_rect(8).y, ninth.y - 5 * first.h);
    headless::advance(300);
    for (int i = 0; i < 8; ++i) drag(ninth, -8 * first.h);
    const int margin = first.y - menu.y;
    EXPECT_EQ(row_rect(59).y + first.h, menu.y + menu.h - margin);
    for (int i = 0; i < 8; ++i) drag(first, 8 * first.h);
    EXPECT_EQ(current(), 0) << "a drag selects nothing";
    EXPECT_EQ(row_rect(0).y, first.y);
    EXPECT_TRUE(screen() == at_first);
    headless::press(KEY_UP);
    EXPECT_EQ(current(), 59);
    EXPECT_LE(row_rect(59).y + first.h, menu.y + menu.h) << "it comes into sight";
    headless::press(KEY_OK);
    expect_closed_with("59 ");
}

TEST_F(Menus, ATapChoosesWhereAFingerMovesRows) {
    use_multi_touch();
    Items items(std::vector<int>(60, ITEM_ACTIVE));
    items.open(0);
    drag(row_rect(10), 4, Then::rest);
    EXPECT_EQ(current(), 0) << "the finger may be about to drag";
    headless::advance(200);
    EXPECT_EQ(current(), 10) << "it rests";
    headless::pointer(EVT_POINTERUP, row_rect(11).x + 50, row_rect(11).y + 10);
    EXPECT_EQ(answers, "") << "lifted on another row";
    drag(row_rect(10), -40);
    EXPECT_EQ(answers, "") << "dragged";
    drag(row_rect(7), 9);
    expect_closed_with("7 ");
}

TEST_F(Menus, UpdatedItemsKeepASelectionThatCanBeChosen) {
    Items five(std::vector<int>(5, ITEM_ACTIVE)), two({ITEM_ACTIVE, ITEM_INACTIVE}), none({});
    Items many(std::vector<int>(100, ITEM_ACTIVE));
    five.open(3);
    UpdateMenuEx(two.get());
    EXPECT_EQ(current(), 0);
    UpdateMenuEx(many.get());
    EXPECT_EQ(current(), 0);
    EXPECT_GT(menus::top()->rect.h, 500);
    UpdateMenuEx(none.get());
    EXPECT_EQ(current(), -1);
    press_all({KEY_DOWN, KEY_OK, KEY_UP});
    UpdateMenuEx(five.get());
    UpdateMenuEx(nullptr);
    press_all({KEY_DOWN, KEY_DOWN, KEY_OK});
    expect_closed_with("1 ");
}

void open_another(int index) {
    answer(index);
    for (int i = 0; i < 2 && answers.size() < 6; ++i) OpenMenu(leaf, 1, 40, 40, open_another);
}

TEST_F(Menus, ACallbackMayOpenTheNextMenu) {
    OpenMenu(leaf, 0, 40, 40, open_another);
    // Typed ahead: what was meant for the first menu does not choose in those that follow.
    for (int i = 0; i < 3; i++) SendEvent(GetEventHandler(), EVT_KEYPRESS, KEY_OK, 0);
    headless::advance(10);
    EXPECT_EQ(answers, "70 ");
    EXPECT_EQ(menus::level_count(), 2);
    headless::press(KEY_OK);
    expect_closed_with("70 71 ");
}

TEST_F(Menus, ACallbackMayAskOrEndTheApplication) {
    OpenMenu(leaf, 0, 40, 40,
             [](int) { Dialog(ICON_QUESTION, "", "Sure?", "Yes", nullptr, answer); });
    press_all({KEY_OK, KEY_OK});
    expect_closed_with("1 ");
    OpenMenu(leaf, 0, 40, 40, [](int) { CloseApp(); });
    headless::press(KEY_OK);
    EXPECT_EQ(kvstate.exiting, EXIT_REQUESTED);
}

TEST_F(Menus, TheTopLevelsCallbackIsCalled) {
    OpenMenu(leaf, 0, 40, 40, [](int) { answers += "below "; });
    OpenMenu(leaf, 0, 300, 40, answer);
    EXPECT_EQ(menus::level_count(), 2);
    headless::press(KEY_OK);
    expect_closed_with("70 ");
}

TEST_F(Menus, SystemScreensDismissAndTheKeyRateFollowsEventShow) {
    OpenMenu(leaf, 0, 40, 40, answer);
    EXPECT_EQ(kvstate.keytime1, 1000);
    SendEvent(GetEventHandler(), EVT_SHOW, 0, 0);
    headless::advance(10);
    EXPECT_EQ(kvstate.keytime1, 750);
    EXPECT_EQ(kvstate.keytime2, 240);
    SendEvent(GetEventHandler(), 124, 0, 0);
    headless::advance(10);
    expect_closed_with("-1 ");
    EXPECT_EQ(kvstate.keytime1, 1000);
}

TEST_F(Menus, AnyLabelsFitOnTheScreen) {
    const std::string wide(5000, 'W');
    AddTranslation("@wide", wide.c_str());
    imenu menu[] = {{ITEM_HEADER, 0, "@wide", nullptr},    {ITEM_SUBMENU, 1, "@wide", leaf},
                    {ITEM_BULLET, 2, nullptr, nullptr},    {ITEM_ACTIVE, 3, "a\nb\nc", nullptr},
                    {ITEM_ACTIVE, 4, "\xff\xfe", nullptr}, {}};
    irect size;
    GetMenuRect(&size, menu);
    EXPECT_LE(size.w, ScreenWidth());
    EXPECT_EQ(size.x, 0);
    OpenMenu(menu, 1, 5000, -5000, answer);
    const irect r = menus::top()->rect;
    EXPECT_EQ(r.w, size.w);
    EXPECT_EQ(r.h, size.h);
    EXPECT_GE(r.x, 0);
    EXPECT_GE(r.y, 0);
    EXPECT_LE(r.x + r.w, ScreenWidth());
    headless::press(KEY_BACK);
    expect_closed_with("-1 ");
}

TEST_F(Menus, TheApplicationHearsOfATurnAfterTheClose) {
    OpenMenu(leaf, 0, 40, 40, answer);
    const std::vector<uint8_t> opened = screen();
    headless::raw(EVT_ORIENTATION, 0, 1, 0);
    EXPECT_TRUE(screen() == opened);
    headless::clear_events();
    press_all({KEY_DOWN, KEY_OK});
    expect_closed_with("71 ");
    EXPECT_EQ(headless::events(), "RESTORE ORIENTATION(1,0) ");
}

TEST_F(Menus, ATurnUnderAMenuLetsTheApplicationDrawAnew) {
    imenu menu[] = {{ITEM_HEADER, 0, "Title", nullptr}, {ITEM_SUBMENU, 1, "More", leaf}, {}};
    OpenMenu(menu, 1, 500, 700, answer);
    SetOrientation(1);
    press_all({KEY_RIGHT, KEY_DOWN});
    headless::tap(799, 599);
    Items many(std::vector<int>(60, ITEM_ACTIVE));
    UpdateMenuEx(many.get());
    headless::clear_events();
    headless::press(KEY_BACK);
    EXPECT_EQ(answers, "-1 ");
    EXPECT_NE(headless::events().find("SHOW"), std::string::npos);
}

TEST_F(Menus, ManyOpeningsDoNotGrow) {
    imenu menu[] = {{ITEM_HEADER, 0, "Title", nullptr}, {ITEM_SUBMENU, 1, "More", leaf}, {}};
    icontext_menu *context = CreateContextMenu("many");
    context->update_after_close = 0; // saves the time of painting
    const auto open = [&](int count) {
        for (int i = 0; i < count; ++i) {
            SetContextMenuStruct(context);
            OpenMenu(menu, 1, 40, 40, answer);
            for (int level = 0; level < 2; ++level) GetEventHandler()(EVT_KEYPRESS, KEY_OK, 0);
            if (i % 50 == 0) OpenMenu3x3(leaf, nullptr, 0, answer);
            GetEventHandler()(EVT_KEYPRESS, KEY_BACK, 0);
            kv_process_event_loop_quick();
            headless::clear_events();
        }
        answers.clear();
        answers.shrink_to_fit();
    };
    hw::observe_updates(nullptr);
    open(100);
    const size_t allocated = mallinfo2().uordblks;
    open(repeats(10000, 1000));
    EXPECT_LT(mallinfo2().uordblks, allocated + 10000);
}

TEST_F(Menus, TheEndOfTheApplicationCallsNobody) {
    OpenMenu(leaf, 0, 40, 40, answer);
    restart_with("");
    EXPECT_EQ(answers, "");
    EXPECT_EQ(menus::level_count(), 0);
    OpenMenu(leaf, 0, 40, 40, answer);
    headless::press(KEY_OK);
    EXPECT_EQ(answers, "70 ");
}

} // namespace
