// SPDX-License-Identifier: MIT
// The keys of the emulated device: what the workstation's keys stand for, and how scripts call
// them.
#pragma once

#include <gdk/gdkkeysyms.h>

#include "kelvane/events.h"

namespace hw {

struct KeyRow {
    const char *name;         // in scripts
    int code;                 // KEY_*; 0 where the key mask has a bit without a key
    unsigned workstation_key; // as the window hears of it; 0 for keys that no workstation has
};

// In the order of the bits of the key mask. Where a key stands twice its first row is found.
inline constexpr KeyRow key_table[] = {
    {"BACK", KEY_BACK, GDK_F3},
    {"AUX8", KEY_AUX8, GDK_F4},
    {"LEFT", KEY_LEFT, GDK_Left},
    {"MENU", KEY_MENU, GDK_F2},
    {"MUSIC", KEY_MUSIC, GDK_F1},
    {"OK", KEY_OK, GDK_Return},
    {"RIGHT", KEY_RIGHT, GDK_Right},
    {"PLUS", KEY_PLUS, GDK_KP_Add},
    {"MINUS", KEY_MINUS, GDK_KP_Subtract},
    {"DOWN", KEY_DOWN, GDK_Down},
    {"UP", KEY_UP, GDK_Up},
    {"PREV", KEY_PREV, GDK_Page_Up},
    {"NEXT", KEY_NEXT, GDK_Page_Down},
    {"NEXT2", KEY_NEXT2, GDK_End},
    {"POWER", KEY_POWER, GDK_Escape},
    {"PREV2", KEY_PREV2, GDK_Home},
    {"HOME", KEY_HOME, GDK_F12},
    {"", 0, 0},
    {"", 0, 0},
    {"PLUS", KEY_PLUS, 0},
    {"MINUS", KEY_MINUS, 0},
    {"AUX7", KEY_AUX7, 0},
    {"AUX6", KEY_AUX6, 0},
};

} // namespace hw
