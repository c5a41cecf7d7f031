// SPDX-License-Identifier: MIT
// Turns what a finger does into a selection, a key, or a movement of the rows.
#include <algorithm>
#include <utility>

#include "kelvane/events.h"
#include "kelvane/timers.h"
#include "kelvane/updates.h"
#include "menus/draw.h"
#include "menus/handler.h"
#include "modal/input.h"
#include "raster/box.h"

namespace menus {
namespace {

// A finger that begins to drag soon after it went down selects nothing.
constexpr int item_change_ms = 150;

bool is_inside(const irect &r, int x, int y) {
    return raster::contains(raster::Box(r), x, y);
}

// Rows that a finger moves may take the button out of sight.
bool is_on_exit(const Menu &menu, int x, int y) {
    return is_inside(inside_of(menu), x, y) && is_inside(exit_rect(menu), x, y);
}

void select(Menu &menu, int row) {
    if (menu.level().is_selectable_at(row) && row != menu.level().current) change_item(menu, row);
}

void item_change_due(void *) {
    if (Menu *menu = top()) select(*menu, menu->touch.item);
}

void show_exit(Menu &menu, bool pressed) {
    menu.touch.on_exit = pressed;
    draw_exit_button(menu);
    modal::update(raster::Box(exit_rect(menu)));
}

void down(Menu &menu, int x, int y) {
    menu.touch = {};
    menu.touch.down_y = y;
    if (is_on_exit(menu, x, y)) return show_exit(menu, true);
    const int row = item_at(menu, x, y);
    if (!menu.is_scrolled_by_finger()) return select(menu, row);
    menu.touch.item = row;
    SetWeakTimer("MENU_ITEM", item_change_due, item_change_ms);
}

// The rows follow the finger from where it went down.
void drag(Menu &menu, int y) {
    Touch &touch = menu.touch;
    if (!menu.is_scrolled_by_finger() || touch.on_exit) return;
    if (!touch.is_dragging) {
        drop_touch();
        touch.item = no_item;
        touch.drag_y = touch.down_y;
        touch.is_dragging = true;
    }
    const int moved = std::exchange(touch.drag_y, y) - y;
    scroll_by(menu, moved);
}

void up(Menu &menu, int x, int y) {
    Touch &touch = menu.touch;
    if (touch.on_exit) {
        show_exit(menu, false);
        if (is_on_exit(menu, x, y)) modal::send_key(EVT_KEYPRESS, KEY_BACK);
        return;
    }
    if (touch.is_dragging) {
        drag(menu, y);
        touch = {};
        return;
    }
    drop_touch();
    const int row = item_at(menu, x, y);
    if (std::exchange(touch.item, no_item) == row) select(menu, row);
    if (row == out_of_border) modal::send_key(EVT_KEYPRESS, back_key());
    if (row >= 0 && row == menu.level().current) modal::send_key(EVT_KEYPRESS, KEY_OK);
}

} // namespace

int item_at(const Menu &menu, int x, int y) {
    if (!is_inside(menu.rect, x, y)) return out_of_border;
    const Level &level = menu.level();
    for (size_t i = 0; i < level.rows.size(); ++i) {
        const Row &row = level.rows[i];
        if (row.page != level.page || !is_inside(menu.row_rect(row), x, y)) continue;
        return row.item.kind == ITEM_HEADER ? on_header : static_cast<int>(i);
    }
    return no_item;
}

void scroll_by(Menu &menu, int rows_up) {
    drop_touch();
    const int before = menu.scroll;
    menu.scroll = std::clamp(raster::saturated(int64_t{before} + rows_up), 0, menu.most_scroll());
    if (menu.scroll == before) return;
    draw_rows(menu);
    PartialUpdateBW(menu.rect.x, menu.rect.y, menu.rect.w, menu.rect.h);
}

void drop_touch() {
    ClearTimer(item_change_due);
}

void pointer(Menu &menu, int type, int x, int y) {
    switch (type) {
    case EVT_POINTERDOWN:
        down(menu, x, y);
        break;
    case EVT_POINTERDRAG:
        drag(menu, y);
        break;
    case EVT_POINTERUP:
        up(menu, x, y);
        break;
    default:
        break;
    }
}

} // namespace menus
