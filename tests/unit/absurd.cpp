// SPDX-License-Identifier: MIT
// Every call of the runtime with null and absurd arguments, with the screen closed, open, and
// closed again. The sanitizers and the process being alive at the end are the judges.
#include <climits>
#include <gtest/gtest.h>
#include <vector>

#include "hw.h"
#include "hw_linux/device.h"
#include "internal.h"
#include "kelvane/events.h"
#include "kelvane/timers.h"
#include "kelvane/updates.h"
#include "support/headless.h"

namespace {

constexpr int absurd[] = {INT_MIN, INT_MIN + 1, -65536, -1,          0,      1,
                          3,       255,         65535,  INT_MAX - 1, INT_MAX};

int ignore(int, int, int) {
    return 0;
}

void no_timer(void *) {}

void call_updates() {
    using Update = void (*)(int, int, int, int);
    constexpr Update updates[] = {PartialUpdate,   PartialUpdateBlack, PartialUpdateBW,
                                  PartialUpdateHQ, PartialUpdateDU4,   DynamicUpdate,
                                  DynamicUpdateBW, DynamicUpdateA2};
    for (Update update : updates)
        for (int a : absurd)
            for (int b : absurd) {
                update(a, b, b, a);
                update(b, 5, 5, a);
                update(5, a, b, 5);
            }
    for (int a : absurd) {
        hw_update(a, 5, a, 5, a);
        hw_update(5, a, 5, a, 0);
    }
    for (auto call : {FullUpdate, FullUpdateHQ, SoftUpdate, SoftUpdateHQ, FineUpdate, ExitUpdateA2,
                      WaitForUpdateComplete, Repaint})
        call();
    for (auto question : {FineUpdateSupported, HQUpdateSupported, IsInA2Update}) question();
}

void call_runtime() {
    for (int a : absurd) {
        for (int b : absurd) {
            SendEvent(ignore, a, b, a);
            SendEventEx(nullptr, a, b, a, nullptr);
            kv_enqueue(nullptr, a, b, a);
            hw::push_input(a, b, a, b);
            kv_settimer(nullptr, no_timer, a, b, nullptr);
            kv_restoreeventhandler(ignore, a, b);
            kv_ipc_request(a, b, nullptr, 0, 0);
            GetTouch(a, b);
        }
        SetOrientation(a);
        hw_set_fb_orientation(a);
        SetKeyboardRate(a, a);
        kv_transform_key(a);
        hw_keystate(a);
        kv_key(a);
        hw::run_command(a);
        hw::set_key_bit(a, true);
        SetAutoPowerOff(a);
        evt2str(a);
        ProcessEventLoopQuick();
    }
    for (int type : {25, 26, 29, 30, 31, 34, 35, 39})
        for (int a : absurd)
            for (int b : absurd) {
                hw::push_input(type, a, b, a);
                ProcessEventLoopQuick();
            }
    SetEventHandler(nullptr);
    kv_seteventhandler(nullptr);
    GenerateLongPress();
    IsAnyEvents();
    FlushEvents();
    kv_foreground_event();
    kv_background_event();
    SignalTaskStarted();
    ClearTimerByName(nullptr);
    kv_process_timers();
    hw_nextevent(nullptr);
    hw_displaysize(nullptr, nullptr);
    hw_gettime(nullptr);
    ScreenWidth();
    ScreenHeight();
}

TEST(Absurd, BeforeTheScreenIsOpen) {
    testing::internal::CaptureStderr();
    call_updates();
    call_runtime();
    LeaveKelvaneMain();
    ClearOnExit();
    ProcessEventLoop();
    EXPECT_EQ(kvstate.isopen, 0);
    testing::internal::GetCapturedStderr();
}

class AbsurdOpen : public headless::Test {};

TEST_F(AbsurdOpen, OnAnOpenScreenAndAfterItClosed) {
    testing::internal::CaptureStderr();
    call_updates();
    call_runtime();
    EXPECT_EQ(kvstate.isopen, 1);
    ClearOnExit();
    call_updates();
    call_runtime();
    EXPECT_EQ(kvstate.isopen, 0);
    testing::internal::GetCapturedStderr();
}

} // namespace
