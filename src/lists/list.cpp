// SPDX-License-Identifier: MIT
// What keys and fingers do to a list.
#include "lists/list.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "internal.h"
#include "kelvane/events.h"
#include "kelvane/updates.h"
#include "lists/drawing.h"
#include "lists/keys.h"
#include "lists/strip.h"
#include "modal/input.h"
#include "raster/box.h"
#include "raster/rects.h"

namespace lists {
namespace {

constexpr int most_passed_over = 64; // rows that cannot be selected, one after the other
constexpr int pages_of_held_key = 10;

} // namespace

List::List(const ilistrows &rows)
    : rows_(rows), empty_title_(rows.empty_title ? rows.empty_title : ""),
      empty_line_(rows.empty_line ? rows.empty_line : "") {
    paging_.count = std::max(rows.count, 0);
    paging_.select(0);
}

void List::set_place(const irect &place) {
    wanted_ = raster::to_rect(raster::Box(place)); // sums of its sides are an int
    hand_.state = 0;
    lay_out();
}

// One that was emptied begins anew.
void List::set_count(int count) {
    is_fresh_ |= count < 1 && paging_.selected >= 0;
    paging_.set_count(count);
    if (is_fresh_) paging_.select(0);
    is_settled_ = false;
    if (look_) lay_out();
}

void List::select(int row) {
    is_fresh_ = is_empty() && row >= 0;
    is_settled_ = false;
    paging_.select(row);
}

void List::show_page(int page) {
    if (is_empty()) return;
    is_fresh_ = false;
    const auto pages = std::clamp<int64_t>(page, 0, paging_.last_page()) - paging_.page;
    paging_.select(nearest_on_page(paging_.row_after_turn(static_cast<int>(pages))));
}

ilistrow List::filled(int row) const {
    ilistrow r{};
    r.progress = -1;
    if (rows_.fill && !is_abandoned_) rows_.fill(row, &r, rows_.context);
    return is_abandoned_ ? ilistrow{} : r;
}

bool List::is_selectable(int row) const {
    return (filled(row).flags & (LIST_ROW_DISABLED | LIST_ROW_HEADING)) == 0;
}

// The selected one where there is no other near.
int List::next_selectable(int step) const {
    int row = paging_.selected >= 0 ? paging_.selected : step > 0 ? -1 : 0;
    for (int i = 0; i < most_passed_over; ++i) {
        row = paging_.row_after_step(row, step);
        if (row < 0 || row == paging_.selected || is_selectable(row)) break;
    }
    return row >= 0 && is_selectable(row) ? row : paging_.selected;
}

// The row, or the nearest one on its page that can be selected; it itself where none can.
int List::nearest_on_page(int row) const {
    const int64_t first = int64_t{paging_.page_of(row)} * paging_.per_page;
    const int64_t behind = std::min<int64_t>(first + paging_.per_page, paging_.count);
    for (int64_t r = row; r < std::min<int64_t>(behind, int64_t{row} + most_passed_over); ++r)
        if (is_selectable(static_cast<int>(r))) return static_cast<int>(r);
    for (int64_t r = row; r-- > std::max<int64_t>(first, int64_t{row} - most_passed_over);)
        if (is_selectable(static_cast<int>(r))) return static_cast<int>(r);
    return row;
}

int List::nearest(int row) const {
    return row < 0 || is_empty() ? -1 : nearest_on_page(std::min(row, paging_.count - 1));
}

int List::row_at(int x, int y) const {
    const int64_t down = int64_t{y} - place_.y - top_;
    if (x < place_.x || x >= place_.x + place_.w || down < 0) return -1;
    const int64_t row = paging_.first() + down / row_h_;
    return row < int64_t{paging_.first()} + paging_.shown() ? static_cast<int>(row) : -1;
}

void List::tell(int action, int row) const {
    if (rows_.hproc && !is_abandoned_) rows_.hproc(action, row, rows_.context);
}

// With the line above them.
void List::update_rows(const irect &rows, Tones tones) const {
    if (rows.w < 1) return;
    const int line = has_lines() ? look_->hairline : 0;
    if (tones == Tones::two)
        PartialUpdateBW(rows.x, rows.y - line, rows.w, rows.h + line);
    else
        PartialUpdate(rows.x, rows.y - line, rows.w, rows.h + line);
}

// Rows that lie between the two stay as they are.
void List::show_move(int from, int to) {
    if (is_stale_) return redraw();
    if (is_drawing_) return;
    const Drawing drawing(is_drawing_);
    const Tones of_from = draw_row(from, Ground::any);
    const Tones of_to = from == to ? of_from : draw_row(to, Ground::any);
    if (is_abandoned_) return;
    const irect a = row_rect(from), b = row_rect(to);
    if (of_from == of_to && std::abs(int64_t{from} - to) <= 1)
        return update_rows(raster::joined(a, b), of_to);
    update_rows(a, of_from);
    update_rows(b, of_to);
}

void List::redraw_row(int row) {
    if (paging_.shows(row)) show_move(row, row);
}

void List::move_to(int row, Told told) {
    const int from = paging_.selected, page = paging_.page;
    if (row == from) return;
    select(row);
    is_settled_ = true;
    if (page == paging_.page)
        show_move(from, paging_.selected);
    else
        redraw();
    if (told == Told::yes) tell(LIST_SELECTED, paging_.selected);
}

void List::go_to(int row) {
    move_to(nearest(row), Told::no);
}

void List::turn(int pages) {
    if (is_empty()) return;
    const int row = paging_.row_after_turn(pages);
    if (paging_.page_of(row) != paging_.page) move_to(nearest_on_page(row), Told::yes);
}

void List::step(int step, Press press) {
    if (is_empty()) return;
    if (press == Press::held && paging_.last_page() > 0) return turn(step);
    move_to(next_selectable(step), Told::yes);
}

bool List::key(int code, Press press) {
    const int pages = press == Press::held ? pages_of_held_key : 1;
    switch (mirrored_key(*look_, code)) {
    case KEY_UP:
        step(-1, press);
        return true;
    case KEY_DOWN:
        step(1, press);
        return true;
    case KEY_LEFT:
    case KEY_PREV:
    case KEY_PREV2:
        turn(-pages);
        return true;
    case KEY_RIGHT:
    case KEY_NEXT:
    case KEY_NEXT2:
        turn(pages);
        return true;
    case KEY_MENU:
        if (press == Press::first) act_on(paging_.selected, LIST_CONTEXT);
        return true;
    default:
        return false;
    }
}

// It chooses when it is let go, unless it was held.
bool List::ok_key(int type, int repeats) {
    if (type == EVT_KEYPRESS) {
        ok_is_down_ = true;
        return true;
    }
    if (!ok_is_down_) return false;
    ok_is_down_ = false;
    act_on(paging_.selected, type == EVT_KEYREPEAT || repeats > 0 ? LIST_CONTEXT : LIST_CHOSEN);
    return true;
}

// Of a row that cannot be selected nothing is told.
void List::act_on(int row, int action) {
    if (!paging_.shows(row) || !is_selectable(row)) return;
    move_to(row, Told::no);
    tell(action, row);
}

void List::tap(int x, int y) {
    switch (strip_part_at(*look_, strip_, x, y)) {
    case StripPart::previous:
        return turn(-1);
    case StripPart::next:
        return turn(1);
    case StripPart::counter:
        return tell(LIST_COUNTER, paging_.page);
    case StripPart::nothing:
        break;
    }
    act_on(row_at(x, y), LIST_CHOSEN);
}

// A finger moves what it lies on: upwards, or against the way of reading, comes the next page.
void List::gesture(int kind) {
    const int onwards = look_->is_rtl ? -1 : 1;
    switch (kind) {
    case GESTURE_TAP:
    case GESTURE_DOUBLE_TAP:
        return tap(hand_.x, hand_.y);
    case GESTURE_LONG_PRESS:
        return act_on(row_at(hand_.x, hand_.y), LIST_CONTEXT);
    case GESTURE_SWIPE_UP:
        return turn(1);
    case GESTURE_SWIPE_DOWN:
        return turn(-1);
    case GESTURE_SWIPE_LEFT:
        return turn(onwards);
    case GESTURE_SWIPE_RIGHT:
        return turn(-onwards);
    default:
        break;
    }
}

bool List::pointer(int type, int par1, int par2) {
    const bool is_down = type == EVT_POINTERDOWN;
    const bool is_outside = is_down && !raster::contains(raster::Box(place_), par1, par2);
    if (is_outside) hand_.state = 0;
    if (is_outside || (!is_down && hand_.state == 0)) return false;
    gesture(RecogniseGesture(&hand_, type, par1, par2));
    return true;
}

bool List::handle(int type, int par1, int par2) {
    if (!kvstate.framebuffer || is_abandoned_) return false;
    if (look_ != look()) lay_out();
    if (place_.w < 1 || place_.h < 1) return false;
    if (modal::is_pointer_event(type)) return pointer(type, par1, par2);
    const bool is_key = type == EVT_KEYPRESS || type == EVT_KEYREPEAT || type == EVT_KEYRELEASE;
    if (is_key && par1 == KEY_OK) return ok_key(type, par2);
    if (type == EVT_KEYPRESS) return key(par1, Press::first);
    if (type == EVT_KEYREPEAT) return key(par1, Press::held);
    if (type == EVT_SHOW || type == EVT_HIDE || type == EVT_RESTORE) {
        hand_.state = 0;
        ok_is_down_ = false;
    }
    return false;
}

} // namespace lists
