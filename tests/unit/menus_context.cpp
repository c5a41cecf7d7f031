// SPDX-License-Identifier: MIT
// Context menus, placement, the direction of writing, and the grid.
#include <gtest/gtest.h>

#include "menus/place.h"
#include "menus_support.h"

using namespace menu_test;

namespace {

class ContextMenus : public menu_test::Test {
  protected:
    icontext_menu *make(int side = MENU_SIDE_AUTO) {
        icontext_menu *context = CreateContextMenu("word");
        context->hproc = answer;
        context->menu = items;
        context->pos_selected_item = iRect(250, 300, 80, 24, 0);
        context->pos_menu.flags = side;
        return context;
    }
    imenu leaf[3] = {{ITEM_ACTIVE, 8, "Leaf", nullptr}, {ITEM_ACTIVE, 9, "Twig", nullptr}, {}};
    imenu items[3] = {{ITEM_ACTIVE, 1, "Plain", nullptr}, {ITEM_SUBMENU, 2, "More", leaf}, {}};
};

TEST_F(ContextMenus, ARecordIsMadeOnceWithItsDefaults) {
    const icontext_menu *context = CreateContextMenu("word");
    ASSERT_NE(context, nullptr);
    EXPECT_EQ(CreateContextMenu("word"), context);
    EXPECT_NE(CreateContextMenu("other"), context);
    EXPECT_STREQ(context->id, "word");
    EXPECT_EQ(context->active_element, -1);
    EXPECT_EQ(context->enable_pointer, context->properties->enable_pointer);
    EXPECT_EQ(context->update_after_close, 1);
    EXPECT_EQ(context->enable_aura + context->use_own_font + context->only_choise, 0);
}

TEST_F(ContextMenus, EachSideKeepsClearOfTheItem) {
    const struct {
        int side;
        bool (*is_clear)(const irect &);
    } cases[] = {{MENU_SIDE_AUTO, [](const irect &r) { return r.y >= 324; }},
                 {MENU_SIDE_ABOVE, [](const irect &r) { return r.y + r.h <= 300; }},
                 {MENU_SIDE_BELOW, [](const irect &r) { return r.y >= 324; }},
                 {MENU_SIDE_RIGHT, [](const irect &r) { return r.x >= 330; }},
                 {MENU_SIDE_LEFT, [](const irect &r) { return r.x + r.w <= 250; }}};
    for (const auto &c : cases) {
        OpenContextMenu(make(c.side));
        ASSERT_EQ(menus::level_count(), 1);
        EXPECT_TRUE(c.is_clear(menus::top()->rect)) << c.side;
        CloseContextMenu();
        expect_closed_with("");
    }
}

TEST_F(ContextMenus, ASideWithoutRoomGivesWay) {
    const struct {
        irect item, placement;
        int x, y, side;
    } cases[] = {
        {{0, 0, 50, 20, 0}, {0, 0, 200, 100, MENU_SIDE_LEFT}, 50, 8, MENU_SIDE_RIGHT},
        {{0, 700, 600, 20, 0}, {0, 0, 200, 100, MENU_SIDE_BELOW}, 200, 600, MENU_SIDE_ABOVE},
        {{100, 100, 40, 20, 0}, {0, 0, 200, 100, MENU_SIDE_AUTO}, 20, 120, MENU_SIDE_BELOW},
        {{550, 790, 40, 9, 0}, {0, 0, 900, 100, MENU_SIDE_RIGHT}, 8, 692, MENU_SIDE_RIGHT}};
    for (const auto &c : cases) {
        irect item = c.item, placement = c.placement, r;
        CalculatePosition(&item, &placement, &r);
        EXPECT_EQ(std::vector({r.x, r.y, r.flags}), std::vector({c.x, c.y, c.side}));
    }
}

TEST_F(ContextMenus, APointerLeadsToWhatItTouches) {
    const menus::Pointer pointer{20, 10, 2, 8};
    const irect item = {100, 300, 80, 24, 0};
    for (const int gap : {-1, 0, 1}) {
        const irect below{50, 324 + gap, 200, 100, MENU_SIDE_BELOW};
        const irect above{50, 200 - gap, 200, 100, MENU_SIDE_ABOVE};
        EXPECT_EQ(menus::place_pointer(below, item, pointer).h, gap < 0 ? 0 : 10) << gap;
        EXPECT_EQ(menus::place_pointer(above, item, pointer).h, gap < 0 ? 0 : 10) << gap;
    }
}

TEST_F(ContextMenus, SubmenusInheritAndGoBackToTheRight) {
    icontext_menu *context = make(MENU_SIDE_LEFT);
    context->active_element = 1;
    context->update_after_close = 0;
    OpenContextMenu(context);
    headless::press(KEY_RIGHT);
    ASSERT_EQ(menus::level_count(), 2);
    const icontext_menu *submenu = CreateContextMenu("submenu1");
    EXPECT_EQ(menus::top()->context, submenu);
    EXPECT_EQ(submenu->update_after_close, 0);
    EXPECT_EQ(submenu->hproc, context->hproc);
    headless::press(KEY_RIGHT);
    EXPECT_EQ(menus::level_count(), 1);
    headless::clear_updates();
    press_all({KEY_OK, KEY_DOWN, KEY_OK});
    expect_closed_with("9 ");
    EXPECT_EQ(update_calls().find("FullUpdate"), std::string::npos);
}

TEST_F(ContextMenus, ARecordIsLentToTheNextMenuOnly) {
    SetContextMenuStruct(make(MENU_SIDE_RIGHT));
    OpenMenu(items, 0, 0, 0, answer);
    EXPECT_GE(menus::top()->rect.x, 330);
    headless::press(KEY_BACK);
    OpenMenu(items, 0, 0, 0, answer);
    EXPECT_EQ(menus::top()->context, nullptr);
    headless::press(KEY_BACK);
    SetContextMenu("word");
    OpenMenu(items, 0, 0, 0, answer);
    EXPECT_NE(menus::top()->context, nullptr);
    headless::press(KEY_BACK);
    expect_closed_with("-1 -1 -1 ");
}

TEST_F(ContextMenus, RightToLeftEverythingIsMirrored) {
    write_right_to_left();
    OpenMenu(items, 1, 300, 58, answer);
    const irect parent = menus::top()->rect;
    const int border = menus::top()->look->p.border_size;
    headless::press(KEY_LEFT);
    ASSERT_EQ(menus::level_count(), 2);
    const irect r = menus::top()->rect;
    EXPECT_EQ(r.x + r.w, parent.x + border);
    headless::press(KEY_RIGHT);
    EXPECT_EQ(menus::level_count(), 1);
    headless::press(KEY_RIGHT);
    expect_closed_with("-1 ");
    OpenMenu3x3(items, nullptr, 0, answer);
    headless::tap(430, 240);
    expect_closed_with("-1 1 ");
    OpenMenu3x3(items, nullptr, 0, answer);
    press_all({KEY_LEFT, KEY_OK});
    expect_closed_with("-1 1 2 ");
}

TEST_F(ContextMenus, TheGridMovesRoundAndReportsTheIndex) {
    imenu cells[12] = {};
    for (int i = 0; i < 11; i++)
        cells[i] = {ITEM_ACTIVE, static_cast<short>(10 + i), "Cell", nullptr};
    cells[4].type = ITEM_INACTIVE;
    cells[5].type |= ITEM_HIDDEN;
    const struct {
        int pos;
        std::vector<int> keys;
        const char *answer;
    } cases[] = {{0, {KEY_OK}, "10 "},
                 {0, {KEY_UP, KEY_NEXT}, "16 "},
                 {0, {KEY_LEFT, KEY_OK}, "18 "},
                 {1, {KEY_DOWN, KEY_OK}, "17 "},
                 {8, {KEY_NEXT2, KEY_RIGHT, KEY_OK}, "11 "},
                 {6, {KEY_PREV2, KEY_OK}, "13 "},
                 {5, {KEY_OK}, "13 "},
                 {-1, {KEY_OK, KEY_RIGHT, KEY_OK}, "10 "},
                 {0, {KEY_BACK}, "-1 "},
                 {0, {KEY_MENU}, "-1 "},
                 {0, {KEY_PREV}, "-1 "}};
    for (const auto &c : cases) {
        answers.clear();
        OpenMenu3x3(cells, nullptr, c.pos, answer);
        SendEvent(GetEventHandler(), 124, 0, 0);
        press_all(c.keys);
        expect_closed_with(c.answer);
    }
    answers.clear();
    OpenMenu3x3(cells, nullptr, 0, answer);
    headless::tap(300, 400);
    EXPECT_EQ(answers, "") << "the cell in the middle is disabled";
    headless::tap(130, 400);
    expect_closed_with("13 ");
    OpenMenu3x3(cells, nullptr, 0, answer);
    headless::tap(300, 20);
    expect_closed_with("13 -1 ");
}

} // namespace
