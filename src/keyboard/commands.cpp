// SPDX-License-Identifier: MIT
// Edits the text and changes the keys, and shows what changed and no more.
#include "keyboard/commands.h"

#include <cstring>
#include <utility>

#include "hw.h"
#include "hw_seam.h"
#include "kelvane/keyboard.h"
#include "kelvane/timers.h"
#include "kelvane/updates.h"
#include "keyboard/draw.h"
#include "keyboard/handlers.h"
#include "keyboard/load.h"
#include "modal/input.h"

namespace keyboard {
namespace {

constexpr int64_t change_pause_us = 390'000; // in which the pressed key can be seen
constexpr int reveal_ms = 1000;

void show_keys(Board &b) {
    hide_hint(b);
    draw_keys(b);
    const irect &r = b.place.whole;
    PartialUpdate(r.x, b.place.keys.y, r.w, b.place.keys.h);
}

void hide_revealed(void *) {
    Board *b = board();
    if (!b || !b->revealed) return;
    b->revealed.reset();
    if (has_input())
        show_entry(*b);
    else
        b->is_stale = true;
}

void hide_at_once(Board &b) {
    b.revealed.reset();
    ClearTimer(hide_revealed);
}

// The character typed last can be read for a moment.
void reveal_last(Board &b) {
    hide_at_once(b);
    if (!b.is_password()) return;
    b.revealed = b.entry.place_before_cursor();
    SetWeakTimer("keyboard reveal", hide_revealed, reveal_ms);
}

// Without an entry line characters go to who had the input before.
void send_character(const Board &b, uint16_t c) {
    SendEvent(b.taken.previous(), EVT_KEYPRESS, c, 0);
    SendEvent(b.taken.previous(), EVT_KEYRELEASE, c, 0);
}

void insert(Board &b, uint16_t c) {
    if (!b.buffer) return send_character(b, c);
    if (!b.entry.insert(c)) return;
    reveal_last(b);
    show_entry(b);
}

void backspace(Board &b) {
    if (!b.buffer || !b.entry.backspace()) return;
    hide_at_once(b);
    show_entry(b);
}

void write_back(const Board &b) {
    if (!b.buffer) return;
    const std::string text = b.entry.utf8();
    std::memcpy(b.buffer, text.c_str(), text.size() + 1);
}

void enter(Board &b, End how) {
    if (b.flags & KBD_NO_ENTER) return;
    write_back(b);
    close(how);
}

void cancel(Board &b) {
    if (b.buffer) std::memcpy(b.buffer, b.initial.c_str(), b.initial.size() + 1);
    close(End::cancel);
}

// Where the selection is after the keys have changed: in its first place, or, of keys that are
// walked through one by one, where it was.
void reset_area(Board &b) {
    if (b.grid && b.layouts.is_zoned()) b.grid->go_home();
}

void change_keys(Board &b) {
    b.show_block();
    reset_area(b);
    hw::pass_time(change_pause_us);
    b.pressed = {};
    show_keys(b);
}

void clear(Board &b) {
    if (!b.buffer) return;
    b.entry.clear();
    hide_at_once(b);
    write_back(b);
    reset_area(b);
    show_entry(b);
    show_keys(b);
}

void shift(Board &b) {
    if (!b.has_shift()) return;
    b.shift = b.shift == Shift::upper ? Shift::lower : Shift::upper;
    change_keys(b);
}

void show_numbers(Board &b) {
    b.shift = b.shift == Shift::numbers ? Shift::lower : Shift::numbers;
    change_keys(b);
}

void next_language(Board &b) {
    choose_next_language(b.layouts);
    if (b.shift == Shift::numbers) b.shift = Shift::lower;
    hw_setextkbdlayout(b.language().code.c_str());
    change_keys(b);
}

// A password that was there before is never shown.
void toggle_eye(Board &b) {
    if (!b.has_eye()) return;
    b.eye_is_open = !b.eye_is_open;
    show_entry(b);
}

} // namespace

void show_entry(Board &b) {
    hide_hint(b);
    draw_entry(b);
    const irect &r = b.place.entry;
    PartialUpdateBW(r.x, r.y, r.w, r.h);
    b.was_touched = true;
}

void hide_hint(Board &b) {
    if (b.hint.w == 0) return;
    b.under_hint.restore();
    const irect r = std::exchange(b.hint, {});
    PartialUpdateBW(r.x, r.y, r.w, r.h);
}

bool changes_keys(uint16_t key) {
    return key == code::shift || key == code::language || key == code::numbers;
}

void type(Board &b, uint16_t key) {
    switch (key) {
    case code::none:
        break;
    case code::language:
        return next_language(b);
    case code::shift:
        return shift(b);
    case code::clear:
        return clear(b);
    case code::numbers:
        return show_numbers(b);
    case code::eye:
        return toggle_eye(b);
    case code::wide_space:
        return insert(b, code::space);
    case code::backspace:
        return backspace(b);
    case code::enter:
        return enter(b, End::enter);
    case code::next:
        return enter(b, End::next);
    case code::cancel:
        return cancel(b);
    default:
        return insert(b, key);
    }
}

void move_cursor(Board &b, size_t position) {
    if (b.entry.move_to(position)) show_entry(b);
}

void step_cursor(Board &b, bool to_the_left) {
    if (!b.buffer) return;
    if (to_the_left ? b.entry.move_left() : b.entry.move_right()) show_entry(b);
}

void touch_icon(Board &b) {
    type(b, b.has_eye() ? code::eye : code::clear);
}

void stop_timers() {
    ClearTimer(hide_revealed);
}

} // namespace keyboard
