// SPDX-License-Identifier: MIT
// Lists as parts of a page: what keys and fingers do, and what it costs.
#include <algorithm>
#include <climits>
#include <gtest/gtest.h>

#include "lists_support.h"
#include "support/theme_file.h"

using namespace list_test;

namespace {

const irect place = {0, 96, 600, 600, 0}; // 12 plain rows without a strip, 11 above one

class Lists : public list_test::Test {
  protected:
    ~Lists() override { SelectionList_Destroy(list); }
    void make(const ilistrows &r, const irect &at = place) {
        SelectionList_Destroy(list);
        list = SelectionList_Create(&r);
        SelectionList_SetRect(list, &at);
        SelectionList_Draw(list);
        headless::on_event([this](int type, int p1, int p2) {
            return SelectionList_HandleEvent(list, type, p1, p2);
        });
        headless::clear_updates();
    }
    int selected() const { return SelectionList_GetSelected(list); }
    int page() const { return SelectionList_GetPage(list); }
    iselectionlist *list = nullptr;
};

TEST_F(Lists, EveryKeyDoesWhatItSays) {
    const struct {
        std::vector<int> keys;
        const char *told;
    } cases[] = {
        {{KEY_DOWN, KEY_DOWN, KEY_OK}, "selected:1 selected:2 chosen:2 "},
        {{KEY_UP}, "selected:99 "},
        {{KEY_UP, KEY_DOWN}, "selected:99 selected:0 "},
        {{KEY_DOWN, KEY_RIGHT, KEY_NEXT2, KEY_LEFT, KEY_MENU},
         "selected:1 selected:12 selected:23 selected:12 context:12 "},
        {{KEY_PREV, KEY_PREV2, KEY_LEFT}, ""},
        {{KEY_UP, KEY_NEXT, KEY_RIGHT}, "selected:99 "},
        {{KEY_BACK, KEY_HOME, KEY_PLUS, KEY_MUSIC}, ""},
    };
    for (const auto &c : cases) {
        make(rows(100));
        press_all(c.keys);
        EXPECT_EQ(take_told(), c.told);
    }
    make(rows(100));
    hold(KEY_OK, 1200);
    EXPECT_EQ(take_told(), "context:0 ");
    hold(KEY_DOWN, 1200);
    EXPECT_EQ(take_told(), "selected:1 selected:12 ") << "a page when held";
    hold(KEY_NEXT, 1200);
    EXPECT_EQ(take_told(), "selected:23 selected:99 ") << "ten pages, or the end";
}

TEST_F(Lists, FingersChooseAndTurnPages) {
    make(rows(100));
    headless::tap(300, 96 + 48 * 3 + 20);
    EXPECT_EQ(take_told(), "chosen:3 ");
    swipe(300, 600, 300, 300);
    EXPECT_EQ(take_told(), "selected:14 ");
    swipe(100, 300, 400, 310);
    EXPECT_EQ(take_told(), "selected:3 ");
    headless::tap(500, 680);
    EXPECT_EQ(take_told(), "selected:14 ");
    headless::tap(300, 680);
    EXPECT_EQ(take_told(), "counter:1 ");
    headless::tap(100, 680);
    EXPECT_EQ(take_told(), "selected:3 ");
    headless::pointer(EVT_POINTERDOWN, 300, 100);
    headless::advance(500);
    headless::pointer(EVT_POINTERUP, 300, 100);
    EXPECT_EQ(take_told(), "context:0 ");
    headless::tap(300, 50);
    swipe(300, 50, 300, 500);
    EXPECT_EQ(take_told(), "") << "beside the list";
    AddTranslation("x", "y");
    write_file("system/language/xx.txt", "Language\n%RTL\n");
    LoadLanguage("xx");
    swipe(100, 300, 400, 310);
    EXPECT_EQ(take_told(), "selected:11 ") << "the other way round";
    headless::tap(500, 680);
    EXPECT_EQ(take_told(), "selected:0 ");
    headless::press(KEY_LEFT);
    EXPECT_EQ(take_told(), "selected:11 ");
    LoadLanguage("en");
}

TEST_F(Lists, AStepShowsTwoRowsAndATurnThePageOnce) {
    make(rows(100));
    headless::press(KEY_DOWN);
    ASSERT_EQ(boxes::update_calls(), "PartialUpdateBW ");
    EXPECT_EQ(headless::updates()[0].h, 96);
    headless::clear_updates();
    headless::press(KEY_NEXT);
    ASSERT_EQ(boxes::update_calls(), "PartialUpdate ");
    EXPECT_EQ(headless::updates()[0].h, 600);
    headings = {1, 2};
    make(rows(100));
    headless::press(KEY_DOWN);
    ASSERT_EQ(boxes::update_calls(), "PartialUpdateBW PartialUpdateBW ")
        << "rows between them may have greys";
    EXPECT_EQ(headless::updates()[1].h, 48);
    ilistrows drawn = rows(100);
    drawn.draw = [](int row, const irect *, void *) { return row == 1 ? 1 : 0; };
    make(drawn);
    SelectionList_SetSelected(list, 0);
    SelectionList_Draw(list);
    headings = {};
    press_all({KEY_DOWN});
    EXPECT_EQ(boxes::update_calls(), "PartialUpdateBW PartialUpdate ") << "so may drawn ones";
}

TEST_F(Lists, WhatIsShownIsWhatADrawnPageShows) {
    headings = {0, 5, 6};
    for (const int height : {int{LIST_PLAIN_ROWS}, int{LIST_COVER_ROWS}, 64}) {
        make(rows(30, height));
        for (const int key : {KEY_DOWN, KEY_DOWN, KEY_DOWN, KEY_DOWN, KEY_DOWN, KEY_NEXT, KEY_UP,
                              KEY_PREV, KEY_UP, KEY_UP, KEY_UP}) {
            headless::press(key);
            EXPECT_EQ(headings.count(selected()), 0U);
            const std::vector<uint8_t> moved = screen();
            SelectionList_Draw(list);
            EXPECT_TRUE(screen() == moved) << height << " " << selected();
        }
    }
}

TEST_F(Lists, FollowsThemeAndLanguage) {
    write_file("system/themes/high.tqt", ThemeFile("context_menu.item.height=80\n").bytes());
    write_file("system/language/xx.txt", "Language\n%RTL\n");
    for (const auto &change : std::vector<std::function<void()>>{[] { OpenTheme("high"); },
                                                                 [] { LoadLanguage("xx"); }}) {
        make(rows(100));
        change();
        headless::press(KEY_DOWN);
        const std::vector<uint8_t> moved = screen();
        SelectionList_Draw(list);
        EXPECT_TRUE(screen() == moved);
    }
    EXPECT_EQ(SelectionList_GetRowRect(list, 1).h, 80);
    LoadLanguage("en");
    OpenTheme("none");
}

TEST_F(Lists, DrawnRowsKeepToTheirPlace) {
    ilistrows drawn = rows(30);
    drawn.draw = [](int row, const irect *, void *) {
        if (row == 2) FillArea(0, 0, 600, 800, BLACK);
        return row == 2 ? 1 : 0;
    };
    make(drawn);
    const irect r = SelectionList_GetRowRect(list, 2);
    const auto blacks = [&](int y) {
        const uint8_t *line = kvstate.framebuffer->addr + ptrdiff_t{y} * 600;
        return std::count(line, line + 600, 0);
    };
    ASSERT_EQ(kvstate.framebuffer->scanline, 600);
    EXPECT_EQ(blacks(r.y), 600);
    EXPECT_EQ(blacks(r.y + r.h - 1), 600);
    EXPECT_EQ(blacks(r.y + r.h), 0);
    EXPECT_EQ(blacks(r.y - 1), 0);
    SelectionList_SetSelected(list, 2);
    SelectionList_Draw(list);
    EXPECT_EQ(blacks(r.y), 0) << "marked";
}

// Without a theme the common marker is a plain background.
TEST_F(Lists, AMarkedRowCanBeRead) {
    make(rows(2, LIST_COVER_ROWS));
    const irect r = SelectionList_GetRowRect(list, 0);
    const uint8_t *pixels = kvstate.framebuffer->addr + ptrdiff_t{r.y} * 600;
    const auto blacks = std::count(pixels, pixels + ptrdiff_t{r.h} * 600, 0);
    EXPECT_GT(blacks, r.h * 300);
    EXPECT_LT(blacks, r.h * (600 - 2 * 12) - 200) << "beside the marker, and the letters";
}

TEST_F(Lists, ValuesAndBarsStandAtTheEndInsideTheBorder) {
    static int progress;
    for (const int height : {int{LIST_COVER_ROWS}, 64}) {
        ilistrows read = rows(1, height);
        read.fill = [](int, ilistrow *out, void *) {
            out->value = "3";
            out->progress = progress;
        };
        long before_blacks = 0;
        for (const int percent : {0, 50, 100, 900}) {
            progress = percent;
            make(read);
            SelectionList_SetSelected(list, -1);
            SelectionList_Draw(list);
            const irect r = SelectionList_GetRowRect(list, 0);
            long blacks = 0;
            for (int y = r.y; y < r.y + r.h; ++y)
                for (int x = 480; x < 600; ++x) {
                    if (kvstate.framebuffer->addr[y * 600 + x] != 0) continue;
                    ++blacks;
                    EXPECT_LT(y, r.y + r.h - 4) << "where the border is";
                }
            EXPECT_EQ(blacks > before_blacks, percent <= 100) << percent;
            before_blacks = blacks;
        }
    }
}

TEST_F(Lists, SmallPlacesAreNotLeft) {
    for (const int height : {int{LIST_PLAIN_ROWS}, int{LIST_COVER_ROWS}})
        for (const int h : {1, 4, 20, 30, 50, 60, 80, 100}) {
            draw_page();
            const irect low = {100, 300, 300, h, 0};
            make(rows(9, height), low);
            press_all({KEY_DOWN, KEY_DOWN, KEY_NEXT});
            const irect row = SelectionList_GetRowRect(list, SelectionList_GetSelected(list));
            EXPECT_LE(row.y + row.h, 300 + h);
            FillAreaRect(&low, WHITE);
            const std::vector<uint8_t> around = screen();
            draw_page();
            FillAreaRect(&low, WHITE);
            EXPECT_TRUE(around == screen()) << height << " " << h;
        }
}

TEST_F(Lists, SelectionsStayOrGiveWay) {
    const ilistrows ten = rows(10), none = rows(0);
    const struct {
        const ilistrows &rows;
        int chosen, count, after;
    } cases[] = {{ten, 5, 40, 5}, {ten, 5, 3, 2}, {none, -1, 10, -1}, {none, 4, 10, 0}};
    for (const auto &c : cases) {
        iselectionlist *fresh = SelectionList_Create(&c.rows);
        SelectionList_SetSelected(fresh, c.chosen);
        SelectionList_SetCount(fresh, c.count);
        EXPECT_EQ(SelectionList_GetSelected(fresh), c.after) << c.chosen;
        SelectionList_Destroy(fresh);
    }
    headings = {0, 5, 19};
    make(rows(30));
    SelectionList_SetSelected(list, 5);
    SelectionList_Draw(list);
    EXPECT_EQ(selected(), 6);
    SelectionList_SetSelected(list, 25);
    SelectionList_SetCount(list, 20);
    SelectionList_Draw(list);
    EXPECT_EQ(selected(), 18);
    SelectionList_SetCount(list, 0);
    SelectionList_SetCount(list, 9);
    SelectionList_Draw(list);
    EXPECT_EQ(selected(), 1) << "a list that was emptied begins anew";
}

TEST_F(Lists, OnlyRowsInSightAreAskedFor) {
    for (const int count : {100000, INT_MAX}) {
        make(rows(count));
        EXPECT_LE(fills, 12);
        fills = 0;
        headless::press(KEY_UP);
        EXPECT_EQ(selected(), count - 1);
        EXPECT_EQ(page(), SelectionList_GetPageCount(list) - 1);
        press_all({KEY_NEXT, KEY_PREV, KEY_NEXT});
        SelectionList_SetPage(list, INT_MAX / 4);
        SelectionList_SetPage(list, -5);
        EXPECT_EQ(page(), 0);
        EXPECT_LE(fills, 5 * 16);
        fills = 0;
    }
}

TEST_F(Lists, AnyNumberOfRowsAndAnyPlaceIsHarmless) {
    for (const int count : {0, 1, -1, INT_MIN, 12, 13, INT_MAX})
        for (const irect &r : {irect{}, irect{-50, -50, 100, 100, 0}, irect{0, 0, 600, 800, 0},
                               irect{9, 9, 3, 3, 0}, irect{INT_MIN, INT_MAX, INT_MAX, INT_MAX, 0},
                               irect{0, 0, -5, INT_MIN, 0}, irect{0, 0, INT_MAX, INT_MAX, 0}}) {
            make(rows(count, count == 13 ? INT_MAX : count == 12 ? 1 : INT_MIN));
            SelectionList_SetRect(list, &r);
            SelectionList_Draw(list);
            press_all({KEY_UP, KEY_DOWN, KEY_NEXT, KEY_OK, KEY_MENU, KEY_PREV});
            headless::tap(10, 10);
            SelectionList_SetSelected(list, INT_MAX);
            EXPECT_EQ(selected(), std::max(count, 0) - 1);
            SelectionList_SetCount(list, 1);
            SelectionList_SetPage(list, 3);
            EXPECT_EQ(selected(), 0);
        }
    const ilistrows some = rows(3);
    iselectionlist *chosen = SelectionList_Create(&some);
    SelectionList_SetSelected(chosen, 1);
    SelectionList_SetCount(chosen, 9);
    EXPECT_EQ(SelectionList_GetSelected(chosen), 1) << "before a place and a page there are";
    SelectionList_Destroy(chosen);
    SelectionList_Destroy(nullptr);
    SelectionList_Draw(nullptr);
    EXPECT_EQ(SelectionList_HandleEvent(nullptr, EVT_KEYPRESS, KEY_OK, 0), 0);
    EXPECT_EQ(SelectionList_GetSelected(nullptr), -1);
    iselectionlist *none = SelectionList_Create(nullptr);
    SelectionList_SetRect(none, nullptr);
    SelectionList_Draw(none);
    SelectionList_Destroy(none);
}

TEST_F(Lists, OutlivesTheScreenOnWhichItIsDrawn) {
    make(rows(100));
    restart_with("language=en\n");
    fonts::link_all();
    SelectionList_Draw(list);
    EXPECT_EQ(SelectionList_HandleEvent(list, EVT_KEYPRESS, KEY_DOWN, 0), 1);
    iscrollview *view = ScrollView_Create(nullptr, nullptr);
    ClearOnExit();
    SelectionList_Draw(list);
    SelectionList_HandleEvent(list, EVT_KEYPRESS, KEY_DOWN, 0);
    ScrollView_SetRect(view, &place);
    ScrollView_Draw(view);
    ScrollView_Destroy(view);
    const ilistrows r = rows(3);
    SelectionList_Destroy(SelectionList_Create(&r));
    EXPECT_EQ(OpenList(nullptr), 0);
    ilist alone{};
    EXPECT_EQ(OpenList(&alone), 0) << "there is no screen";
}

TEST_F(Lists, ACallbackMayDestroyItsList) {
    for (const int key : {KEY_DOWN, KEY_NEXT, KEY_OK, KEY_MENU}) {
        make(rows(100));
        then = [this](int) { SelectionList_Destroy(std::exchange(list, nullptr)); };
        headless::press(key);
        EXPECT_EQ(list, nullptr);
        then = nullptr;
    }
}

// What it then draws or asks for would lie over what has taken its place.
TEST_F(Lists, ACallbackThatDrawsMayDestroyItsList) {
    static int left; // calls until the list goes
    static iselectionlist **own;
    own = &list;
    const auto ask = [] {
        ASSERT_TRUE(*own) << "nothing is asked any more";
        if (left-- > 0) return;
        SelectionList_Destroy(std::exchange(*own, nullptr));
        SetClip(0, 0, 600, 800);
        FillArea(0, 0, 600, 800, DGRAY);
    };
    static const std::function<void()> asked = ask;
    ilistrows filled = rows(100), drawn = rows(100);
    filled.fill = [](int, ilistrow *, void *) { asked(); };
    drawn.draw = [](int, const irect *, void *) {
        asked();
        return left & 1;
    };
    for (const ilistrows &r : {filled, drawn})
        for (const int key : {0, int{KEY_DOWN}, int{KEY_NEXT}, int{KEY_OK}})
            for (const int calls : {0, 1, 2, 5}) {
                left = INT_MAX;
                make(r);
                take_told();
                left = calls;
                if (key == 0) SelectionList_Draw(list);
                if (key != 0) headless::press(key);
                if (list) continue;
                const std::vector<uint8_t> mine = screen();
                const auto greys = std::count(mine.begin(), mine.end(), mine[0]);
                EXPECT_EQ(greys, 600 * 800) << key << " " << calls;
                EXPECT_EQ(take_told(), "");
            }
}

} // namespace
