// SPDX-License-Identifier: MIT
// Which handler is current, and what a change of it ends.
#include "runtime/handlers.h"

#include "internal.h"
#include "runtime/input.h"
#include "runtime/interface_flags.h"

namespace {

constexpr int first_repeat_ms = 1000;
constexpr int next_repeat_ms = 500;
constexpr int shortest_restored_ms = 99;

// A key that is held belongs to the handler that saw it go down: the next one hears no repeats of
// it and no release.
void drop_held_input() {
    kvstate.allowkeyup = 0;
    stop_key_repeat();
    reset_keyboard_rate();
}

} // namespace

KeyRate key_rate() {
    return {kvstate.keytime1, kvstate.keytime2};
}

void reset_keyboard_rate() {
    SetKeyboardRate(first_repeat_ms, next_repeat_ms);
}

void SetKeyboardRate(int t1, int t2) {
    kvstate.keytime1 = t1;
    kvstate.keytime2 = t2;
}

kv_handler GetEventHandler() {
    return kvstate.hproc;
}

kv_handler SetEventHandler(kv_handler h) {
    drop_held_input();
    const kv_handler old = kvstate.hproc;
    SendEvent(old, EVT_HIDE, 0, 0);
    kvstate.hproc = h;
    SendEvent(h, EVT_SHOW, 0, 0);
    return old;
}

kv_handler kv_seteventhandler(kv_handler h) {
    const kv_handler old = kvstate.hproc;
    kvstate.hproc = h;
    clear_interface_flags(UI_QUICK_NAVIGATOR);
    drop_held_input();
    SendEvent(h, EVT_RESTORE, 0, 0);
    return old;
}

kv_handler SetEventHandlerEx(kv_handler h) {
    return kv_seteventhandler(h);
}

void kv_restoreeventhandler(kv_handler h, int t1, int t2) {
    kv_seteventhandler(h);
    if (t1 > shortest_restored_ms && t2 > shortest_restored_ms) SetKeyboardRate(t1, t2);
}
