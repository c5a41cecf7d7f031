// SPDX-License-Identifier: MIT
// What a finger does: it presses keys, buttons and the sign in the entry line, and places the
// cursor.
#include <algorithm>
#include <utility>

#include "hw.h"
#include "kelvane/events.h"
#include "kelvane/timers.h"
#include "kelvane/updates.h"
#include "keyboard/commands.h"
#include "keyboard/draw.h"
#include "keyboard/handlers.h"
#include "raster/box.h"

namespace keyboard {
namespace {

constexpr int idle_ms = 5000, held_repeat_ms = 150;

bool is_inside(const irect &r, int x, int y) {
    return raster::contains(raster::Box(r), x, y);
}

// The gaps belong to the keys before them.
int touch_key_at(const Board &b, int x, int y) {
    const irect &keys = b.place.keys;
    if (!is_inside(keys, x, y)) return -1;
    return b.touch.key_at((x - keys.x) / b.place.unit_w, (y - keys.y) / b.place.row_h);
}

int grid_key_at(const Board &b, int x, int y) {
    const auto &keys = b.grid->keys();
    const auto found = std::find_if(keys.begin(), keys.end(), [&](const GridKey &key) {
        return is_inside(grid_rect(b, key), x, y);
    });
    return found == keys.end() ? -1 : static_cast<int>(found - keys.begin());
}

int button_at(const Board &b, int x, int y) {
    const auto &places = b.place.buttons;
    const auto found = std::find_if(places.begin(), places.end(),
                                    [&](const irect &r) { return is_inside(r, x, y); });
    return found == places.end() ? -1 : static_cast<int>(found - places.begin());
}

Target target_at(const Board &b, int x, int y) {
    const int key = b.way == Way::finger ? touch_key_at(b, x, y) : grid_key_at(b, x, y);
    if (key >= 0) return {Target::key, key};
    if (const int button = button_at(b, x, y); button >= 0) return {Target::button, button};
    if (!b.buffer || !is_inside(b.place.entry, x, y)) return {};
    return {is_inside(icon_rect(b), x, y) ? Target::icon : Target::text, 0};
}

uint16_t code_of(const Board &b, const Target &target) {
    const auto at = static_cast<size_t>(target.index);
    if (target.part == Target::button) return b.buttons[at].code;
    if (target.part != Target::key) return code::none;
    return b.way == Way::finger ? b.touch.keys[at].code : b.grid->keys()[at].code;
}

void update(const irect &r) {
    PartialUpdateBW(r.x, r.y, r.w, r.h);
}

// Keys for five keys show what is selected, and nothing else.
void show_target(Board &b, const Target &target, bool is_pressed) {
    const auto at = static_cast<size_t>(target.index);
    if (target.part == Target::key && b.way == Way::finger) {
        draw_touch_key(b, b.touch.keys[at], is_pressed);
        update(touch_rect(b, b.touch.keys[at]));
    } else if (target.part == Target::button) {
        draw_button(b, target.index, is_pressed);
        update(b.place.buttons[at]);
    }
    b.was_touched = true;
}

irect hint_rect(const Board &b, const irect &key) {
    const int u = b.look.unit;
    return {key.x - u, key.y - key.h - u, key.w + 2 * u, key.h, 0};
}

// The finger covers what it presses. A panel that is still busy with the pressed key would show the
// letter too late.
void show_hint(Board &b) {
    const uint16_t letter = code_of(b, b.pressed);
    const bool is_letter = b.pressed.part == Target::key && letter > code::space;
    if (!is_letter || b.way != Way::finger || hw_update_busy()) return;
    const irect at =
        hint_rect(b, touch_rect(b, b.touch.keys[static_cast<size_t>(b.pressed.index)]));
    if (!b.under_hint.save(at)) return;
    b.hint = at;
    draw_hint(b, at, letter);
    update(at);
}

void press(Board &b, const Target &target) {
    b.pressed = target;
    if (target.part == Target::nothing) return;
    show_target(b, target, true);
    show_hint(b);
}

void idle(void *) {
    Board *b = board();
    if (!b) return;
    if (!has_input()) {
        b->is_stale = true;
        return;
    }
    let_go(*b);
    if (!std::exchange(b->was_touched, false)) return;
    const irect &r = b->place.whole;
    PartialUpdate(r.x, r.y, r.w, r.h); // in all greys, after updates in two
}

void repeat_held(void *) {
    Board *b = board();
    if (!b || !has_input() || code_of(*b, b->pressed) != code::backspace) return;
    b->repeats = true;
    type(*b, code::backspace);
    SetWeakTimer("tskey_timer", repeat_held, held_repeat_ms);
}

void down(Board &b, int x, int y) {
    let_go(b);
    b.repeats = false;
    press(b, target_at(b, x, y));
}

// A finger that slides presses the key it comes to.
void slide(Board &b, int x, int y) {
    if (b.pressed.part != Target::key) return;
    const Target now = target_at(b, x, y);
    if (now == b.pressed) return;
    let_go(b);
    if (now.part == Target::key) press(b, now);
}

void act(Board &b, const Target &target, int x) {
    switch (target.part) {
    case Target::key:
    case Target::button:
        return type(b, code_of(b, target));
    case Target::icon:
        return touch_icon(b);
    case Target::text:
        return move_cursor(b, character_at(b, x));
    case Target::nothing:
        break;
    }
}

// Keys that change the others stay pressed until those are drawn.
void up(Board &b, int x, int y) {
    ClearTimer(repeat_held);
    const Target target = b.pressed;
    const bool is_meant = target == target_at(b, x, y) && !b.repeats;
    if (!is_meant || !changes_keys(code_of(b, target))) let_go(b);
    if (is_meant) act(b, target, x);
    if (board() == &b) let_go(b);
}

} // namespace

void let_go(Board &b) {
    hide_hint(b);
    const Target target = std::exchange(b.pressed, {});
    if (target.part != Target::nothing) show_target(b, target, false);
}

void start_idle_timer() {
    SetWeakTimer("keyboard", idle, idle_ms);
}

void stop_pointer_timers() {
    ClearTimer(idle);
    ClearTimer(repeat_held);
}

void pointer(Board &b, int type, int x, int y) {
    if (type != EVT_POINTERLONG) start_idle_timer();
    switch (type) {
    case EVT_POINTERDOWN:
        return down(b, x, y);
    case EVT_POINTERMOVE:
    case EVT_POINTERDRAG:
        return slide(b, x, y);
    case EVT_POINTERLONG:
        return repeat_held(nullptr);
    case EVT_POINTERUP:
        return up(b, x, y);
    default:
        break;
    }
}

} // namespace keyboard
