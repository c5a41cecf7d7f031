// SPDX-License-Identifier: MIT
// The table of what an event does that no handler took.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "hw.h"
#include "internal.h"
#include "runtime/delivery.h"
#include "runtime/interface_flags.h"
#include "runtime/screens.h"
#include "runtime/tasks.h"
#include "runtime/wake.h"

namespace {

// Events that have no public name: the system sends them to open its screens.
enum SystemEvent : int {
    SYS_AUDIO_OUTPUT = 118,
    SYS_PLAYER = 124,
    SYS_NETWORK = 126,
    SYS_CALENDAR = 127,
    SYS_BLUETOOTH = 128,
    SYS_GLOBAL_REQUEST = 129,
    SYS_FRONT_LIGHT = 133,
    SYS_USER_ACTIVITY = 217,
    SYS_BITMAP_REPORT = 221
};

constexpr int global_request = 80;
constexpr int no_double_press_action = 31;
constexpr int double_press_ms = 500;
constexpr int volume_step = 3;
constexpr const char *storage_root = "./system/mnt/ext1";

void report_bitmaps() {
    char path[128];
    std::snprintf(path, sizeof path, "%s/screens/bitmap_usage_report%d_%d.html", storage_root,
                  static_cast<int>(kvstate.pid), static_cast<int>(std::time(nullptr)));
    screens.bitmap_report(path);
}

void toggle_player() {
    if (has_interface_flag(UI_PLAYER_OPEN))
        screens.close_player();
    else
        screens.open_player();
}

void system_action(int type) {
    switch (type) {
    case SYS_GLOBAL_REQUEST:
        SendGlobalRequest(global_request);
        break;
    case SYS_PLAYER:
        toggle_player();
        break;
    case SYS_NETWORK:
        screens.network_info();
        break;
    case SYS_BITMAP_REPORT:
        report_bitmaps();
        break;
    case SYS_FRONT_LIGHT:
        screens.front_light();
        break;
    case SYS_BLUETOOTH:
        screens.bluetooth_info();
        break;
    case SYS_AUDIO_OUTPUT:
        screens.audio_output();
        break;
    case SYS_CALENDAR:
        screens.calendar();
        break;
    default:
        break;
    }
}

void single_press_due(void *) {
    screens.power_action(kvstate.pwract1);
}

// The first press waits for a second one, unless a second one means nothing.
void power_key_released() {
    if (kvstate.pwract2 == no_double_press_action) {
        screens.power_action(kvstate.pwract1);
    } else if (QueryTimer(single_press_due)) {
        ClearTimer(single_press_due);
        screens.power_action(kvstate.pwract2);
    } else {
        SetHardTimer("PWRACT", single_press_due, double_press_ms);
    }
}

void toggle_playing() {
    if (hw_is_player_playing())
        hw_mp_pause();
    else
        hw_mp_play();
}

void change_volume(int step) {
    hw_mp_setvolume(hw_mp_volume() + step);
}

void key_released_unhandled(int key, int repeats) {
    if (repeats != 0) return;
    if (key == KEY_MUSIC) screens.open_player();
    if (key == KEY_POWER) power_key_released();
}

void key_pressed_unhandled(int key) {
    if (key != KEY_HOME && key != KEY_MENU) return;
    const char *action = screens.key_action(key, KeyPress::brief);
    if (action && std::strcmp(action, "@KA_mmnu") == 0) screens.main_menu();
}

void volume_key(int key) {
    if (key == KEY_MINUS) change_volume(-volume_step);
    if (key == KEY_PLUS) change_volume(volume_step);
}

void key_action(const ievent &event) {
    if (MultitaskingSupported() || has_interface_flag(UI_MODAL_MASK)) return;
    switch (event.type) {
    case EVT_KEYRELEASE:
        key_released_unhandled(event.par1, event.par2);
        break;
    case EVT_KEYPRESS:
        key_pressed_unhandled(event.par1);
        volume_key(event.par1);
        break;
    case EVT_KEYREPEAT:
        if (event.par1 == KEY_MUSIC && event.par2 == 1) toggle_playing();
        volume_key(event.par1);
        break;
    default:
        break;
    }
}

} // namespace

void default_action(const ievent &event, int handled) {
    if (event.type == EVT_INIT) extend_wake_time(wake_after_activity_ms);
    if (event.type == SYS_USER_ACTIVITY) restart_inactivity_timers();
    if (handled) return;
    system_action(event.type);
    key_action(event);
}
