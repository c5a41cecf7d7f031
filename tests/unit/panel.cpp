// SPDX-License-Identifier: MIT
// The status panel and the hourglass, as updates, the clock, fingers and components meet them.
#include <gtest/gtest.h>

#include "hw_linux/clock.h"
#include "hw_seam.h"
#include "kelvane/hourglass.h"
#include "kelvane/keyboard.h"
#include "kelvane/lists.h"
#include "kelvane/panel.h"
#include "kelvane/timers.h"
#include "kelvane/updates.h"
#include "menus_support.h"
#include "support/theme_file.h"

using boxes::screen;
using boxes::update_calls;

namespace {

constexpr int64_t half_past_nine_s = 1742547000; // 30 seconds after a full minute, in any time zone

std::vector<uint8_t> foot(int rows) {
    const icanvas &c = *kvstate.framebuffer;
    return {c.addr + ptrdiff_t{c.scanline} * (c.height - rows),
            c.addr + ptrdiff_t{c.scanline} * c.height};
}

int ink(const std::vector<uint8_t> &pixels) {
    return static_cast<int>(
        std::count_if(pixels.begin(), pixels.end(), [](int v) { return v < 128; }));
}

class StatusPanel : public boxes::Test {
  protected:
    StatusPanel() { hw::set_wall_clock(half_past_nine_s + 30); }
    // On, and shown.
    static void switch_on() {
        SetPanelMode(PANEL_ON);
        FullUpdate();
        headless::advance(100);
        headless::clear_updates();
        headless::clear_events();
    }
};

TEST_F(StatusPanel, UntilItIsSwitchedOnNothingIsDrawnAndNoTimerRuns) {
    const std::vector<uint8_t> before = screen();
    FullUpdate();
    DrawPanel();
    SetPanelText("A title");
    headless::advance(200000);
    EXPECT_EQ(PanelHeight(), 0);
    EXPECT_EQ(update_calls(), "FullUpdate ");
    EXPECT_TRUE(screen() == before);
    EXPECT_EQ(SetPanelMode(99), PANEL_BY_THEME);
    EXPECT_EQ(SetPanelMode(PANEL_OFF), PANEL_BY_THEME);
}

TEST_F(StatusPanel, StandsInEachUpdateOfItsRowsAndBringsItselfUpToDate) {
    switch_on();
    ASSERT_EQ(PanelHeight(), 36);
    const std::vector<uint8_t> above = boxes::above(764), shown = foot(36);
    EXPECT_GT(ink(shown), 600); // a hairline and letters
    FillArea(0, 700, 600, 100, BLACK);
    PartialUpdate(0, 700, 600, 60); // does not reach it
    EXPECT_EQ(ink(foot(36)), 600 * 36);
    PartialUpdate(0, 700, 600, 100);
    EXPECT_TRUE(foot(36) == shown);
    EXPECT_EQ(ink(boxes::above(764)) - ink(above),
              600 * 64 - ink(std::vector(above.end() - 64 * 600, above.end())));

    headless::clear_updates();
    headless::advance(60000);
    ASSERT_EQ(update_calls(), "PartialUpdate ");
    const headless::Update minute = headless::updates()[0];
    EXPECT_LT(minute.x + minute.w, 120); // the clock
    EXPECT_GE(minute.y, 760);

    headless::clear_updates();
    headless::command(202); // the battery's level
    headless::advance(100);
    SetPanelText("A title");
    SetPanelPages(3, 340);
    headless::advance(100);
    ASSERT_EQ(update_calls(), "PartialUpdate PartialUpdate ");
    EXPECT_GT(headless::updates()[0].x, 400);
}

TEST_F(StatusPanel, AThemeGivesItItsHeightAndTheApplicationMayTakeItAway) {
    write_file("system/themes/tall.tqt", ThemeFile("panel.height=50\nunit.size=4\n").bytes());
    OpenTheme("tall");
    EXPECT_EQ(PanelHeight(), 50);
    SetPanelMode(PANEL_OFF);
    EXPECT_EQ(PanelHeight(), 0);
    for (const char *height : {"999999", "-999999", "0x7fffffff"}) {
        write_file("system/themes/odd.tqt",
                   ThemeFile(std::string("panel.height=") + height + "\n").bytes());
        OpenTheme("odd");
        SetPanelMode(PANEL_BY_THEME);
        FullUpdate();
        EXPECT_EQ(PanelHeight(), *height == '-' ? 0 : 266);
    }
}

TEST_F(StatusPanel, ComponentsStandOnIt) {
    switch_on();
    const std::vector<uint8_t> shown = foot(36);
    static imenu items[] = {{ITEM_ACTIVE, 1, "One", nullptr}, {ITEM_ACTIVE, 2, "Two", nullptr}, {}};
    static char buffer[32];
    const std::function<void()> openers[] = {
        [] { boxes::open_three(); }, [] { OpenMenu(items, 1, 10, 790, [](int) {}); },
        [] { OpenKeyboard("Title", buffer, 30, 0, [](char *) {}); }};
    for (const auto &open : openers) {
        const std::vector<uint8_t> before = screen();
        open();
        headless::advance(500);
        EXPECT_TRUE(foot(36) == shown);
        EXPECT_FALSE(screen() == before);
        headless::tap(40, 790); // is the component's
        headless::advance(100);
        while (GetEventHandler() != headless::handler()) {
            headless::press(KEY_BACK);
            headless::advance(100);
        }
        EXPECT_TRUE(screen() == before);
    }
    EXPECT_EQ(headless::events().find("61"), std::string::npos);
}

TEST_F(StatusPanel, AListAboveItFlashesAsOneOnTheWholeScreen) {
    for (const int mode : {PANEL_OFF, PANEL_ON}) {
        SetPanelMode(mode);
        FullUpdate();
        headless::advance(100);
        headless::clear_updates();
        const ilist list{};
        OpenList(&list);
        headless::press(KEY_BACK);
        EXPECT_EQ(update_calls(), "FullUpdate FullUpdate ") << mode;
    }
}

TEST_F(StatusPanel, OnlyAClockWakesTheDevice) {
    for (const int shows_clock : {0, 1}) {
        restart_with("showclock=" + std::to_string(shows_clock) + "\n");
        fonts::link_all();
        switch_on();
        headless::advance(100);
        EXPECT_EQ(kv_get_first_timer() - headless::now() <= 60000, shows_clock == 1);
    }
}

TEST_F(StatusPanel, WhatIsHigherThanItIsLeftOut) {
    write_file("system/themes/low.tqt", ThemeFile("panel.height=12\nseparator.size=3\n").bytes());
    OpenTheme("low");
    const std::vector<uint8_t> page = boxes::above(788);
    FullUpdate();
    EXPECT_TRUE(boxes::above(788) == page);
    EXPECT_EQ(ink(foot(12)), 3 * 600); // the rule
    EXPECT_EQ(ink(foot(9)), 0);
}

TEST_F(StatusPanel, ATapOnItIsOneEventAndOtherFingersPassOverIt) {
    use_multi_touch();
    switch_on();
    headless::tap(40, 790);
    EXPECT_EQ(headless::events(), "61(1,0) ");
    headless::clear_events();
    headless::tap(580 - 16, 790);
    EXPECT_EQ(headless::events(), "61(6,0) ");
    headless::clear_events();
    // One that leaves it, and one that comes to it.
    headless::pointer(EVT_POINTERDOWN, 300, 790);
    headless::pointer(EVT_POINTERMOVE, 300, 400);
    headless::pointer(EVT_POINTERUP, 300, 400);
    EXPECT_EQ(headless::events(), "");
    headless::pointer(EVT_POINTERDOWN, 300, 400);
    headless::pointer(EVT_POINTERUP, 300, 790);
    EXPECT_NE(headless::events().find("POINTERUP(300,790)"), std::string::npos);
}

TEST_F(StatusPanel, AtTheTopItsRowsAreShownAboveTheOthers) {
    write_file("system/themes/top.tqt", ThemeFile("panel.height=40\npanel_position=1\n").bytes());
    ASSERT_TRUE(hw::hooks.change_theme("top"));
    headless::advance(100);
    FillArea(0, 0, ScreenWidth(), ScreenHeight(), DGRAY);
    FullUpdate();
    const hw::PixelBuffer pixels = hw::device()->pixels();
    const auto grey = [&](int x, int y) { return pixels.data[y * pixels.stride + x * 4]; };
    EXPECT_EQ(grey(300, 0), 255);
    EXPECT_EQ(grey(300, 39), 0); // the rule
    EXPECT_EQ(grey(300, 40), 0x55);
    EXPECT_EQ(grey(300, 799), 0x55);
    headless::clear_events();
    headless::tap(300, 10);
    EXPECT_EQ(headless::events(), "61 ");
}

class Hourglass : public boxes::Test {};

TEST_F(Hourglass, StandsUntilTheLastCallIsTakenBack) {
    const std::vector<uint8_t> before = screen();
    HideHourglass();
    ShowHourglass();
    ShowHourglassAt(-500, 100000);
    EXPECT_FALSE(screen() == before);
    HideHourglass();
    EXPECT_FALSE(screen() == before);
    HideHourglass();
    EXPECT_TRUE(screen() == before);
    ASSERT_EQ(update_calls(), "PartialUpdate PartialUpdate ");
    EXPECT_LT(headless::updates()[0].w, 80);
}

TEST_F(Hourglass, WhatIsDrawnOverItStays) {
    ShowHourglass();
    ClearScreen();
    headless::clear_updates();
    HideHourglass();
    EXPECT_EQ(ink(screen()), 0);
    EXPECT_EQ(update_calls(), "");
    for (const int orientation : {1, 0}) {
        ShowHourglassAt(-500, 100000);
        SetOrientation(orientation);
        HideHourglass();
    }
}

TEST_F(Hourglass, IsShownAtTheEndOnlyWhereItIsWanted) {
    const struct {
        void (*prepare)();
        int theme, updates;
    } cases[] = {{[] {}, 0, 0},
                 {EnableExitHourglass, 0, 1},
                 {[] { EnableExitHourglass(), DisableExitHourglass(); }, 1, 0},
                 {[] {}, 1, 0}}; // an external program has it disabled
    for (const auto &c : cases) {
        const std::string theme = "hourglass.exit=" + std::to_string(c.theme) + "\n";
        restart_with("theme=end\n");
        write_file("system/themes/end.tqt", ThemeFile(theme).bytes());
        OpenTheme("end");
        c.prepare();
        headless::clear_updates();
        ClearOnExit();
        EXPECT_EQ(headless::updates().size(), static_cast<size_t>(c.updates));
    }
}

} // namespace
