// SPDX-License-Identifier: MIT
// Sorts the events of a keyboard, and acts on the keys of the device.
#include "keyboard/handlers.h"

#include <algorithm>

#include "ground/guard.h"
#include "hw_seam.h"
#include "internal.h"
#include "kelvane/events.h"
#include "kelvane/updates.h"
#include "keyboard/commands.h"
#include "keyboard/draw.h"
#include "modal/input.h"

namespace keyboard {
namespace {

void update_area(const Board &b, const Area &area) {
    const irect r = area_rect(b, area);
    PartialUpdateBW(r.x, r.y, r.w, r.h);
}

void show_selection(Board &b, const Area &before) {
    draw_area(b, before);
    update_area(b, before);
    const Area &now = b.grid->area();
    if (&now == &before) return;
    draw_area(b, now);
    update_area(b, now);
}

void move(Board &b, Step step) {
    const Area &before = b.grid->area();
    b.grid->move(step);
    show_selection(b, before);
}

void leave_zone(Board &b) {
    b.grid->leave_zone();
    show_selection(b, b.grid->area());
}

// A character leads back to the zones, where the next way begins.
void choose(Board &b) {
    const bool is_meant = b.grid->choose();
    if (!is_meant) return show_selection(b, b.grid->area());
    const uint16_t key = b.grid->key()->code;
    if (b.grid->is_inside_zone() && !changes_keys(key)) leave_zone(b);
    type(b, key);
}

struct Direction {
    int key;
    Step step;
};
constexpr Direction directions[] = {
    {KEY_UP, Step::up}, {KEY_DOWN, Step::down}, {KEY_LEFT, Step::left}, {KEY_RIGHT, Step::right}};

// On a board for five keys. False for a key that means here what it does on any board.
bool grid_key(Board &b, int key) {
    for (const Direction &d : directions)
        if (d.key == key) {
            move(b, d.step);
            return true;
        }
    if (key == KEY_OK) {
        choose(b);
        return true;
    }
    if (key != KEY_BACK || !b.grid->is_inside_zone()) return false;
    leave_zone(b);
    return true;
}

// Devices with touch screens may have these keys all the same.
uint16_t typed_by(int key) {
    switch (key) {
    case KEY_OK:
        return code::enter;
    case KEY_BACK:
        return code::cancel;
    case KEY_PREV:
        return code::backspace;
    case KEY_NEXT:
        return code::space;
    case KEY_MENU:
        return code::shift;
    default:
        return code::none;
    }
}

bool repeats(int key) {
    return key != KEY_OK && key != KEY_BACK && key != KEY_MENU;
}

void redraw(Board &b) {
    let_go(b);
    b.is_stale = false;
    draw_board(b);
    draw_entry(b);
    modal::update(raster::Box(b.place.whole));
}

// Of the codes that are no characters only backspace is a key of an external keyboard.
void type_character(Board &b, uint16_t key) {
    const uint16_t c = b.language().typed(key);
    if (c >= code::space || c == code::backspace) type(b, c);
}

// Whoever turned the screen has drawn nothing since, or something of its own.
void follow_screen(Board &b) {
    if (!b.follow_screen()) return;
    kvstate.msgtop = std::min(kvstate.msgtop, b.place.whole.y);
    redraw(b);
}

bool handle(Board &b, int type, int par1, int par2) {
    follow_screen(b);
    if (modal::is_pointer_event(type)) {
        pointer(b, type, par1, par2);
        return true;
    }
    if (modal::is_system_event(type)) return true;
    switch (type) {
    case EVT_KEYPRESS:
        return device_key(b, par1, Press::first);
    case EVT_KEYREPEAT:
        return device_key(b, par1, Press::repeat);
    case hw::typed_character:
        type_character(b, static_cast<uint16_t>(par1));
        return true;
    case EVT_RESTORE:
        if (b.is_stale) redraw(b);
        return true;
    case EVT_SHOW:
        redraw(b);
        return true;
    default:
        return false;
    }
}

} // namespace

bool device_key(Board &b, int key, Press press) {
    if (press == Press::repeat && !repeats(key)) return false;
    if (b.way == Way::keys && grid_key(b, key)) return true;
    const bool to_the_left = key == KEY_LEFT || key == KEY_PREV2;
    if (to_the_left || key == KEY_RIGHT || key == KEY_NEXT2) {
        step_cursor(b, to_the_left);
        return true;
    }
    const uint16_t typed = typed_by(key);
    if (typed != code::none) type(b, typed);
    return typed != code::none;
}

bool has_input() {
    return GetEventHandler() == keyboard_handler;
}

// Events that were queued for a keyboard that has closed are dropped: neither the application nor
// the keyboard that opened since is meant.
int keyboard_handler(int type, int par1, int par2) {
    Board *b = board();
    if (!b) return 1;
    if (b->unheard > 0) {
        b->unheard--;
        return 1;
    }
    return ground::guarded(1, [&] { return handle(*b, type, par1, par2) ? 1 : 0; });
}

} // namespace keyboard
