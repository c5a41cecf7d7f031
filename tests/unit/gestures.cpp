// SPDX-License-Identifier: MIT
// Fingers of the headless device, and what a handler is told that they mean. The panel has 167 dots
// an inch: 3 mm are 19 pixels, 8 mm 52, 10 mm 65.
#include "kelvane/gestures.h"

#include <climits>
#include <gtest/gtest.h>
#include <string>

#include "kelvane/updates.h"
#include "support/headless.h"

namespace {

constexpr const char *names[] = {"",      "tap", "double", "long", "left",
                                 "right", "up",  "down",   "in",   "out"};

class Gestures : public headless::Test {
  protected:
    Gestures() {
        headless::on_event([this](int type, int par1, int par2) {
            const int code = RecogniseGesture(&hand, type, par1, par2);
            if (code != GESTURE_NONE) heard += std::string(names[code]) + " ";
            return 1;
        });
    }
    // Fingers on a panel with several touches: the event, the finger and its place, then the sync.
    void touch(int type, int finger, int x, int y, int count) {
        hw::push_input(type, finger, x, y);
        headless::raw(EVT_MTSYNC, 0, 0, count);
    }
    void drag(int x, int y, int to_x, int to_y) {
        headless::pointer(EVT_POINTERDOWN, x, y);
        for (int i = 1; i <= 4; ++i)
            headless::pointer(EVT_POINTERMOVE, x + (to_x - x) * i / 4, y + (to_y - y) * i / 4);
        headless::pointer(EVT_POINTERUP, to_x, to_y);
    }
    std::string take() {
        const std::string all = heard;
        heard.clear();
        headless::advance(1000); // what comes next has nothing to do with it
        return all;
    }
    kv_gestures hand{};
    std::string heard;
};

TEST_F(Gestures, OneFinger) {
    headless::tap(100, 200);
    EXPECT_EQ(hand.x, 100);
    EXPECT_EQ(hand.y, 200);
    EXPECT_EQ(take(), "tap ");
    const struct {
        int dx, dy;
        const char *expected;
    } table[] = {{18, 0, "tap "},   {20, 0, ""},       {64, 0, ""},        {66, 0, "right "},
                 {-66, 0, "left "}, {0, -66, "up "},   {0, 66, "down "},   {-90, 44, "left "},
                 {-90, 46, ""},     {60, -150, "up "}, {-13, -13, "tap "}, {-14, -14, ""}};
    for (const auto &row : table) {
        drag(300, 400, 300 + row.dx, 400 + row.dy);
        EXPECT_EQ(hand.dx, row.dx);
        EXPECT_EQ(hand.dy, row.dy);
        EXPECT_EQ(take(), row.expected) << row.dx << ' ' << row.dy;
    }
    for (const int way : {300, 19}) { // there and back: near enough it is a tap
        headless::pointer(EVT_POINTERDOWN, 100, 100);
        headless::pointer(EVT_POINTERMOVE, 100 + way, 100);
        headless::pointer(EVT_POINTERMOVE, 100, 100);
        headless::pointer(EVT_POINTERUP, 100, 100);
        EXPECT_EQ(take(), way == 19 ? "tap " : "");
    }
}

TEST_F(Gestures, TwoTaps) {
    const auto taps = [&](int dx, int pause_ms, int count) {
        for (int i = 0; i < count; ++i) {
            headless::tap(100 + i * dx, 100);
            headless::advance(pause_ms);
        }
        return take();
    };
    EXPECT_EQ(taps(0, 100, 2), "tap double ");
    EXPECT_EQ(taps(0, 100, 4), "tap double tap double ") << "each tap counts once";
    EXPECT_EQ(taps(50, 100, 2), "tap double ");
    EXPECT_EQ(taps(54, 100, 2), "tap tap ");
    EXPECT_EQ(taps(0, 510, 2), "tap tap ");
    hand.double_tap_ms = 700;
    EXPECT_EQ(taps(0, 510, 2), "tap double ");
    headless::tap(100, 100);
    drag(100, 100, 300, 100);
    headless::tap(100, 100);
    EXPECT_EQ(take(), "tap right tap ");
    hand.double_tap_ms = 300;
    headless::tap(100, 100);
    headless::advance(200);
    headless::pointer(EVT_POINTERDOWN, 100, 100); // in time, and lifted later
    headless::advance(200);
    headless::pointer(EVT_POINTERUP, 100, 100);
    EXPECT_EQ(take(), "tap double ");
    headless::tap(100, 100);
    Repaint();
    headless::tap(100, 100);
    EXPECT_EQ(take(), "tap double ") << "the first one turned a page";
    headless::tap(100, 100);
    SendEvent(GetEventHandler(), EVT_HIDE, 0, 0);
    headless::tap(100, 100);
    EXPECT_EQ(take(), "tap tap ");
}

TEST_F(Gestures, NoTapFollowsALongPress) {
    headless::pointer(EVT_POINTERDOWN, 100, 200);
    headless::advance(400);
    EXPECT_EQ(heard, "long ");
    headless::pointer(EVT_POINTERMOVE, 300, 200);
    headless::pointer(EVT_POINTERUP, 300, 200);
    EXPECT_EQ(take(), "long ");
    headless::tap(100, 200);
    EXPECT_EQ(take(), "tap ");
    kv_gestures other{}; // where the finger is not where it came down
    RecogniseGesture(&other, EVT_POINTERDOWN, 100, 200);
    EXPECT_EQ(RecogniseGesture(&other, EVT_POINTERLONG, 150, 200), GESTURE_NONE);
    EXPECT_EQ(RecogniseGesture(&other, EVT_POINTERUP, 100, 200), GESTURE_NONE);
}

TEST_F(Gestures, TwoFingers) {
    const auto pinch = [&](int from, int to, bool second_is_lifted) {
        touch(EVT_POINTERDOWN, 0, 200, 300, 1);
        touch(EVT_POINTERDOWN, 1, 200 + from, 300, 2);
        touch(EVT_POINTERMOVE, 1, 200 + (from + to) / 2, 300, 2);
        touch(EVT_POINTERMOVE, 1, 200 + to, 300, 2);
        touch(EVT_POINTERUP, second_is_lifted ? 1 : 0, second_is_lifted ? 200 + to : 200, 300, 1);
        touch(EVT_POINTERUP, second_is_lifted ? 0 : 1, second_is_lifted ? 200 : 200 + to, 300, 0);
        return take();
    };
    for (const bool second_is_lifted : {true, false}) {
        EXPECT_EQ(pinch(100, 200, second_is_lifted), "out ");
        EXPECT_EQ(hand.scale, 200);
        EXPECT_EQ(hand.x, 250);
        EXPECT_EQ(pinch(200, 100, second_is_lifted), "in ");
        EXPECT_EQ(hand.scale, 50);
        EXPECT_EQ(pinch(200, 250, second_is_lifted), "") << "too little, and no tap";
    }
    headless::tap(100, 200);
    EXPECT_EQ(take(), "tap ");
    // The middle one of three is lifted: the other two were as far from each other all the time.
    for (const int finger : {0, 1, 2})
        touch(EVT_POINTERDOWN, finger, 100 + finger * finger * 100, 300, finger + 1);
    touch(EVT_POINTERUP, 1, 200, 300, 2);
    touch(EVT_POINTERUP, 2, 500, 300, 1);
    touch(EVT_POINTERUP, 0, 100, 300, 0);
    EXPECT_EQ(take(), "");
    // A long press is none while a second finger is down.
    touch(EVT_POINTERDOWN, 0, 200, 300, 1);
    touch(EVT_POINTERDOWN, 1, 300, 300, 2);
    headless::advance(400);
    EXPECT_EQ(heard, "");
}

// A box that opened under the finger has the rest of its events.
TEST_F(Gestures, AHandlerStartsWithNoFinger) {
    headless::pointer(EVT_POINTERDOWN, 100, 200);
    Repaint();
    headless::advance(10);
    headless::pointer(EVT_POINTERUP, 100, 200);
    EXPECT_EQ(take(), "");
    EXPECT_EQ(RecogniseGesture(nullptr, EVT_POINTERUP, 1, 1), GESTURE_NONE);
    for (const int mm : {INT_MIN, -1, INT_MAX}) {
        kv_gestures odd{};
        odd.tap_mm = odd.swipe_mm = odd.double_tap_mm = odd.double_tap_ms = odd.pinch_mm = mm;
        for (const int place : {INT_MIN, 0, INT_MAX})
            for (const int type : {30, 34, 30, 29, 39, 25, INT_MAX})
                RecogniseGesture(&odd, type, place, -1 - place);
    }
}

} // namespace
