// SPDX-License-Identifier: MIT
// Opens the areas from the lowest floor up and closes them.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <unistd.h>

#include "chrome/chrome.h"
#include "config_editor/editor.h"
#include "dialogs/stack.h"
#include "dictionary_view/view.h"
#include "ground/guard.h"
#include "hourglass/hourglass.h"
#include "hw.h"
#include "internal.h"
#include "kelvane/config.h"
#include "kelvane/keyboard.h"
#include "kelvane/languages.h"
#include "kelvane/theme.h"
#include "keyboard/board.h"
#include "keylock/keylock.h"
#include "lang/translations.h"
#include "lifecycle/hooks.h"
#include "lifecycle/lifecycle.h"
#include "lists/look.h"
#include "menus/stack.h"
#include "pager/pager.h"
#include "panel/panel.h"
#include "runtime/handlers.h"
#include "runtime/input.h"
#include "runtime/interface_flags.h"
#include "runtime/loop.h"
#include "runtime/queue.h"
#include "runtime/screens.h"
#include "runtime/tasks.h"
#include "runtime/timers.h"
#include "runtime/updates.h"
#include "runtime/wake.h"
#include "selectors/screen.h"
#include "tasks/messages.h"
#include "text/text.h"
#include "theme/opened.h"

namespace {

constexpr int first_low_battery_reminder_ms = 300000;
constexpr unsigned default_drag_dead_zone = 225; // squared pixels
constexpr int system_handled_power_keyboard = 11;
constexpr unsigned mapped_keys = 32;

bool is_system_handled(const char *action) {
    return action && std::strcmp(action, "@KA_pwrs") == 0;
}

unsigned keys_with_action(KeyPress press) {
    unsigned mask = 0;
    for (unsigned key = 0; key < mapped_keys; key++) {
        const char *action = screens.key_action(static_cast<int>(key), press);
        if (action && *action && std::strcmp(action, "@KA_none") != 0) mask |= 1U << key;
    }
    return mask;
}

// Tells a multitasking system which keys this application wants for itself.
void pass_key_masks() {
    unsigned pressed = keys_with_action(KeyPress::brief) | 1U << KEY_POWER;
    const bool system_handled = is_system_handled(screens.key_action(KEY_POWER, KeyPress::brief));
    if (device_keyboard() == system_handled_power_keyboard && system_handled)
        pressed &= ~(1U << KEY_POWER);
    hw_setglobalkeymask(pressed, keys_with_action(KeyPress::held));
}

int initial_orientation() {
    const int flags = task_registration_flags();
    if (flags & TASK_COPIES_SCREEN) {
        hw_copyactivefb();
        return hw_get_fb_orientation();
    }
    if ((flags & TASK_FIXED_ORIENTATION) == TASK_FIXED_ORIENTATION) return GetOrientation();
    return hw_read_gsensor();
}

void take_screen() {
    kvstate.framebuffer = kvstate.canvas = hw_getframebuffer();
    SetOrientation(initial_orientation());
}

void load_resources() {
    LoadLanguage(kvstate.lang);
    OpenTheme(kvstate.theme);
    loadHwConfigEmulator(GetThemeString("hwconfig", nullptr));
    const uint64_t word = device_hwconfig();
    std::fprintf(stderr, "hwconfig: %08x %08x\n", static_cast<unsigned>(word >> 32),
                 static_cast<unsigned>(word));
    LoadKeyboard(kvstate.kbdlang);
    kvstate.panel_position = GetThemeInt("panel_position", 0);
}

void start_runtime() {
    kvstate.exiting = RUNNING;
    kvstate.hproc = nullptr;
    kvstate.poweroffenable = kvstate.sleepenable = 1;
    timers_open();
    queue_open();
    updates_reset();
    pointer_reset();
    reset_loop();
    reset_power_low_reminder();
    reset_keyboard_rate();
    kvstate.msgtop = ScreenHeight();
    kvstate.tsc = new (std::nothrow) TouchSlot[touch_slots]{};
    kvstate.touchdragdeadzone = default_drag_dead_zone;
    kvstate.gsense = hw_gsensor_ready() && hw_gsensor_get_switch();
    hw_usbhostpower(ReadInt(kvstate.cfg, "usbhost", 1));
}

// False when memory is short.
bool open_areas() {
    return ground::guarded(false, [] {
        load_settings();
        if (MultitaskingSupported()) pass_key_masks();
        take_screen();
        load_resources();
        start_runtime();
        return kvstate.timers && kvstate.events && kvstate.tsc;
    });
}

void own_process(Ownership ownership) {
    static const bool registered = std::atexit(leave_application) == 0;
    static_cast<void>(registered);
    kvstate.initialized = 0;
    kvstate.pid = getpid();
    install_signal_handlers();
    set_interface_flags(UI_OPENED);
    if (ownership == Ownership::external) {
        set_interface_flags(UI_EXTERNAL);
        DisableExitHourglass();
        delay_power_low_reminder(first_low_battery_reminder_ms);
    }
}

} // namespace

int open_screen(Ownership ownership) {
    if (kvstate.isopen) return 1;
    install_hooks();
    task_join();
    if (!hw_init() || !open_areas()) {
        close_screen();
        return 0;
    }
    own_process(ownership);
    hw_switch_dynamic(DYNAMIC_OFF);
    return kvstate.isopen = 1;
}

void close_screen() {
    if (kvstate.isopen) restore_signal_handlers();
    hw_close();
    timers_close();
    queue_close();
    updates_reset();
    pointer_reset();
    reset_loop();
    remove_hooks();
    config_editor::reset();
    dictionary_view::reset();
    keyboard::reset();
    menus::reset();
    selectors::reset();
    lists::drop_look();
    dialogs::reset();
    keylock::reset();
    pager::reset();
    panel::reset();
    hourglass::reset();
    tasks::reset();
    chrome::reset();
    theme::reset();
    lang::reset();
    text::reset();
    CloseConfigNoSave(kvstate.cfg);
    delete[] kvstate.tsc;
    clear_runtime_record();
}

int OpenScreen() {
    return open_screen(Ownership::process);
}

int OpenScreenExt() {
    return open_screen(Ownership::external);
}

void InitKelvane(int flags) {
    task_set_registration_flags(flags);
    open_screen(Ownership::external);
}
