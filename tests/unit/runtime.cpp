// SPDX-License-Identifier: MIT
// From raw device events to the handler, on the headless clock.
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "ground/message.h"
#include "hw.h"
#include "hw_linux/device.h"
#include "internal.h"
#include "kelvane/events.h"
#include "kelvane/timers.h"
#include "runtime/queue.h"
#include "runtime/screens.h"
#include "support/headless.h"

namespace {

std::string log_text, actions;

void log_event(int type, int par1, int par2) {
    log_text +=
        std::to_string(type) + ":" + std::to_string(par1) + "," + std::to_string(par2) + " ";
}

int log_all(int type, int par1, int par2) {
    log_event(type, par1, par2);
    return 1;
}

int log_unhandled(int type, int par1, int par2) {
    log_event(type, par1, par2);
    return 0;
}

int other_handler(int type, int, int) {
    log_text += "other" + std::to_string(type) + " ";
    return 1;
}

class Runtime : public headless::Test {
  protected:
    void SetUp() override {
        headless::Test::SetUp();
        kvstate.hproc = kvstate.mainhproc = log_all;
        log_text.clear();
        actions.clear();
    }
    // What the handlers hear while `action` runs and `ms` pass.
    static std::string heard(const std::function<void()> &action, int ms = 1) {
        log_text.clear();
        action();
        headless::advance(ms);
        return log_text;
    }
};

TEST_F(Runtime, TheQueueHoldsSixtyThreeEventsInOrder) {
    std::string expected;
    for (int i = 0; i < 70; i++) {
        SendEvent(log_all, 300, i, 70000);
        if (i < 63) expected += "300:" + std::to_string(i) + ",4464 ";
    }
    EXPECT_EQ(heard([] {}), expected);
    SendEvent(nullptr, 300, 1, 1);
    kv_enqueue(nullptr, 300, 1, 1);
    kv_enqueue(log_all, 0, 1, 1);
    SendEvent(log_all, 65536 + 301, -1, 0);
    EXPECT_EQ(heard([] {}), "301:65535,0 ");
}

TEST_F(Runtime, EventsKeepTheHandlerTheyWereQueuedFor) {
    SendEvent(log_all, 300, 1, 2);
    EXPECT_EQ(SetEventHandler(other_handler), log_all);
    SendEvent(GetEventHandler(), 301, 0, 0);
    EXPECT_EQ(heard([] {}), "300:1,2 24:0,0 other23 other301 ");
    EXPECT_EQ(heard([] { kv_restoreeventhandler(log_all, 100, 100); }), "38:0,0 ");
    EXPECT_EQ(kvstate.keytime1, 100);
    kv_restoreeventhandler(log_all, 100, 99);
    EXPECT_EQ(kvstate.keytime1, 1000);
    EXPECT_EQ(kvstate.keytime2, 500);
    kvstate.uiflags |= UI_QUICK_NAVIGATOR;
    EXPECT_EQ(SetEventHandlerEx(nullptr), log_all);
    EXPECT_EQ(kvstate.uiflags & UI_QUICK_NAVIGATOR, 0);
    EXPECT_EQ(heard([] { SetEventHandler(log_all); }), "38:0,0 23:0,0 ");
}

int read_data(int, int, int) {
    log_text += GetCurrentEventExData() ? static_cast<char *>(GetCurrentEventExData()) : "none";
    return 1;
}

TEST_F(Runtime, ExtraDataIsThereDuringDeliveryOnly) {
    char text[] = "data ";
    SendEventEx(read_data, 300, 0, 0, text);
    SendEvent(read_data, 300, 0, 0);
    EXPECT_EQ(heard([] {}), "data none");
    EXPECT_EQ(GetCurrentEventExData(), nullptr);
}

TEST_F(Runtime, AnyEventsAsksTheDeviceOnceTheQueueIsNotPlain) {
    EXPECT_EQ(IsAnyEvents(), 0);
    hw::push_input(EVT_KEYPRESS, 0, KEY_OK, 0);
    EXPECT_EQ(IsAnyEvents(), 1);
    EXPECT_EQ(kvstate.currentkey, KEY_OK) << "the device event has been taken";
    EXPECT_EQ(IsAnyEvents(), 1);
    headless::advance(1);
    kvstate.evtstart = kvstate.evtend = 62;
    for (int i = 0; i < 4; i++) SendEvent(log_all, 300, i, 0);
    EXPECT_EQ(IsAnyEvents(), 0) << "a wrapped queue is not looked at";
    EXPECT_EQ(heard([] {}), "300:0,0 300:1,0 300:2,0 300:3,0 ");
    hw::push_input(EVT_KEYPRESS, 0, KEY_OK, 0);
    SendEvent(log_all, 300, 0, 0);
    FlushEvents();
    EXPECT_EQ(heard([] {}), "300:0,0 ");
}

int sends_itself(int type, int par1, int par2) {
    log_all(type, par1, par2);
    SendEvent(sends_itself, type, 0, 0);
    return 1;
}

TEST_F(Runtime, AStepDeliversForFiftyMilliseconds) {
    SendEvent(sends_itself, 300, 0, 0);
    const int64_t start = headless::now();
    ProcessEventLoop();
    EXPECT_GE(headless::now() - start, 50);
    EXPECT_LE(headless::now() - start, 75) << "and then pauses once";
    queue_open();
}

TEST_F(Runtime, KeysRepeatWhileHeld) {
    EXPECT_EQ(heard([] { headless::key_down(KEY_OK); }, 998), "25:10,0 ");
    EXPECT_EQ(heard([] {}, 2), "28:10,1 ");
    EXPECT_EQ(heard([] {}, 497), "");
    EXPECT_EQ(heard([] {}, 3), "28:10,2 ");
    EXPECT_EQ(heard([] { headless::key_up(KEY_OK); }, 2000), "26:10,2 ");
    SetKeyboardRate(200, 100);
    EXPECT_EQ(heard([] { headless::key_down(KEY_NEXT); }, 405), "25:25,0 28:25,1 28:25,2 28:25,3 ");
    EXPECT_EQ(heard([] { SetEventHandler(other_handler); }, 2000), "24:0,0 other23 ");
    EXPECT_EQ(heard([] { headless::key_up(KEY_NEXT); }), "") << "its press was another handler's";
    SetEventHandler(log_all);
    heard([] {});
    EXPECT_EQ(heard([] { headless::key_down(KEY_HOME); }, 5000), "25:26,0 ");
    EXPECT_EQ(heard([] { headless::key_up(KEY_HOME); }), "26:26,0 ");
    EXPECT_NE(heard([] { headless::key_down(KEY_OK); }, 5100).find("28:10,9 "), std::string::npos)
        << "the device does not fall asleep on a held key";
}

TEST_F(Runtime, KeysTurnWithTheScreen) {
    constexpr int keys[] = {17, 18, 19, 20, 24, 25, 10};
    constexpr int expected[4][7] = {{17, 18, 19, 20, 24, 25, 10},
                                    {19, 20, 18, 17, 24, 25, 10},
                                    {20, 19, 17, 18, 25, 24, 10},
                                    {18, 17, 20, 19, 25, 24, 10}};
    for (int orientation = 0; orientation < 4; orientation++) {
        SetOrientation(orientation);
        for (int i = 0; i < 7; i++)
            EXPECT_EQ(kv_transform_key(keys[i]), expected[orientation][i]) << orientation << i;
    }
    EXPECT_EQ(heard([] {
                  SetOrientation(3);
                  headless::press(KEY_UP);
              }),
              "25:18,0 26:18,0 ");
    SetOrientation(7);
    EXPECT_EQ(GetOrientation(), 3);
}

TEST_F(Runtime, PointerDownLongDragUp) {
    const auto down = [] { hw::push_input(EVT_POINTERDOWN, 0, 100, 200); };
    const auto move = [](int x, int y) { hw::push_input(EVT_POINTERMOVE, 0, x, y); };
    const auto up = [] { hw::push_input(EVT_POINTERUP, 0, 110, 200); };
    EXPECT_EQ(heard(down, 349), "30:100,200 ");
    EXPECT_EQ(heard([] {}, 1), "34:100,200 ");
    EXPECT_EQ(heard(up, 1000), "29:110,200 ");
    EXPECT_EQ(heard(up, 1000), "") << "without a press";

    // The dead zone of 225 is compared with the squared distance: 14 stays, 15 drags.
    EXPECT_EQ(heard(
                  [&] {
                      down();
                      move(114, 200);
                      move(115, 200);
                      move(129, 200);
                  },
                  1000),
              "30:100,200 31:114,200 31:115,200 44:115,200 31:129,200 ");
    heard(up);
    EXPECT_EQ(heard(
                  [&] {
                      down();
                      move(101, 201);
                  },
                  400),
              "30:100,200 31:101,201 34:100,200 ");
    EXPECT_EQ(heard([] { hw::push_input(EVT_POINTERHOLD, 0, 5, 6); }), "35:5,6 ");
    heard(up);
    EXPECT_EQ(heard([] { hw::push_input(EVT_POINTERLONG, 0, 5, 6); }), "");
    EXPECT_EQ(heard(
                  [&] {
                      down();
                      hw::push_input(EVT_POINTERUP, 0, 9999, 0);
                  },
                  1000),
              "30:100,200 34:100,200 ")
        << "what lies outside the screen is dropped";
}

TEST_F(Runtime, PointerTurnsWithTheScreen) {
    struct {
        int orientation;
        const char *expected;
    } const cases[] = {
        {0, "30:100,200 "}, {1, "30:200,500 "}, {2, "30:600,100 "}, {3, "30:500,600 "}};
    for (const auto &c : cases) {
        SetOrientation(c.orientation);
        EXPECT_EQ(heard([] { hw::push_input(EVT_POINTERDOWN, 0, 100, 200); }), c.expected);
    }
}

TEST_F(Runtime, MultiTouchFrames) {
    const auto finger = [](int type, int slot, int x, int y) { hw::push_input(type, slot, x, y); };
    EXPECT_EQ(heard([&] {
                  finger(EVT_POINTERDOWN, 0, 10, 20);
                  finger(EVT_POINTERDOWN, 1, 30, 40);
                  finger(EVT_POINTERDOWN, 3, 50, 60);
                  hw::push_input(EVT_MTSYNC, 0, 0, 2);
              }),
              "30:10,20 39:0,2 ");
    const kv_touch *second = GetTouch(0, 1);
    ASSERT_TRUE(second);
    EXPECT_EQ(second->down, 1);
    EXPECT_EQ(second->x, 30);
    EXPECT_EQ(second->pressure, 255);
    EXPECT_EQ(heard([&] {
                  finger(EVT_POINTERUP, 1, 30, 41);
                  hw::push_input(EVT_MTSYNC, 0, 0, 1);
              }),
              "39:1,1 ");
    EXPECT_EQ(GetTouch(1, 1)->down, 0);
    EXPECT_EQ(GetTouch(1, 1)->pressure, 0);
    EXPECT_EQ(GetTouch(0, 1)->down, 1) << "earlier frames stay";
    EXPECT_EQ(heard([&] {
                  finger(EVT_POINTERMOVE, 0, 0, 0);
                  hw::push_input(EVT_MTSYNC, 0, 0, 1);
                  hw::push_input(EVT_MTSYNC, 0, 0, 0);
              }),
              "31:0,0 44:0,0 39:3,0 ")
        << "a frame at the origin counts only as the last one";
    EXPECT_FALSE(GetTouch(-1, 0) || GetTouch(16, 0) || GetTouch(0, 3));
    loadHwConfigEmulator("0x0010111101012041"); // a panel that knows one finger
    EXPECT_EQ(heard([&] {
                  finger(EVT_POINTERDOWN, 1, 30, 40);
                  hw::push_input(EVT_MTSYNC, 0, 0, 1);
              }),
              "30:30,40 ");
}

TEST_F(Runtime, DeviceEventsPassOrDrop) {
    for (int type : {32, 40, 41, 42, 210})
        EXPECT_EQ(heard([=] { hw::push_input(type, 0, 3, 4); }), std::to_string(type) + ":3,4 ");
    for (int type : {0, 21, 27, 28, 33, 36, 37, 38, 43, 211, 70000, -5})
        EXPECT_EQ(heard([=] { hw::push_input(type, 0, 3, 4); }), "") << type;
}

TEST_F(Runtime, ComponentsSeeInputFirst) {
    kvstate.uiflags |= UI_QUICK_NAVIGATOR;
    screens.navigator_key = [](int, int key) { return key == KEY_UP; };
    EXPECT_EQ(heard([] {
                  headless::press(KEY_UP);
                  headless::press(KEY_OK);
              }),
              "25:10,0 26:10,0 ");
    screens.panel_pointer = [](int type, int, int y) { return type != EVT_MTSYNC && y > 700; };
    EXPECT_EQ(heard([] { headless::tap(5, 750); }, 500).find("30:"), std::string::npos);
    screens.panel_pointer = [](int, int, int) { return true; };
    const auto sync = [] { hw::push_input(EVT_MTSYNC, 0, 0, 0); };
    EXPECT_EQ(heard(sync), "");
    kvstate.tsc[0].captured = 1;
    EXPECT_EQ(heard(sync).substr(0, 3), "39:") << "a captured finger is nobody else's";
    kvstate.uiflags |= UI_PANEL_IGNORES_POINTER;
    EXPECT_NE(heard([] { headless::tap(5, 750); }).find("30:5,750 "), std::string::npos);
}

template <char Name>
void note_action() {
    actions += Name;
}

void on_unhandled_press(int key, int ms) {
    kvstate.hproc = log_unhandled;
    headless::key_down(key);
    headless::advance(ms);
    headless::key_up(key);
}

TEST_F(Runtime, DefaultActionsOfUnhandledEvents) {
    screens.open_player = note_action<'o'>;
    screens.close_player = note_action<'c'>;
    screens.network_info = note_action<'n'>;
    screens.bluetooth_info = note_action<'b'>;
    screens.audio_output = note_action<'a'>;
    screens.calendar = note_action<'k'>;
    screens.front_light = note_action<'f'>;
    screens.main_menu = note_action<'m'>;
    screens.power_action = [](int action) { actions += "p" + std::to_string(action); };
    screens.bitmap_report = [](const char *path) { actions += std::string(path).substr(0, 50); };
    struct {
        int type, par1, par2;
        const char *action;
    } const cases[] = {
        {118, 0, 0, "a"}, {124, 0, 0, "o"},
        {126, 0, 0, "n"}, {127, 0, 0, "k"},
        {128, 0, 0, "b"}, {133, 0, 0, "f"},
        {26, 30, 0, "o"}, {26, 30, 1, ""},
        {25, 23, 0, "m"}, {25, 26, 0, "m"},
        {25, 27, 0, ""},  {26, 1, 0, "p0"},
        {26, 1, 2, ""},   {221, 0, 0, "./system/mnt/ext1/screens/bitmap_usage_report"}};
    for (const auto &c : cases) {
        actions.clear();
        heard([&] { SendEvent(log_unhandled, c.type, c.par1, c.par2); });
        EXPECT_EQ(actions.substr(0, 45), c.action) << c.type << ":" << c.par1;
        actions.clear();
        heard([&] { SendEvent(log_all, c.type, c.par1, c.par2); });
        EXPECT_EQ(actions, "") << "handled";
        if (c.type > 100) continue;
        kvstate.uiflags |= UI_DIALOG_OPEN;
        heard([&] { SendEvent(log_unhandled, c.type, c.par1, c.par2); });
        EXPECT_EQ(actions, "") << "modal";
        kvstate.uiflags &= ~UI_DIALOG_OPEN;
    }
    kvstate.uiflags |= UI_PLAYER_OPEN;
    heard([] { SendEvent(log_unhandled, 124, 0, 0); });
    EXPECT_EQ(actions, "c");
    hw_mp_setvolume(50);
    SendEvent(log_unhandled, EVT_KEYPRESS, KEY_PLUS, 0);
    SendEvent(log_unhandled, EVT_KEYREPEAT, KEY_PLUS, 1);
    SendEvent(log_unhandled, EVT_KEYPRESS, KEY_MINUS, 0);
    headless::advance(1);
    EXPECT_EQ(hw_mp_volume(), 53);
}

TEST_F(Runtime, TheMusicKeyHeldPlaysAndPauses) {
    on_unhandled_press(KEY_MUSIC, 3000);
    EXPECT_EQ(hw_mp_state(), HW_MP_STOPPED) << "nothing is loaded";
    hw_mp_load("song.mp3");
    on_unhandled_press(KEY_MUSIC, 900);
    EXPECT_EQ(hw_mp_state(), HW_MP_STOPPED) << "a short press repeats nothing";
    for (int state : {HW_MP_PLAYING, HW_MP_PAUSED, HW_MP_PLAYING}) {
        on_unhandled_press(KEY_MUSIC, 3000);
        EXPECT_EQ(hw_mp_state(), state) << "only the first repeat counts";
    }
}

TEST_F(Runtime, ThePowerKeyWaitsForASecondPress) {
    screens.power_action = [](int action) { actions += std::to_string(action); };
    kvstate.pwract1 = 1;
    kvstate.pwract2 = 2;
    const auto release = [] { SendEvent(log_unhandled, EVT_KEYRELEASE, KEY_POWER, 0); };
    heard(release, 499);
    EXPECT_EQ(actions, "");
    headless::advance(1);
    EXPECT_EQ(actions, "1");
    heard(release, 300);
    heard(release, 1000);
    EXPECT_EQ(actions, "12");
}

TEST_F(Runtime, TheDevicePowersOffWhenNobodyUsesIt) {
    kvstate.powerofftm = 600000;
    headless::press(KEY_OK);
    headless::advance(599000);
    EXPECT_EQ(kvstate.sleepenable, 1);
    headless::press(KEY_OK);
    headless::advance(599000);
    EXPECT_EQ(kvstate.sleepenable, 1) << "a key starts the time again";
    SetAutoPowerOff(0);
    headless::advance(700000);
    EXPECT_EQ(kvstate.sleepenable, 1);
    SetAutoPowerOff(1);
    headless::advance(600001);
    EXPECT_EQ(kvstate.sleepenable, 0);
}

// A loop whose handlers end it, or close everything, in the middle.
TEST_F(Runtime, LoopsInsideHandlersEndOnce) {
    headless::on_event([](int type, int, int) {
        if (type == 300) {
            LeaveKelvaneMain();
            while (ProcessEventLoop() == KELVANE_CONTINUE) {
            }
        }
        if (type == EVT_HIDE) ProcessEventLoop();
        return 1;
    });
    kvstate.hproc = kvstate.mainhproc;
    PrepareForLoop(headless::handler());
    headless::advance(1);
    headless::clear_events();
    SendEvent(GetEventHandler(), 300, 0, 0);
    EXPECT_EQ(ProcessEventLoop(), KELVANE_RETURN);
    EXPECT_EQ(headless::events(), "300 HIDE ");
}

// How long the device sleeps when nothing happens, in ms from the moment it may.
int64_t next_sleep() {
    while (kvstate.sleeptime > headless::now()) ProcessEventLoop();
    const int64_t asleep = headless::now();
    kvstate.waketime = 0;
    while (kvstate.waketime == 0) ProcessEventLoop();
    return kvstate.waketime - asleep;
}

TEST_F(Runtime, TheDeviceSleepsUntilItsFirstTimer) {
    constexpr int minute = 60000;
    headless::press(KEY_OK); // the last activity
    const int64_t pressed = headless::now();
    hw::set_horizon(int64_t{1} << 60);
    SetHardTimer(
        "soon", [](void *) {}, 20000);
    SetWeakTimer(
        "weak", [](void *) {}, 5000);
    next_sleep();
    EXPECT_NEAR(static_cast<double>(kvstate.waketime - pressed), 20000, 1) << "to the hard timer";
    const int64_t slept = next_sleep();
    EXPECT_NEAR(static_cast<double>(kvstate.waketime - pressed), 5 * minute, 1)
        << "five minutes after the last activity, not further";
    EXPECT_GT(slept, minute);
    EXPECT_EQ(next_sleep(), 120 * minute) << "two hours at the most";
    hw_set_keylock(1);
    EXPECT_EQ(next_sleep(), 120 * minute);
    headless::press(KEY_OK);
    EXPECT_EQ(next_sleep(), 120 * minute) << "locked keys need no watching";
}

TEST_F(Runtime, ActivityAndForegroundRestartTheTimers) {
    kvstate.keylocktm = 315000;
    kvstate.powerofftm = 600000;
    const auto timer_due = [](const char *name) -> int64_t {
        for (int i = 0; i < kvstate.ntimers; i++)
            if (kvstate.timers[i].tp && std::string(kvstate.timers[i].name) == name)
                return kvstate.timers[i].extime - headless::now();
        return 0;
    };
    headless::press(KEY_OK);
    EXPECT_EQ(timer_due("KEYLOCK"), 315000);
    EXPECT_EQ(timer_due("POWEROFF"), 600000);
    headless::advance(1000);
    SendEvent(log_all, 217, 0, 0);
    headless::advance(1);
    EXPECT_NEAR(static_cast<double>(timer_due("KEYLOCK")), 315000, 1);
    kv_background_event();
    EXPECT_EQ(timer_due("KEYLOCK") + timer_due("POWEROFF"), 0);
    hw_set_fb_orientation(1);
    kv_foreground_event();
    EXPECT_EQ(GetOrientation(), 1);
    EXPECT_EQ(timer_due("KEYLOCK"), 315000);
    EXPECT_GE(kvstate.sleeptime, headless::now() + 3000);
    headless::advance(10);
    hw_set_keylock(1);
    headless::press(KEY_OK);
    EXPECT_EQ(timer_due("KEYLOCK"), 314990) << "locked keys are not locked again";
}

TEST_F(Runtime, APlayerKeepsTheDeviceOnAndAnEmptyBatteryIsSaid) {
    kvstate.powerofftm = 10000;
    ASSERT_EQ(hw_mp_load("song"), 1);
    hw_mp_play();
    headless::press(KEY_OK);
    headless::advance(25000);
    EXPECT_EQ(kvstate.sleepenable, 1);
    hw_mp_stop();
    message_hooks.show = [](int, const char *title, const char *text, int ms) {
        actions += std::string(title) + text + std::to_string(ms);
    };
    hw::emulated().battery = 0;
    kvstate.powerofftm = 2147483647;
    headless::press(KEY_OK);
    headless::advance(300000);
    headless::advance(100);
    EXPECT_EQ(actions, "@Warning@Battery_low2000");
}

TEST_F(Runtime, ATaskThatDoesNotUpdateItselfIsShownWhole) {
    headless::clear_updates();
    SendEvent(log_all, 95, 0, 0);
    headless::advance(1);
    ASSERT_EQ(headless::updates().size(), 1U);
    EXPECT_EQ(headless::updates()[0].w, ScreenWidth());
}

TEST_F(Runtime, EventNames) {
    struct {
        int code;
        const char *name;
    } const cases[] = {
        {25, "EVT_KEYPRESS"},        {26, "EVT_KEYRELEASE"},  {28, "EVT_KEYREPEAT"},
        {29, "EVT_POINTERUP"},       {30, "EVT_POINTERDOWN"}, {31, "EVT_POINTERMOVE"},
        {34, "EVT_POINTERLONG"},     {35, "EVT_POINTERHOLD"}, {39, "EVT_MTSYNC"},
        {151, "EVT_FOREGROUND"},     {152, "EVT_BACKGROUND"}, {161, "EVT_SDIN"},
        {162, "EVT_SDOUT"},          {21, "EVT_UNKNOWN"},     {44, "EVT_UNKNOWN"},
        {-1, "EVT_UNKNOWN"},         {511, "EVT_UNKNOWN"},    {512, "EVT_UNKNOWN"},
        {-2147483647, "EVT_UNKNOWN"}};
    for (const auto &c : cases) EXPECT_STREQ(evt2str(c.code), c.name) << c.code;
}

} // namespace
