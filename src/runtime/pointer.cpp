// SPDX-License-Identifier: MIT
// Pointer and multi-touch input: who sees it first, long presses and drags.
#include <array>

#include "hw.h"
#include "hw_seam.h"
#include "internal.h"
#include "runtime/input.h"
#include "runtime/interface_flags.h"
#include "runtime/screens.h"

namespace {

constexpr int long_press_ms = 350;
constexpr int multi_touch_above_kind = 2;
constexpr int full_pressure = 255;
constexpr int touch_frames = 16;

using TouchFrame = std::array<kv_touch, touch_slots>;

struct State {
    int origin_x = 0, origin_y = 0; // where a long press or a drag starts
    TouchFrame fingers{};           // as last reported
    std::array<TouchFrame, touch_frames> frames{};
    int frame = -1; // of the last sync; -1 before the first
};
State state;

bool is_multi_touch() {
    return device_touchpanel() > multi_touch_above_kind;
}

void long_press_due(void *) {
    GenerateLongPress();
}

void record_touch(const hw_event_s &event, int x, int y) {
    const hw_event_data_pointer &p = event.data.pointer;
    const bool down = event.type != EVT_POINTERUP;
    const int unknown_pressure = down ? full_pressure : 0;
    const int pressure = p.pressure ? p.pressure : unknown_pressure;
    state.fingers[p.id] = {down, x, y, pressure, p.devtype, hw_boottime_ms()};
}

bool panel_takes(int type, int x, int y) {
    if (!kvstate.isopen || has_interface_flag(UI_PANEL_IGNORES_POINTER)) return false;
    if (kvstate.tsc[0].captured || !screens.panel_pointer(type, x, y)) return false;
    kvstate.allowkeyup = 0;
    return true;
}

void move_origin(int x, int y) {
    state.origin_x = x;
    state.origin_y = y;
}

void pointer_down(int x, int y) {
    kvstate.allowkeyup = 1;
    move_origin(x, y);
    SetHardTimer("LongPressTimer", long_press_due, long_press_ms);
}

// The dead zone is compared with the squared distance.
bool left_dead_zone(int x, int y) {
    const int64_t dx = int64_t{x} - state.origin_x, dy = int64_t{y} - state.origin_y;
    return dx * dx + dy * dy >= int64_t{kvstate.touchdragdeadzone};
}

void pointer_dragged(int x, int y) {
    ClearTimer(long_press_due);
    move_origin(x, y);
    kv_enqueue(kvstate.hproc, EVT_POINTERDRAG, kvstate.ptrx, kvstate.ptry);
}

} // namespace

void pointer_reset() {
    state = {};
}

void GenerateLongPress() {
    kv_enqueue(kvstate.hproc, EVT_POINTERLONG, state.origin_x, state.origin_y);
}

void pointer_event(const hw_event_s &event) {
    const int type = event.type;
    int x = event.data.pointer.x, y = event.data.pointer.y;
    kvstate.tsc[0].captured = 0;
    if (!hw::panel_to_canvas(x, y)) return;
    if (is_multi_touch()) {
        const int slot = event.data.pointer.id;
        if (slot < 0 || slot >= touch_slots) return;
        record_touch(event, x, y);
        if (slot != 0) return;
    }
    kvstate.ptrx = x;
    kvstate.ptry = y;
    if (type != EVT_POINTERMOVE && screens.scroll_area_pointer(type, x, y)) return;
    if (panel_takes(type, x, y)) return;

    if (type == EVT_POINTERDOWN) pointer_down(x, y);
    if (type == EVT_POINTERUP) ClearTimer(long_press_due);
    if (!kvstate.allowkeyup) return;
    kv_enqueue(kvstate.hproc, type, x, y);
    if (type == EVT_POINTERMOVE && left_dead_zone(x, y)) pointer_dragged(x, y);
    if (type == EVT_POINTERUP) kvstate.allowkeyup = 0;
}

void pointer_hold_event(const hw_event_s &event) {
    int x = event.data.pointer.x, y = event.data.pointer.y;
    if (kvstate.allowkeyup && hw::panel_to_canvas(x, y))
        kv_enqueue(kvstate.hproc, event.type, x, y);
}

void touch_sync(int count) {
    if (!is_multi_touch()) return;
    state.frame = (state.frame + 1) % touch_frames;
    state.frames[state.frame] = state.fingers;
    const kv_touch &touch = state.frames[state.frame][0];
    if (panel_takes(EVT_MTSYNC, touch.x, touch.y)) return;
    if (count < 1 || touch.x != 0 || touch.y != 0)
        kv_enqueue(kvstate.hproc, EVT_MTSYNC, state.frame, count);
}

const kv_touch *GetTouch(int index, int slot) {
    const bool known = index >= 0 && index < touch_frames && slot >= 0 && slot < touch_slots;
    return known ? &state.frames[index][slot] : nullptr;
}
