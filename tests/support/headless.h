// SPDX-License-Identifier: MIT
// Drives the runtime on the headless device inside the test's process, in a working directory of
// its own. Time passes only in advance(), and nothing sleeps:
//
//     class Clicks : public headless::Test {};
//     TEST_F(Clicks, ...) {
//         headless::press(KEY_OK);
//         headless::advance(1000);
//         EXPECT_EQ(headless::events(), "KEYPRESS(10,0) KEYRELEASE(10,0) ");
//     }
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "hw.h"
#include "hw_linux/clock.h"
#include "hw_linux/device.h"
#include "hw_linux/input.h"
#include "hw_linux/trace.h"
#include "internal.h"
#include "kelvane/events.h"
#include "runtime/queue.h"
#include "runtime/timers.h"
#include "support/tempdir.h"

namespace headless {

using Update = hw::UpdateRecord;

namespace detail {

inline std::vector<Update> update_log;
inline std::string event_log;
inline std::function<int(int, int, int)> on_event;

inline std::string name_of(int type) {
    static constexpr struct {
        int type;
        const char *name;
    } lifecycle[] = {{EVT_INIT, "INIT"},
                     {EVT_EXIT, "EXIT"},
                     {EVT_SHOW, "SHOW"},
                     {EVT_HIDE, "HIDE"},
                     {EVT_RESTORE, "RESTORE"},
                     {EVT_ORIENTATION, "ORIENTATION"},
                     {EVT_POINTERDRAG, "POINTERDRAG"}};
    for (const auto &entry : lifecycle)
        if (entry.type == type) return entry.name;
    const std::string name = evt2str(type);
    return name == "EVT_UNKNOWN" ? std::to_string(type) : name.substr(4);
}

inline int log_event(int type, int par1, int par2) {
    event_log += name_of(type);
    if (par1 || par2) event_log += "(" + std::to_string(par1) + "," + std::to_string(par2) + ")";
    event_log += " ";
    return on_event ? on_event(type, par1, par2) : 0;
}

// Lets everything happen that is due at the present time.
inline void settle() {
    for (int steps = 0; steps < 10000; ++steps) {
        const bool timer_due = timers_first_due() <= hw_boottime_ms();
        const bool busy = !queue_is_empty() || (kvstate.hproc && hw::has_input());
        if (!timer_due && !busy) return;
        const auto step = timer_due ? kv_process_event_loop : kv_process_event_loop_quick;
        if (step() != KELVANE_CONTINUE) return;
    }
}

// The runtime runs timers up to 1 ms early. A step taken only because a test stopped the clock
// there must not be the reason for it.
inline void pass_slack() {
    const int64_t due_us = std::min(timers_first_due(), INT64_MAX / 1000) * 1000;
    const int64_t until_due = due_us - hw::device()->clock_us();
    if (until_due <= 1000) hw_pause(until_due);
}

} // namespace detail

// The boot clock in ms.
inline int64_t now() {
    return hw_boottime_ms();
}

// Runs the loop until `ms` have passed, or more when the last thing done (an update: 10 ms) ends
// later.
inline void advance(int ms) {
    const int64_t until_us = (now() + ms) * 1000;
    hw::set_horizon(until_us);
    detail::pass_slack();
    while (hw::device() && hw::device()->clock_us() < until_us)
        if (kv_process_event_loop() != KELVANE_CONTINUE) return;
    detail::settle();
}

// Input is handled before these return. Coordinates are panel pixels.
inline void raw(int type, int mod, int par1, int par2) {
    hw::push_input(type, mod, par1, par2);
    detail::settle();
}
inline void key_down(int code) {
    hw::set_key_bit(hw::find_code_bit(code), true);
    detail::settle();
}
inline void key_up(int code) {
    hw::set_key_bit(hw::find_code_bit(code), false);
    detail::settle();
}
inline void press(int code) {
    key_down(code);
    key_up(code);
}
inline void pointer(int type, int x, int y) {
    hw::panel_pointer_input(type, x, y);
    detail::settle();
}
inline void tap(int x, int y) {
    pointer(EVT_POINTERDOWN, x, y);
    pointer(EVT_POINTERUP, x, y);
}
inline void command(int number) {
    hw::run_command(number);
    detail::settle();
}

// What the device was asked to show.
inline const std::vector<Update> &updates() {
    return detail::update_log;
}
inline void clear_updates() {
    detail::update_log.clear();
}
// What the main handler heard: "NAME " or "NAME(par1,par2) ", the number for events without a name.
inline const std::string &events() {
    return detail::event_log;
}
inline void clear_events() {
    detail::event_log.clear();
}
// The main handler itself.
inline kv_handler handler() {
    return detail::log_event;
}
// What the main handler answers; 0 to everything by default.
inline void on_event(std::function<int(int, int, int)> handler) {
    detail::on_event = std::move(handler);
}

// Opens the screen with a main handler that logs, past EVT_INIT and EVT_SHOW.
class Test : public testing::Test {
  protected:
    Test() { open(""); }
    ~Test() override { close(); }

    // Closes the screen and opens it again with this text as global configuration.
    void restart_with(std::string_view global_cfg) {
        close();
        open(global_cfg);
    }

  private:
    void open(std::string_view global_cfg) {
        dir_ = std::make_unique<TempDir>();
        if (!global_cfg.empty()) write_file("system/config/global.cfg", global_cfg);
        setenv("KELVANE_DEVICE", "headless", 1);
        if (!OpenScreenExt()) std::abort();
        hw::observe_updates([](const Update &u) { detail::update_log.push_back(u); });
        hw::set_horizon(hw::device()->clock_us());
        PrepareForLoop(detail::log_event);
        detail::settle();
        clear_updates();
        clear_events();
    }
    void close() {
        detail::on_event = nullptr; // what it refers to may be gone by now
        if (kvstate.isopen) ClearOnExit();
        hw::observe_updates(nullptr);
        hw::set_horizon(hw::no_horizon);
        dir_.reset();
    }

    std::unique_ptr<TempDir> dir_;
};

} // namespace headless
