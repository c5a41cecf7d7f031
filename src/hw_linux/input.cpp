// SPDX-License-Identifier: MIT
// Input ring, key table and pointer.
#include "hw_linux/input.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <iterator>

#include "ground/utf8.h"
#include "hw.h"
#include "hw_linux/control.h"
#include "hw_linux/device.h"
#include "hw_linux/key_table.h"
#include "hw_linux/player.h"
#include "hw_linux/recorder.h"
#include "hw_linux/screen.h"
#include "hw_linux/tasks/session.h"
#include "hw_seam.h"
#include "kelvane/events.h"

namespace hw {
namespace {

constexpr int ring_slots = 64;

struct RingEntry {
    int type, mod, par1, par2;
};

RingEntry gtk_events[ring_slots];
int ring_head = 0, ring_tail = 0;

struct Pointer {
    bool down = false;
    int x = 0, y = 0; // where it was last
};
Pointer pointer;

constexpr int scanned_key_bits = 16; // hw_keystate never sees the keys after these

static_assert(std::size(key_table) == key_bits);
bool prekeys[key_bits]; // by the keys that a person presses

int from_drawing_area(Zoom zoom, int position) {
    const auto wide = int64_t{position};
    switch (zoom) {
    case Zoom::full:
        return position;
    case Zoom::half:
        return static_cast<int>(wide * 2);
    case Zoom::two_thirds:
        return static_cast<int>(wide * 3 / 2);
    }
    return position;
}

int clockwise(int code, int quarters) {
    static constexpr int directions[] = {KEY_UP, KEY_RIGHT, KEY_DOWN, KEY_LEFT};
    const auto *found = std::find(std::begin(directions), std::end(directions), code);
    return found == std::end(directions) ? code : directions[(found - directions + quarters) & 3];
}

// The key of the device that lies where a person looks for this one: the keys of a device that is
// held turned are turned with it.
int code_in_hand(int code) {
    const int quarters = held_quarter_turns();
    if (code == KEY_PREV || code == KEY_NEXT)
        return quarters >= 2 ? KEY_PREV + KEY_NEXT - code : code;
    return clockwise(code, quarters);
}

// The first bit with a key that matches; -1 for none.
template <class Matches>
int find_row(Matches matches) {
    for (int bit = 0; bit < key_bits; ++bit)
        if (key_table[bit].code != 0 && matches(key_table[bit])) return bit;
    return -1;
}

const char *verb_of(int pointer_type) {
    switch (pointer_type) {
    case EVT_POINTERDOWN:
        return "down";
    case EVT_POINTERMOVE:
        return "move";
    default:
        return "up";
    }
}

bool take_input(RingEntry &entry) {
    if (!has_input()) return false;
    entry = gtk_events[ring_head];
    ring_head = (ring_head + 1) % ring_slots;
    return true;
}

} // namespace

void reset_input() {
    ring_head = ring_tail = 0;
    pointer = {};
    std::memset(prekeys, 0, sizeof prekeys);
}

bool has_input() {
    return ring_head != ring_tail;
}

void push_input(int type, int mod, int par1, int par2) {
    if (type == EVT_KEYPRESS && par1 == KEY_HOME && tasks::go_home()) return;
    const bool is_driven = is_playing() || is_controlled();
    if (is_driven && tasks::forward_input(type, mod, par1, par2)) return;
    const int next = (ring_tail + 1) % ring_slots;
    if (next == ring_head) {
        std::fputs("Gtk events queue overflow\n", stderr);
        return;
    }
    gtk_events[ring_tail] = {type, mod, par1, par2};
    ring_tail = next;
}

int find_code_bit(int code) {
    return find_row([=](const KeyRow &row) { return row.code == code; });
}

int find_name_bit(std::string_view name) {
    return find_row([=](const KeyRow &row) { return row.name == name; });
}

int find_workstation_bit(unsigned key) {
    return find_row([=](const KeyRow &row) { return row.workstation_key == key; });
}

void set_key_bit(int bit, bool down) {
    if (bit < 0 || bit >= key_bits || prekeys[bit] == down) return;
    prekeys[bit] = down;
    record("key %s %d", down ? "down" : "up", key_table[bit].code);
    push_input(down ? EVT_KEYPRESS : EVT_KEYRELEASE, 0, code_in_hand(key_table[bit].code), 0);
}

void type_character(unsigned character) {
    if (character == 0 || character > UINT16_MAX) return;
    const int code = static_cast<int>(character);
    if (character > ' ')
        record("type %s", utf8::encoded(character).c_str());
    else
        record("raw %d 0 %d 0", typed_character, code);
    push_input(typed_character, 0, code, 0);
}

void release_keys() {
    for (int bit = 0; bit < key_bits; ++bit) set_key_bit(bit, false);
}

void lift_pointer() {
    if (pointer.down) panel_pointer_input(EVT_POINTERUP, pointer.x, pointer.y);
}

bool a_key_is_held() {
    return std::find(std::begin(prekeys), std::end(prekeys), true) != std::end(prekeys);
}

void panel_pointer_input(int type, int x, int y) {
    if (type == EVT_POINTERMOVE && !pointer.down) return;
    if (type != EVT_POINTERDOWN) move_onto_canvas(x, y);
    pointer = {type != EVT_POINTERUP, x, y};
    record("%s %d %d", verb_of(type), x, y);
    push_input(type, 0, x, y);
    if (type == EVT_POINTERMOVE || device_touchpanel() > 2)
        push_input(EVT_MTSYNC, 0, 0, pointer.down ? 1 : 0);
}

void pointer_input(int type, int x, int y) {
    const Zoom zoom = panel_view().zoom;
    panel_pointer_input(type, from_drawing_area(zoom, x), from_drawing_area(zoom, y));
}

} // namespace hw

using namespace hw;

int hw_nextevent(hw_event *event) {
    if (!event) return 0;
    std::memset(event, 0, sizeof *event); // both forms of it
    if (closing() == 1) {
        closing() = 2;
        hooks.end_loop();
        return 0;
    }
    let_work();
    RingEntry entry;
    if (!take_input(entry)) return 0;
    event->type = entry.type;
    event->data.common = {entry.mod, entry.par1, entry.par2};
    hw_gettime(&event->time);
    return 1;
}

int hw_keystate(int key) {
    for (int bit = 0; bit < scanned_key_bits; ++bit)
        if (code_in_hand(key_table[bit].code) == key) return prekeys[bit];
    return 0;
}

int kv_key(int mask) {
    for (int bit = 0; bit < key_bits; ++bit)
        if (mask == 1 << bit) return key_table[bit].code;
    return 0;
}
