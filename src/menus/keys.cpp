// SPDX-License-Identifier: MIT
// The handler of menus and what its keys do. Fingers end here as well: a tap comes back as a key.
#include <algorithm>
#include <unistd.h>
#include <utility>

#include "ground/guard.h"
#include "ground/log.h"
#include "internal.h"
#include "kelvane/languages.h"
#include "kelvane/updates.h"
#include "menus/draw.h"
#include "menus/handler.h"
#include "modal/input.h"

namespace menus {
namespace {

constexpr int first_repeat_ms = 750, next_repeat_ms = 240;
constexpr int warning_level = 3;
constexpr int dismissed = -1;
constexpr int evt_scrolled = 33; // scroll area, pixels

void choose(const Menu &menu) {
    const Row *row = menu.level().selected();
    if (!row) return;
    if (row->item.kind == ITEM_SUBMENU)
        open_submenu();
    else
        finish(row->item.index);
}

void go_back() {
    if (level_count() == 1)
        finish(dismissed);
    else
        close_top();
}

bool has_submenus(const Level &level) {
    for (const Row &row : level.rows)
        if (row.item.kind == ITEM_SUBMENU) return true;
    return false;
}

// Into the submenu of the row; out of a menu that opened to the left.
void go_right(const Menu &menu) {
    const Row *row = menu.level().selected();
    if (row && row->item.kind == ITEM_SUBMENU) return open_submenu();
    const bool to_the_left = menu.context && menu.context->pos_menu.flags == MENU_SIDE_LEFT;
    if (to_the_left && !has_submenus(menu.level())) modal::send_key(EVT_KEYPRESS, back_key());
}

void move(Menu &menu, Direction direction, Press press) {
    const Level &level = menu.level();
    const bool by_page = press == Press::repeat && level.is_paged();
    const int row =
        by_page ? first_of_next_page(level, direction) : next_selectable(level, direction);
    if (level.is_selectable_at(row)) change_item(menu, row);
}

// Rows under the edges come into sight.
bool scroll_into_sight(Menu &menu) {
    const Row *row = menu.level().selected();
    if (!row || !menu.is_scrolled_by_finger()) return false;
    const int border = menu.look->p.border_size, before = menu.scroll;
    const int least = row->y + row->h + border - menu.rect.h, most = row->y - border;
    menu.scroll =
        std::clamp(std::clamp(before, std::min(least, most), most), 0, menu.most_scroll());
    return menu.scroll != before;
}

void trace(int type, int par1, int par2) {
    tq_print_log2(warning_level, "[pid:%d]called menu_handler(type=%i, par1=%i, par2=%i)\n",
                  static_cast<int>(getpid()), type, par1, par2);
}

// False for what a menu leaves to others.
bool handle(Menu &menu, int type, int par1, int par2) {
    if (modal::is_pointer_event(type)) {
        pointer(menu, type, par1, par2);
        return true;
    }
    if (modal::is_system_event(type)) return key(KEY_BACK, Press::first);
    switch (type) {
    case EVT_SHOW:
        SetKeyboardRate(first_repeat_ms, next_repeat_ms);
        return true;
    case evt_scrolled:
        if (par1 == level_count()) scroll_by(menu, static_cast<int16_t>(par2));
        return true;
    case EVT_KEYPRESS:
        return key(par1, Press::first);
    case EVT_KEYREPEAT:
        return key(par1, Press::repeat);
    default:
        return false;
    }
}

} // namespace

int back_key() {
    return IsRTL() ? KEY_RIGHT : KEY_LEFT;
}

int mirrored_key(int code) {
    if (!IsRTL() || (code != KEY_LEFT && code != KEY_RIGHT)) return code;
    return KEY_LEFT + KEY_RIGHT - code;
}

void change_item(Menu &menu, int row) {
    Level &level = menu.level();
    const int former = std::exchange(level.current, row);
    const int page = std::exchange(level.page, level.rows[static_cast<size_t>(row)].page);
    if (page != level.page || scroll_into_sight(menu)) {
        draw_rows(menu);
        modal::update(raster::Box(menu.rect));
        return;
    }
    draw_selection(menu, former);
    PartialUpdateBW(menu.rect.x, menu.rect.y, menu.rect.w, menu.rect.h);
}

bool key(int code, Press press) {
    Menu *menu = top();
    if (!menu) return false;
    switch (mirrored_key(code)) {
    case KEY_POWER:
    case KEY_MENU:
    case KEY_BACK:
        finish(dismissed);
        return true;
    case KEY_OK:
    case KEY_NEXT:
        choose(*menu);
        return true;
    case KEY_UP:
    case KEY_PREV2:
        move(*menu, Direction::back, press);
        return true;
    case KEY_DOWN:
    case KEY_NEXT2:
        move(*menu, Direction::forward, press);
        return true;
    case KEY_LEFT:
    case KEY_PREV:
        go_back();
        return true;
    case KEY_RIGHT:
        go_right(*menu);
        return true;
    default:
        return false;
    }
}

// Events that were queued for a menu that has closed are dropped.
int menu_handler(int type, int par1, int par2) {
    trace(type, par1, par2);
    if (is_for_former_menu()) return 1;
    return ground::guarded(1, [&] { return handle(*top(), type, par1, par2) ? 1 : 0; });
}

} // namespace menus
