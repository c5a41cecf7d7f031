// SPDX-License-Identifier: MIT
// The keys of the emulated device: what the workstation's keys stand for, and how scripts call
// them.
#pragma once

#include <gdk/gdkkeysyms.h>

#include "kelvane/events.h"

namespace hw {

struct KeyRow {
    int code;                 // KEY_*; 0 where the key mask has a bit without a key
    const char *name;         // in scripts
    unsigned workstation_key; // as the window hears of it; 0 for keys that no workstation has
};

// In the order of the bits of the key mask. Where a key stands twice its first row is found.
inline constexpr KeyRow key_table[] = {
    {KEY_BACK, "BACK", GDK_F3},
    {KEY_AUX8, "AUX8", GDK_F4},
    {KEY_LEFT, "LEFT", GDK_Left},
    {KEY_MENU, "MENU", GDK_F2},
    {KEY_MUSIC, "MUSIC", GDK_F1},
    {KEY_OK, "OK", GDK_Return},
    {KEY_RIGHT, "RIGHT", GDK_Right},
    {KEY_PLUS, "PLUS", GDK_KP_Add},
    {KEY_MINUS, "MINUS", GDK_KP_Subtract},
    {KEY_DOWN, "DOWN", GDK_Down},
    {KEY_UP, "UP", GDK_Up},
    {KEY_PREV, "PREV", GDK_Page_Up},
    {KEY_NEXT, "NEXT", GDK_Page_Down},
    {KEY_NEXT2, "NEXT2", GDK_End},
    {KEY_POWER, "POWER", GDK_Escape},
    {KEY_PREV2, "PREV2", GDK_Home},
    {KEY_HOME, "HOME", GDK_F12},
    {0, "", 0},
    {0, "", 0},
    {KEY_PLUS, "PLUS", 0},
    {KEY_MINUS, "MINUS", 0},
    {KEY_AUX7, "AUX7", 0},
    {KEY_AUX6, "AUX6", 0},
};

} // namespace hw
