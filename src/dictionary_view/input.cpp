// SPDX-License-Identifier: MIT
// The handler of the view: what keys and fingers mean.
#include <algorithm>
#include <cstdlib>
#include <utility>

#include "dictionary_view/draw.h"
#include "dictionary_view/view.h"
#include "ground/guard.h"
#include "internal.h"
#include "kelvane/events.h"
#include "kelvane/updates.h"
#include "menus/handler.h"
#include "modal/input.h"
#include "raster/box.h"

namespace dictionary_view {
namespace {

constexpr int swipe_units = 10;

bool is_inside(const irect &r, int x, int y) {
    return raster::contains(raster::Box(r), x, y);
}

Target target_at(const View &v, int x, int y) {
    if (!is_inside(v.place.whole, x, y)) return {Target::outside};
    for (size_t i = 0; i < tool_count; ++i)
        if (is_inside(v.place.tools[i], x, y)) return {Target::tool, static_cast<int>(i)};
    for (int i = 0; i < static_cast<int>(v.words.shown().size()); ++i)
        if (is_inside(v.place.row(i), x, y)) return {Target::row, i};
    return {is_inside(v.place.article, x, y) ? Target::article : Target::nothing};
}

void show_pressed(View &v, std::optional<Tool> tool) {
    if (v.pressed == tool) return;
    const Tool changed = tool.value_or(v.pressed.value_or(Tool::close));
    v.pressed = tool;
    draw_tools(v);
    const irect &r = v.place.tools[static_cast<size_t>(changed)];
    PartialUpdateBW(r.x, r.y, r.w, r.h);
}

void down(View &v, int x, int y) {
    v.touched = target_at(v, x, y);
    v.down_x = x;
    v.down_y = y;
    if (v.touched.part == Target::tool) show_pressed(v, static_cast<Tool>(v.touched.index));
}

// A finger moves what it lies on: upwards, or against the way of reading, comes the next page.
bool swipe(View &v, const Target &from, int dx, int dy) {
    if (std::max(std::abs(dx), std::abs(dy)) < swipe_units * v.look.unit) return false;
    if (from.part != Target::row && from.part != Target::article) return false;
    focus_on(v, from.part == Target::row ? Pane::list : Pane::article);
    const bool is_mirrored = v.place.list.x > v.place.article.x;
    const int way = std::abs(dy) >= std::abs(dx) ? dy : is_mirrored ? -dx : dx;
    way < 0 ? one_page_down(v) : one_page_up(v);
    return true;
}

// The side of the article on which lines end turns to the next page.
void tap_article(View &v, int x) {
    focus_on(v, Pane::article);
    const irect &pane = v.place.article;
    const bool is_right = x >= pane.x + pane.w / 2;
    const bool is_mirrored = v.place.list.x > pane.x;
    is_right != is_mirrored ? one_page_down(v) : one_page_up(v);
}

void tap(View &v, const Target &target, int x) {
    switch (target.part) {
    case Target::tool:
        return use(v, static_cast<Tool>(target.index));
    case Target::row:
        return select_row(v, target.index);
    case Target::article:
        return tap_article(v, x);
    case Target::outside:
        return modal::send_key(EVT_KEYPRESS, KEY_BACK);
    case Target::nothing:
        break;
    }
}

void up(View &v, int x, int y) {
    const Target from = std::exchange(v.touched, {});
    show_pressed(v, std::nullopt);
    if (swipe(v, from, x - v.down_x, y - v.down_y)) return;
    if (target_at(v, x, y) == from) tap(v, from, x);
}

void pointer(View &v, int type, int x, int y) {
    if (type == EVT_POINTERDOWN) down(v, x, y);
    if (type == EVT_POINTERUP) up(v, x, y);
}

void move(View &v, Direction direction) {
    if (v.focus == Pane::list) return step(v, direction);
    direction == Direction::back ? one_page_up(v) : one_page_down(v);
}

bool key(View &v, int code) {
    switch (menus::mirrored_key(code)) {
    case KEY_UP:
        move(v, Direction::back);
        return true;
    case KEY_DOWN:
        move(v, Direction::forward);
        return true;
    case KEY_PREV:
    case KEY_PREV2:
        one_page_up(v);
        return true;
    case KEY_NEXT:
    case KEY_NEXT2:
        one_page_down(v);
        return true;
    case KEY_LEFT:
        focus_on(v, Pane::list);
        return true;
    case KEY_RIGHT:
        focus_on(v, Pane::article);
        return true;
    default:
        return false;
    }
}

// Keys that do not go on while they are held. They may close the view.
bool single_key(View &v, int code) {
    switch (code) {
    case KEY_OK:
        use(v, Tool::keyboard);
        return true;
    case KEY_MENU:
        use(v, Tool::dictionaries);
        return true;
    case KEY_BACK:
        close_view();
        return true;
    default:
        return key(v, code);
    }
}

// Something else was above the view, or the screen was turned.
void come_back(View &v, int type) {
    if (v.is_to_close) return close_view();
    const bool is_turned = v.orientation != kvstate.orientation;
    if (is_turned) lay_out(v);
    if (!is_turned && type != EVT_SHOW) return;
    v.pressed.reset();
    draw_view(v);
    modal::update(raster::Box(v.place.whole));
}

bool handle(View &v, int type, int par1, int par2) {
    const bool is_turned = v.orientation != kvstate.orientation;
    const bool is_back = type == EVT_SHOW || type == EVT_RESTORE;
    if (is_turned || is_back) come_back(v, type);
    if (is_back || !view()) return true;
    if (modal::is_pointer_event(type)) {
        pointer(v, type, par1, par2);
        return true;
    }
    if (modal::is_system_event(type)) return true;
    if (type == EVT_KEYPRESS) return single_key(v, par1);
    return type == EVT_KEYREPEAT && key(v, par1);
}

} // namespace

int view_handler(int type, int par1, int par2) {
    if (is_for_former_view()) return 1;
    return ground::guarded(1, [&] { return handle(*view(), type, par1, par2) ? 1 : 0; });
}

} // namespace dictionary_view
