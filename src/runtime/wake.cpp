// SPDX-License-Identifier: MIT
// The inactivity timers and the warning of an empty battery.
#include "runtime/wake.h"

#include <algorithm>

#include "ground/log.h"
#include "ground/message.h"
#include "hw.h"
#include "internal.h"
#include "runtime/tasks.h"

namespace {

constexpr int low_battery_limit = 4; // percent
constexpr int reminder_spacing_ms = 600000;
constexpr int reminder_shown_ms = 2000;
constexpr int warning_icon = 3;

int64_t next_reminder;

// The lock itself is the system's work; the timer only keeps its place among the others.
void key_lock_due(void *) {}

bool something_plays() {
    return hw_is_player_playing() || hw_is_audio_book_playing() || hw_is_browser_playing() ||
           hw_isttsplaying();
}

void power_off_due(void *);

// A time of never needs no timer; as one it would come due after 24 days.
void set_unless_never(const char *name, kv_timerproc proc, int ms) {
    if (ms == never_ms)
        ClearTimer(proc);
    else
        SetHardTimer(name, proc, ms);
}

void restart_power_off_timer() {
    set_unless_never("POWEROFF", power_off_due, kvstate.powerofftm);
}

void power_off_due(void *) {
    tq_print_log2(LOG_INFO_LEVEL, "Power off time has come...\n");
    if (something_plays() || !kvstate.poweroffenable) {
        restart_power_off_timer();
        return;
    }
    kvstate.sleepenable = 0;
    PowerOff();
}

} // namespace

void extend_wake_time(int ms) {
    kvstate.sleeptime = std::max<int64_t>(kvstate.sleeptime, hw_boottime_ms() + ms);
}

void restart_inactivity_timers() {
    if (!hw_get_keylock()) set_unless_never("KEYLOCK", key_lock_due, kvstate.keylocktm);
    restart_power_off_timer();
}

void clear_inactivity_timers() {
    ClearTimer(key_lock_due);
    ClearTimer(power_off_due);
}

void SetAutoPowerOff(int enable) {
    kvstate.poweroffenable = enable != 0;
    if (enable)
        restart_power_off_timer();
    else
        ClearTimer(power_off_due);
}

void PowerOff() {
    hw_say_poweroff();
}

void reset_power_low_reminder() {
    next_reminder = 0;
}

void delay_power_low_reminder(int ms) {
    next_reminder = hw_boottime_ms() + ms;
}

void check_power_low() {
    if (MultitaskingSupported()) return;
    const int level = hw_power();
    const bool low = level >= 0 && level <= low_battery_limit;
    if (!low || hw_isusbconnected() || hw_boottime_ms() < next_reminder) return;
    delay_power_low_reminder(reminder_spacing_ms);
    message_hooks.show(warning_icon, "@Warning", "@Battery_low", reminder_shown_ms);
}
