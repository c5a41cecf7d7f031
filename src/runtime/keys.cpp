// SPDX-License-Identifier: MIT
// Keys: how they turn with the screen, and how they repeat.
#include "hw.h"
#include "internal.h"
#include "runtime/handlers.h"
#include "runtime/input.h"
#include "runtime/interface_flags.h"
#include "runtime/screens.h"

namespace {

constexpr int mirrored_display_position = 1;
constexpr int unturned_keyboard_kind = 5;

int key_orientation() {
    const bool mirrored = device_display_position() == mirrored_display_position &&
                          device_keyboard() != unturned_keyboard_kind;
    return mirrored ? 3 - kvstate.orientation : kvstate.orientation;
}

// Turned by 270 degrees the key that lies on the right is the one marked as previous page.
bool page_keys_reversed(int orientation) {
    return orientation == 2;
}

int turn_direction_key(int key, int orientation) {
    // Rows: the codes that KEY_UP, KEY_DOWN, KEY_LEFT and KEY_RIGHT mean in each orientation.
    static constexpr int turned[4][4] = {{KEY_UP, KEY_DOWN, KEY_LEFT, KEY_RIGHT},
                                         {KEY_LEFT, KEY_RIGHT, KEY_DOWN, KEY_UP},
                                         {KEY_RIGHT, KEY_LEFT, KEY_UP, KEY_DOWN},
                                         {KEY_DOWN, KEY_UP, KEY_RIGHT, KEY_LEFT}};
    return turned[orientation][key - KEY_UP];
}

int turn_page_key(int key, int orientation) {
    const bool swapped = orientation == 3 || (orientation != 0 && page_keys_reversed(orientation));
    return swapped ? KEY_PREV + KEY_NEXT - key : key;
}

void repeat_key(void *) {
    if (!hw_keystate(kvstate.currentkey)) return;
    kvstate.keyrepeats++;
    kv_enqueue(kvstate.hproc, EVT_KEYREPEAT, kv_transform_key(kvstate.currentkey),
               kvstate.keyrepeats);
    SetWeakTimer("KEY_TIMER", repeat_key, key_rate().next_ms);
}

void key_pressed(int key) {
    kvstate.allowkeyup = 1;
    kvstate.keyrepeats = 0;
    kv_enqueue(kvstate.hproc, EVT_KEYPRESS, key, 0);
    SetHardTimer("KEY_TIMER", repeat_key, key_rate().first_ms);
}

void key_released(int key) {
    if (kvstate.allowkeyup) kv_enqueue(kvstate.hproc, EVT_KEYRELEASE, key, kvstate.keyrepeats);
    stop_key_repeat();
    kvstate.allowkeyup = 0;
}

} // namespace

int kv_transform_key(int key) {
    const int orientation = key_orientation();
    if (orientation < 0 || orientation > 3) return key;
    if (key >= KEY_UP && key <= KEY_RIGHT) return turn_direction_key(key, orientation);
    if (key == KEY_PREV || key == KEY_NEXT) return turn_page_key(key, orientation);
    return key;
}

void stop_key_repeat() {
    ClearTimer(repeat_key);
}

void key_input(int type, int raw_key) {
    kvstate.currentkey = type == EVT_KEYPRESS ? raw_key : 0;
    const int key = kv_transform_key(raw_key);
    if (has_interface_flag(UI_QUICK_NAVIGATOR) && screens.navigator_key(type, key)) return;
    if (type == EVT_KEYPRESS)
        key_pressed(key);
    else
        key_released(key);
}
