// SPDX-License-Identifier: MIT
// What stands in for components that are not there.
#include "runtime/screens.h"

#include "ground/log.h"
#include "internal.h"

namespace {

template <const char *Name>
void log_only() {
    tq_print_log2(LOG_INFO_LEVEL, "No component opens the %s screen\n", Name);
}

constexpr char player[] = "player", player_close[] = "player closing",
               network[] = "network information", bluetooth[] = "Bluetooth information",
               audio[] = "audio output", calendar_name[] = "calendar", light[] = "front light",
               menu[] = "main menu", hourglass_name[] = "hourglass";

void log_power_action(int action) {
    tq_print_log2(LOG_INFO_LEVEL, "Power key action %d\n", action);
}

void log_bitmap_report(const char *path) {
    tq_print_log2(LOG_INFO_LEVEL, "No bitmap tracker writes %s\n", path);
}

const char *default_key_action(int key, KeyPress press) {
    if (press == KeyPress::held) return nullptr;
    return key == KEY_MENU || key == KEY_HOME ? "@KA_mmnu" : nullptr;
}

constexpr ScreenHooks defaults = {
    .open_player = log_only<player>,
    .close_player = log_only<player_close>,
    .network_info = log_only<network>,
    .bluetooth_info = log_only<bluetooth>,
    .audio_output = log_only<audio>,
    .calendar = log_only<calendar_name>,
    .front_light = log_only<light>,
    .main_menu = log_only<menu>,
    .power_action = log_power_action,
    .bitmap_report = log_bitmap_report,
    .hourglass = log_only<hourglass_name>,
    .navigator_key = [](int, int) { return false; },
    .scroll_area_pointer = [](int, int, int) { return false; },
    .panel_pointer = [](int, int, int) { return false; },
    .refresh_panel = [] {},
    .draw_panel = [](int, int, int, int) {},
    .show_keylock_icon = [] { return false; },
    .restore_under_icon = [] {},
    .key_action = default_key_action,
};

} // namespace

ScreenHooks screens = defaults;

void screens_reset() {
    screens = defaults;
}
