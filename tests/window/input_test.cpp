// SPDX-License-Identifier: MIT
// Keys and pointer, from the X server to the handler.
#include <iterator>
#include <utility>

#include <X11/keysym.h>

#include "session.h"

namespace {

constexpr int KEY_EVENTS[] = {25, 26, 28};

Lines key_events(const Lines &lines) {
    return events_in(lines, {std::begin(KEY_EVENTS), std::end(KEY_EVENTS)});
}

} // namespace

TEST_F(WindowTest, EveryKeyOfTheTableArrivesWithItsCode) {
    const struct {
        unsigned long keysym;
        int code; // 0: not a key of the device
    } keys[] = {
        {XK_F4, 8},       {XK_Left, 19},  {XK_F2, 23},     {XK_F1, 30},
        {XK_Return, 10},  {XK_Right, 20}, {XK_KP_Add, 22}, {XK_KP_Subtract, 21},
        {XK_Down, 18},    {XK_Up, 17},    {XK_Prior, 24},  {XK_Next, 25},
        {XK_End, 29},     {XK_Escape, 1}, {XK_Home, 28},   {XK_F12, 26},
        {XK_KP_Enter, 0}, {XK_a, 0},      {XK_F5, 0},      {XK_KP_Up, 0},
        {XK_Shift_L, 0},  {XK_space, 0},  {XK_plus, 0},    {XK_F3, 27},
    };
    start();
    Lines expected;
    for (const auto &key : keys) {
        server_.stroke(key.keysym);
        if (key.code == 0) continue;
        expected.push_back("25 " + std::to_string(key.code) + " 0");
        expected.push_back("26 " + std::to_string(key.code) + " 0");
    }
    EXPECT_EQ(key_events(until("26 27 0")), expected);
}

TEST_F(WindowTest, WhatIsTypedGoesToAnOpenKeyboard) {
    start({"letters=1"});
    Lines expected;
    for (const auto &[keysym, character] : {std::pair{XK_a, 97}, {XK_7, 55}, {XK_space, 32}}) {
        server_.stroke(static_cast<unsigned long>(keysym));
        expected.push_back("25 " + std::to_string(character) + " 0");
        expected.push_back("26 " + std::to_string(character) + " 0");
    }
    for (const unsigned long key : {XK_BackSpace, XK_Escape, XK_F5}) server_.stroke(key);
    server_.stroke(XK_z);
    expected.insert(expected.end(), {"25 122 0", "26 122 0"});
    EXPECT_EQ(key_events(until("26 122 0")), expected);
}

TEST_F(WindowTest, TwoKeysHeldTogetherAreToldApart) {
    start();
    for (unsigned long key : {XK_Up, XK_Return}) server_.key(key, true);
    for (unsigned long key : {XK_Up, XK_Return}) server_.key(key, false);
    // The second press starts the repeat anew; the first release ends it and what may follow.
    EXPECT_EQ(key_events(until("26 17 0")), (Lines{"25 17 0", "25 10 0", "26 17 0"}));
}

TEST_F(WindowTest, TheServersAutoRepeatIsOnePressAndTheRuntimesOwnRepeats) {
    start({"delay=400", "interval=150"});
    server_.set_auto_repeat(60, 20);
    server_.watch_presses(window_);
    server_.key(XK_Right, true);
    int presses = 0;
    EXPECT_TRUE(desktop::await([&] { return (presses += server_.count_presses()) > 5; }));
    const Lines before = until("28 20 2");
    server_.key(XK_Right, false);
    Lines after = key_events(app_->take_until("26 20 2").value_or(Lines{}));
    EXPECT_EQ(key_events(before), (Lines{"25 20 0", "28 20 1", "28 20 2"}));
    EXPECT_EQ(after, Lines{"26 20 2"});
}

TEST_F(WindowTest, KeysThatNobodySeesGoUpAreReleased) {
    start({"delay=300", "interval=100"});
    server_.key(XK_Up, true);
    server_.key(XK_Return, true);
    until("25 10 0");
    server_.click(3, root_x(100), root_y(100)); // the menu takes the keyboard
    until("26 10 0"); // the first release ends what the second press began, as ever
    ASSERT_TRUE(desktop::await([&] { return !server_.popups().empty(); }));
    server_.key(XK_Up, false);
    server_.key(XK_Return, false);
    server_.stroke(XK_Escape);
    ASSERT_TRUE(desktop::await([&] { return server_.popups().empty(); }));

    server_.key(XK_Down, true);
    EXPECT_EQ(events_in(until("25 18 0"), {28}), Lines{}) << "nothing repeats behind the menu";
    server_.move(root_x(place_.width + 50), root_y(100)); // the focus follows the pointer
    until("26 18 0");
    server_.key(XK_Down, false);
}

TEST_F(WindowTest, APointerThatLeavesTheWindowIsReleasedAllTheSame) {
    start();
    server_.move(root_x(100), root_y(200));
    server_.button(1, true);
    until("30 100 200");
    server_.move(root_x(place_.width + 80), root_y(210));
    server_.button(1, false);
    EXPECT_EQ(events_in(until("29 599 210"), {34}), Lines{});

    server_.move(root_x(100), root_y(200));
    server_.button(1, true);
    until("30 100 200");
    server_.click(3, root_x(100), root_y(200)); // the menu takes the pointer
    until("29 100 200");
    server_.button(1, false);
}

TEST_F(WindowTest, TheLeftButtonIsTheTouchPanel) {
    const struct {
        int mode, numerator, denominator; // from the drawing area to the framebuffer
    } scales[] = {{0, 1, 1}, {6, 2, 1}, {10, 3, 2}};
    for (const auto &[mode, numerator, denominator] : scales) {
        SCOPED_TRACE(mode);
        const auto event = [n = numerator, d = denominator](int type, int x, int y) {
            return std::to_string(type) + " " + std::to_string(x * n / d) + " " +
                   std::to_string(y * n / d);
        };
        start({}, "emu_resmode=" + std::to_string(mode) + "\n");
        // A drag with another button is no touch.
        server_.move(root_x(51), root_y(301));
        server_.button(2, true);
        server_.move(root_x(52), root_y(312));
        server_.button(2, false);
        server_.move(root_x(101), root_y(203));
        server_.button(1, true);
        Lines lines = until(event(30, 101, 203));
        server_.move(root_x(151), root_y(255));
        lines += until(event(31, 151, 255));
        server_.button(1, false);
        lines += until(event(29, 151, 255));
        // A double click is two clicks.
        for (int click = 0; click < 2; ++click) {
            server_.click(1, root_x(90), root_y(190));
            lines += until(event(29, 90, 190));
        }
        EXPECT_EQ(events_in(lines, {29, 30, 31}),
                  (Lines{event(30, 101, 203), event(31, 151, 255), event(29, 151, 255),
                         event(30, 90, 190), event(29, 90, 190), event(30, 90, 190),
                         event(29, 90, 190)}));
    }
}
