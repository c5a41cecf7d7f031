// SPDX-License-Identifier: MIT
// Which updates reach the device, seen by the headless device.
#include "kelvane/updates.h"

#include <climits>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "hw.h"
#include "hw_linux/device.h"
#include "internal.h"
#include "runtime/updates.h"
#include "support/headless.h"

namespace {

constexpr int wants_refresh = static_cast<int>(0xA0000001U);

class Updates : public headless::Test {
  protected:
    // What an action shows, as "mode/dynamic x,y wxh", one word an update.
    std::string shown(const std::function<void()> &action) {
        headless::clear_updates();
        action();
        std::string text;
        for (const headless::Update &u : headless::updates()) {
            if (!text.empty()) text += " | ";
            text += std::to_string(u.mode) + "/" + std::to_string(u.dynamic) + " " +
                    std::to_string(u.x) + "," + std::to_string(u.y) + " " + std::to_string(u.w) +
                    "x" + std::to_string(u.h);
        }
        return text;
    }
};

TEST_F(Updates, ModesAndAreas) {
    const int w = ScreenWidth(), h = ScreenHeight();
    ASSERT_EQ(w, 600);
    ASSERT_EQ(h, 800);
    struct {
        const char *name;
        std::function<void()> action;
        const char *expected;
    } const cases[] = {
        {"rounding", [] { PartialUpdate(1, 1, 10, 10); }, "234/1 0,0 12x12"},
        {"rounding keeps multiples", [] { PartialUpdate(4, 8, 12, 16); }, "234/1 4,8 12x16"},
        {"negative origin widens", [] { PartialUpdate(-10, 0, 50, 50); }, "234/1 0,0 64x52"},
        {"negative origin, unrounded",
         [] { do_partial_update(-10, 0, 50, 50, 234, DYNAMIC_PARTIAL); }, "234/1 0,0 60x50"},
        {"cut at the edges", [] { PartialUpdate(590, 790, 100, 100); }, "234/1 588,788 12x12"},
        {"whole screen", [=] { PartialUpdate(0, 0, w, h); }, "0/0 0,0 600x800"},
        {"empty",
         [] {
             PartialUpdate(8, 8, 0, 0);
             PartialUpdate(8, 8, -20, 5);
         },
         ""},
        {"outside",
         [] {
             PartialUpdate(600, 0, 10, 10);
             PartialUpdate(0, INT_MAX, 9, 9);
         },
         ""},
        {"absurd", [] { PartialUpdate(INT_MIN, INT_MIN, INT_MAX, INT_MAX); }, "234/1 0,0 600x800"},
        {"black", [] { PartialUpdateBlack(0, 0, 8, 8); }, "238/1 0,0 8x8"},
        {"black whole", [=] { PartialUpdateBlack(0, 0, w, h); }, "238/0 0,0 600x800"},
        {"bw", [] { PartialUpdateBW(0, 0, 8, 8); }, "1/1 0,0 8x8"},
        {"hq", [] { PartialUpdateHQ(0, 0, 8, 8); }, "233/0 0,0 8x8"},
        {"du4", [] { PartialUpdateDU4(0, 0, 8, 8); }, "229/0 0,0 8x8"},
        {"dynamic", [] { DynamicUpdate(0, 0, 8, 8); }, "0/2 0,0 8x8"},
        {"dynamic bw", [] { DynamicUpdateBW(0, 0, 8, 8); }, "1/2 0,0 8x8"},
        {"pending full update",
         [] {
             kvstate.needupdate = 1;
             PartialUpdateBW(8, 8, 8, 8);
             PartialUpdateBW(8, 8, 8, 8);
         },
         "0/0 0,0 600x800 | 1/1 8,8 8x8"},
        {"pending full update keeps the mode of hq",
         [] {
             kvstate.needupdate = 1;
             PartialUpdateHQ(8, 8, 8, 8);
         },
         "233/0 0,0 600x800"},
        {"soft", [] { SoftUpdate(); }, "0/0 0,0 600x800"},
    };
    for (const auto &c : cases) EXPECT_EQ(shown(c.action), c.expected) << c.name;
}

TEST_F(Updates, AreCalledAsTheApplicationCalledThem) {
    const struct {
        void (*call)();
        const char *name;
    } calls[] = {{SoftUpdate, "SoftUpdate"},
                 {SoftUpdateHQ, "SoftUpdateHQ"},
                 {FullUpdate, "FullUpdate"},
                 {[] { PartialUpdateHQ(0, 0, 9, 9); }, "PartialUpdateHQ"},
                 {[] { PartialUpdate(0, 0, 9, 9); }, "PartialUpdate"}};
    for (const auto &c : calls) {
        headless::clear_updates();
        c.call();
        ASSERT_EQ(headless::updates().size(), 1u) << c.name;
        EXPECT_STREQ(headless::updates()[0].call, c.name);
    }
}

TEST_F(Updates, ScreensWhoseSidesAreNoMultiplesOfFourHaveAWholeToo) {
    restart_with("emu_resmode=1\n");
    ASSERT_EQ(ScreenWidth(), 758);
    EXPECT_EQ(shown([] { PartialUpdate(0, 0, 758, 1024); }), "0/0 0,0 758x1024");
    EXPECT_EQ(shown([] { PartialUpdate(0, 0, 750, 1024); }), "234/1 0,0 752x1024");
}

TEST_F(Updates, FastModeIsEnteredOnceAndLeftByAnythingElse) {
    const auto a2 = [] { DynamicUpdateA2(10, 10, 20, 20); };
    EXPECT_EQ(shown(a2), "230/0 8,8 24x24");
    EXPECT_EQ(IsInA2Update(), 1);
    EXPECT_EQ(shown(a2), "239/1 8,8 24x24");
    EXPECT_EQ(shown([] { ExitUpdateA2(); }), "231/0 8,8 24x24");
    EXPECT_EQ(IsInA2Update(), 0);
    EXPECT_EQ(shown([] { ExitUpdateA2(); }), "");
    shown(a2);
    EXPECT_EQ(shown([] { PartialUpdate(0, 0, 4, 4); }), "234/1 0,0 4x4");
    EXPECT_EQ(IsInA2Update(), 0);
    shown(a2);
    FullUpdate();
    EXPECT_EQ(IsInA2Update(), 0);
}

TEST_F(Updates, ThePanelMayAskForASecondUpdate) {
    hw::emulated().update_answer = wants_refresh;
    shown([] { PartialUpdateBW(0, 0, 8, 8); });
    hw::emulated().update_answer = 1;
    EXPECT_EQ(shown([] { headless::advance(378); }), "");
    EXPECT_EQ(shown([] { headless::advance(2); }), "1/1 0,0 8x8");

    hw::emulated().update_answer = wants_refresh;
    shown([] {
        PartialUpdateBW(0, 0, 8, 8);
        PartialUpdateBlack(40, 40, 8, 8);
        PartialUpdate(0, 0, ScreenWidth(), ScreenHeight());
    });
    hw::emulated().update_answer = 1;
    EXPECT_EQ(shown([] { headless::advance(500); }), "0/1 0,0 600x800");

    for (const auto &forget : std::vector<std::function<void()>>{
             FullUpdate, SoftUpdate, [] { DynamicUpdateA2(0, 0, 4, 4); }}) {
        hw::emulated().update_answer = wants_refresh;
        PartialUpdateBW(0, 0, 8, 8);
        hw::emulated().update_answer = 1;
        forget();
        EXPECT_EQ(shown([] { headless::advance(500); }), "");
    }
}

TEST_F(Updates, ScheduledAreasComeInTimeOrJoinAnEarlierUpdate) {
    EXPECT_EQ(shown([] {
                  schedule_area(0, 0, 8, 8, UPDATE_BW, 100);
                  schedule_area(40, 40, 8, 8, UPDATE_GREY, 50);
                  headless::advance(49);
              }),
              "");
    EXPECT_EQ(shown([] { headless::advance(2); }), "0/1 40,40 8x8");
    EXPECT_EQ(shown([] { headless::advance(50); }), "1/1 0,0 8x8");

    EXPECT_EQ(shown([] {
                  schedule_area(0, 0, 20, 20, UPDATE_BW, 100);
                  PartialUpdate(16, 16, 8, 8);
                  headless::advance(500);
              }),
              "234/1 0,0 24x24");

    const std::string many = shown([] {
        for (int i = 0; i < 20; i++) schedule_area(i * 8, 0, 8, 8, UPDATE_BW, 100);
        headless::advance(500);
    });
    for (int i = 0; i < 20; i++)
        EXPECT_EQ(many.find("1/1 " + std::to_string(i * 8) + ",0 8x8") != many.npos, i < 16)
            << "sixteen areas are kept, more are dropped";
    const auto one_more = [] {
        schedule_area(0, 0, 8, 8, UPDATE_BW, 10);
        headless::advance(500);
    };
    for (int i = 0; i < 16; i++) schedule_area(0, 0, 8, 8, UPDATE_BW, 100);
    FullUpdate();
    EXPECT_EQ(shown(one_more), "") << "what was dropped keeps its place until its time is over";
    EXPECT_EQ(shown(one_more), "1/1 0,0 8x8");
}

TEST_F(Updates, RepaintAndTheDeprecatedCall) {
    headless::clear_events();
    Repaint();
    headless::advance(1);
    EXPECT_EQ(headless::events(), "SHOW ");
    testing::internal::CaptureStderr();
    EXPECT_EQ(shown([] { ScheduleUpdate(0, 0, 8, 8, 0); }), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "ScheduleUpdate() is deprecated - do not use!\n");
}

TEST(UpdatesClosed, NothingHappensWithoutAScreen) {
    PartialUpdate(0, 0, 10, 10);
    FullUpdate();
    SoftUpdateHQ();
    FineUpdate();
    DynamicUpdateA2(0, 0, 10, 10);
    ExitUpdateA2();
    WaitForUpdateComplete();
    Repaint();
    EXPECT_EQ(do_partial_update(0, 0, 10, 10, 0, DYNAMIC_OFF), 0);
}

} // namespace
