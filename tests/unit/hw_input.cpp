// SPDX-License-Identifier: MIT
// Keys, pointer and menu commands, from the device to the main handler.
#include <climits>
#include <gtest/gtest.h>
#include <string>
#include <tuple>
#include <vector>

#include "hw.h"
#include "hw_linux/device.h"
#include "hw_linux/input.h"
#include "hw_linux/menu.h"
#include "support/headless.h"

namespace {

class Input : public headless::Test {};

constexpr int codes[] = {27, 8,  19, 23, 30, 10, 20, 22, 21, 18, 17, 24,
                         25, 29, 1,  28, 26, 0,  0,  22, 21, 7,  6};

using Raw = std::vector<std::tuple<int, int, int, int>>; // type, mod, par1, par2

Raw taken() {
    Raw all;
    for (hw_event e; hw_nextevent(&e);)
        all.emplace_back(e.type, e.data.common.mod, e.data.common.par1, e.data.common.par2);
    return all;
}

TEST_F(Input, KeyMasksAndHeldKeys) {
    for (int bit = 0; bit < 31; ++bit) {
        const int code = bit < static_cast<int>(std::size(codes)) ? codes[bit] : 0;
        EXPECT_EQ(kv_key(1 << bit), code) << bit;
        hw::set_key_bit(bit, true);
        EXPECT_EQ(hw_keystate(code), code && bit < 16) << bit;
        hw::set_key_bit(bit, false);
        EXPECT_EQ(hw_keystate(code), 0) << bit;
    }
    for (int mask : {0, 3, -1, INT_MIN, INT_MAX}) EXPECT_EQ(kv_key(mask), 0) << mask;
    for (int bit : {-1, INT_MIN, INT_MAX}) hw::set_key_bit(bit, true);
    EXPECT_EQ(hw_keystate(INT_MIN), 0);
}

TEST_F(Input, OnlyAChangeOfAKeyIsAnEvent) {
    for (bool down : {true, true, false, false, true}) hw::set_key_bit(5, down);
    EXPECT_EQ(taken(), (Raw{{25, 0, 10, 0}, {26, 0, 10, 0}, {25, 0, 10, 0}}));
}

TEST_F(Input, TheRingHoldsSixtyThreeEntriesAndSaysWhenItIsFull) {
    testing::internal::CaptureStderr();
    Raw expected;
    for (int i = 0; i < 65; ++i) {
        hw::push_input(40, i, -i, INT_MAX);
        if (i < 63) expected.emplace_back(40, i, -i, INT_MAX);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Gtk events queue overflow\nGtk events queue overflow\n");
    EXPECT_EQ(taken(), expected);
    EXPECT_EQ(hw_nextevent(nullptr), 0);
}

TEST_F(Input, PointerEventsAndTheirMultiTouchFrames) {
    hw::pointer_input(31, 1, 1);
    EXPECT_EQ(taken(), Raw()) << "a move counts only between down and up";
    hw::pointer_input(30, 10, 20);
    hw::pointer_input(31, 11, 21);
    hw::pointer_input(29, 12, 22);
    hw::pointer_input(31, 13, 23);
    EXPECT_EQ(taken(), (Raw{{30, 0, 10, 20},
                            {39, 0, 0, 1},
                            {31, 0, 11, 21},
                            {39, 0, 0, 1},
                            {29, 0, 12, 22},
                            {39, 0, 0, 0}}));
}

TEST_F(Input, DrawingAreaPixelsAreScaledToPanelPixels) {
    const struct {
        const char *config;
        int x, y;
    } cases[] = {{"emu_resmode=6\n", 202, 402}, {"emu_resmode=10\n", 151, 301}};
    for (const auto &c : cases) {
        restart_with(c.config);
        hw::pointer_input(30, 101, 201);
        const Raw events = taken();
        ASSERT_FALSE(events.empty());
        EXPECT_EQ(events[0], std::make_tuple(30, 0, c.x, c.y)) << c.config;
        hw::pointer_input(29, INT_MIN, INT_MAX);
        taken();
    }
}

TEST_F(Input, KeysTurnWithThePictureOfADeviceThatStartsTurned) {
    const int looked_for[] = {KEY_UP, KEY_RIGHT, KEY_DOWN, KEY_LEFT, KEY_PREV, KEY_NEXT, KEY_OK};
    for (int position = 0; position < 4; ++position) {
        restart_with("orientation=" + std::to_string(position + 1) + "\n");
        ASSERT_EQ(GetOrientation(), position);
        for (int key : looked_for) {
            headless::clear_events();
            headless::key_down(key);
            headless::advance(1000);
            headless::key_up(key);
            const std::string code = "(" + std::to_string(key);
            EXPECT_EQ(headless::events(),
                      "KEYPRESS" + code + ",0) KEYREPEAT" + code + ",1) KEYRELEASE" + code + ",1) ")
                << position;
        }
        // A picture upside down turns the keys with it, as it does on a device held upright.
        SetOrientation(3 - position);
        headless::clear_events();
        headless::press(KEY_UP);
        EXPECT_EQ(headless::events(), "KEYPRESS(18,0) KEYRELEASE(18,0) ") << position;
    }
}

TEST_F(Input, AFingerIsLiftedWhereverItIs) {
    const struct {
        const char *config;
        int x, y;
        const char *up;
    } cases[] = {{"", -7, 900, "POINTERUP(0,799) "},
                 {"", INT_MAX, INT_MIN, "POINTERUP(599,0) "},
                 {"emu_resmode=6\n", -1, 5000, "POINTERUP(0,1023) "},
                 {"orientation=2\n", 900, -1, "POINTERUP(799,0) "}};
    for (const auto &c : cases) {
        restart_with(c.config);
        headless::on_event([](int type, int, int) { return type == EVT_MTSYNC; });
        hw::pointer_input(EVT_POINTERDOWN, 50, 60);
        hw::pointer_input(EVT_POINTERUP, c.x, c.y);
        headless::advance(1000);
        EXPECT_NE(headless::events().find(c.up), std::string::npos) << headless::events();
        EXPECT_EQ(headless::events().find("POINTERLONG"), std::string::npos) << c.config;
    }
    SetOrientation(3);
    headless::clear_events();
    headless::tap(0, 0); // the free edge of a turned picture is no place to touch
    headless::pointer(EVT_POINTERDOWN, 10, 10);
    headless::pointer(EVT_POINTERUP, 0, 0);
    EXPECT_NE(headless::events().find("POINTERUP"), std::string::npos);
}

TEST_F(Input, APersonWhoTurnsAwayLetsGoOfEverything) {
    for (int bit : {5, 9}) hw::set_key_bit(bit, true);
    hw::panel_pointer_input(EVT_POINTERDOWN, 3, 4);
    hw::panel_pointer_input(EVT_POINTERMOVE, 5, 6);
    taken();
    for (int round = 0; round < 2; ++round) {
        hw::release_keys();
        hw::lift_pointer();
        EXPECT_EQ(taken(),
                  round ? Raw()
                        : (Raw{{26, 0, 10, 0}, {26, 0, 18, 0}, {29, 0, 5, 6}, {39, 0, 0, 0}}));
    }
}

TEST_F(Input, MenuCommandsReachTheMainHandler) {
    const struct {
        int command;
        const char *events;
    } cases[] = {{701, "FOREGROUND "},
                 {702, "BACKGROUND "},
                 {703, "SDIN "},
                 {704, "SDOUT "},
                 {2001, "264(5,0) "},
                 {2002, "264(2,0) "},
                 {2003, "264(3,0) "},
                 {2004, "264(4,0) "},
                 {2005, "264 "},
                 {2006, "264(1,0) "},
                 {2100, "264(6,0) "},
                 {2107, "264(6,70) "},
                 {2110, "264(6,100) "},
                 {803, "ORIENTATION(3,0) "},
                 {205, ""},
                 {999, ""}};
    testing::internal::CaptureStderr();
    std::string log;
    for (const auto &c : cases) {
        headless::clear_events();
        headless::command(c.command);
        EXPECT_EQ(headless::events(), c.events) << c.command;
        log += "Command " + std::to_string(c.command) + " selected\n";
        if (c.command == 803) log += "Orientation: 3 changed\n";
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), log);
    SetEventHandler(nullptr);
    headless::command(hw::command_quit);
    EXPECT_EQ(kvstate.exiting, EXIT_REQUESTED);
}

TEST_F(Input, RadioCommandsChangeTheEmulatedDevice) {
    for (const hw::MenuItem &item : hw::menu_items()) {
        if (!item.has_mark() || item.command >= 800) continue;
        testing::internal::CaptureStderr();
        hw::run_command(item.command);
        testing::internal::GetCapturedStderr();
        EXPECT_TRUE(item.is_marked()) << item.path;
        for (const hw::MenuItem &other : hw::menu_items()) {
            const bool in_group = other.has_mark() && other.command / 100 == item.command / 100;
            EXPECT_EQ(in_group && other.is_marked(), &other == &item) << other.path;
        }
    }
    hw::run_command(203);
    EXPECT_EQ(hw_power(), 60);
    hw::run_command(302);
    EXPECT_EQ(hw_issdinserted(), 0);
    hw::run_command(401);
    EXPECT_EQ(hw_isusbconnected(), 1);
}

TEST_F(Input, PositionAndDisplayModeAreKeptInTheConfiguration) {
    testing::internal::CaptureStderr();
    hw::run_command(503);
    hw::run_command(609);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Command 503 selected\n"
              "Orientation: 3 installed. Restart application to apply changes.\n"
              "Command 609 selected\n"
              "Videomode: 1072x1448 installed. Restart application to apply changes.\n");
    EXPECT_EQ(read_file("system/config/global.cfg"), "emu_resmode=8\norientation=3\n");
}

} // namespace
