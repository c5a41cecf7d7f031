// SPDX-License-Identifier: MIT
// What the runtime asks of the components above it. Each entry starts as a default that logs at
// most; the lifecycle installs the functions of the components when the screen is opened.
#pragma once

enum class KeyPress { brief, held };

struct ScreenHooks {
    // Screens that default actions open.
    void (*open_player)();
    void (*close_player)();
    void (*network_info)();
    void (*bluetooth_info)();
    void (*audio_output)();
    void (*calendar)();
    void (*front_light)();
    void (*main_menu)();
    void (*power_action)(int action); // of the power key, a number from the settings
    void (*bitmap_report)(const char *path);
    void (*hourglass)();

    // Components that see input before the handler; true takes the event.
    bool (*navigator_key)(int type, int key);
    bool (*scroll_area_pointer)(int type, int x, int y);
    bool (*panel_pointer)(int type, int x, int y);
    void (*refresh_panel)();
    // Draws the status panel where an update is about to show an area of the screen.
    void (*draw_panel)(int x, int y, int w, int h);

    // The key-lock icon: draws it over the screen, true when the screen must be put back; and puts
    // it back.
    bool (*show_keylock_icon)();
    void (*restore_under_icon)();

    // The action word of a key, for a short or a long press; null when it has none.
    const char *(*key_action)(int key, KeyPress press);
};

extern ScreenHooks screens;

// Puts every default back.
void screens_reset();
