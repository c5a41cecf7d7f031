// SPDX-License-Identifier: MIT
// Opens levels over each other and closes them.
#include "menus/stack.h"

#include <algorithm>
#include <utility>

#include "ground/guard.h"
#include "hw.h"
#include "internal.h"
#include "kelvane/languages.h"
#include "kelvane/updates.h"
#include "menus/context.h"
#include "menus/draw.h"
#include "menus/grid.h"
#include "menus/handler.h"
#include "modal/input.h"
#include "raster/box.h"
#include "raster/rects.h"
#include "runtime/queue.h"

namespace menus {
namespace {

std::vector<Menu> levels;
const ifont *menu_font = nullptr;
int unheard = 0; // events that were queued for menus that are gone

bool is_empty(const imenuex *menu) {
    return !menu || menu->type == 0;
}

// Levels of one look share it.
LookPtr look_for(const Opening &o) {
    const icontext_menu_properties *properties = o.context ? o.context->properties : nullptr;
    const Menu *below = top();
    if (!below) return load_look(properties);
    const bool same = properties == (below->context ? below->context->properties : nullptr);
    return same ? below->look : load_look(properties);
}

// A title bar gets the button where only a finger could use it, and once.
ExitButton exit_button() {
    return levels.empty() && device_touchpanel() > 0 ? ExitButton::in_header : ExitButton::none;
}

Menu make_menu(const Opening &o) {
    Menu menu;
    menu.hproc = o.hproc;
    menu.context = o.context;
    menu.look = look_for(o);
    menu.anchor = o.anchor;
    menu.request = {.menu = o.menu,
                    .position = o.position,
                    .own_fonts =
                        o.context && o.context->use_own_font ? OwnFonts::used : OwnFonts::ignored,
                    .exit = exit_button(),
                    .fonts = {menu_font}};
    if (o.anchor.by == PlacedBy::submenu) menu.beside = top()->rect;
    return menu;
}

bool has_pointer(const Menu &menu) {
    return menu.context && menu.context->enable_pointer && menu.look->pointer &&
           menu.look->pointer_down && menu.anchor.by == PlacedBy::item;
}

// The pointer's tip is a unit from the item, and its base opens the border.
int gap_of(const Menu &menu) {
    const Look &look = *menu.look;
    if (menu.anchor.by == PlacedBy::submenu) return menu.anchor.overlap;
    return has_pointer(menu) ? -(look.unit + look.pointer.height() - look.p.border_size - 1)
                             : -look.rim();
}

irect pointer_of(const Menu &menu) {
    const Look &look = *menu.look;
    if (!has_pointer(menu)) return {};
    return place_pointer(menu.rect, menu.anchor.item,
                         {.w = look.pointer.width(),
                          .h = look.pointer.height(),
                          .border = look.p.border_size,
                          .radius = look.p.border_radius});
}

// Lays the menu out and puts it in its place.
void measure(Menu &menu) {
    const irect area = menu_area();
    menu.layout = lay_out(menu.request, *menu.look, area.w, area.h);
    menu.anchor.overlap = gap_of(menu);
    menu.rect = place(menu.anchor, menu.layout.w, menu.layout.h, area);
    menu.pointer = pointer_of(menu);
    menu.covered = raster::joined(raster::widened(menu.rect, menu.look->rim()), menu.pointer);
    menu.scroll = 0;
}

// A row selected at the start may be far down: it comes to the middle.
void show_selected(Menu &menu) {
    const Row *row = menu.level().selected();
    if (!row || !menu.is_scrolled_by_finger()) return;
    menu.scroll = std::clamp(row->y + (row->h - menu.rect.h) / 2, 0, menu.most_scroll());
}

// The row of that number or the nearest before it that can be chosen.
void select_row(Menu &menu, int row) {
    Level &level = menu.level();
    const int last = static_cast<int>(level.rows.size()) - 1;
    level.current = nearest_selectable(level, std::min(row, last));
    if (const Row *selected = level.selected()) level.page = selected->page;
}

void show(const irect &r) {
    modal::update(raster::Box(r));
}

void update_after_close(const Menu &menu) {
    const bool is_last = levels.empty();
    if (is_last && (!menu.context || menu.context->update_after_close)) {
        WaitForUpdateComplete();
        FullUpdate();
    } else {
        PartialUpdateBW(menu.covered.x, menu.covered.y, menu.covered.w, menu.covered.h);
    }
}

// Where there was no memory for the picture of what lay beneath, or the screen was turned since,
// whoever has the input next draws it anew.
void put_screen_back(Menu &menu) {
    if (menu.taken.under.restore()) return;
    if (menu.taken.previous() != menu_handler) SendEvent(menu.taken.previous(), EVT_SHOW, 0, 0);
}

void show_parent(Menu &parent) {
    parent.submenu_is_open = false;
    draw_selection(parent, -1);
}

void open_level(const Opening &o) {
    Menu menu = make_menu(o);
    measure(menu);
    show_selected(menu);
    levels.push_back(std::move(menu));
    if (levels.size() == 1) unheard = queue_count(menu_handler);
    Menu &opened = levels.back();
    opened.taken.under.save(opened.covered);
    opened.taken.take_input(menu_handler, 0, close_top);
    draw_menu(opened);
    show(opened.covered);
}

Anchor submenu_anchor(const Menu &parent, const Row &row) {
    const int border = parent.look->p.border_size;
    Anchor anchor;
    anchor.by = PlacedBy::submenu;
    anchor.item = parent.row_rect(row);
    anchor.side = IsRTL() ? MENU_SIDE_LEFT : MENU_SIDE_RIGHT;
    anchor.overlap = IsRTL() ? border : 2 * border;
    return anchor;
}

// Plain items are extended for as long as the call lasts: rows copy what they need.
void open_items(const Item &row, Opening &o) {
    if (!row.is_plain) return open(o);
    const std::vector<imenuex> items = extended(reinterpret_cast<const imenu *>(row.submenu));
    o.menu = items.data();
    o.position = first_selectable_position(o.menu);
    open(o);
}

} // namespace

void open(const Opening &o) {
    if (is_empty(o.menu) || !o.hproc || !kvstate.framebuffer) return;
    if (level_count() < most_levels) open_level(o);
}

void open_submenu() {
    Menu *parent = top();
    const Row *row = parent ? parent->level().selected() : nullptr;
    if (!row || is_empty(row->item.submenu)) return;
    if (level_count() == most_levels) return;
    const Item item = row->item;
    Opening o{.menu = item.submenu,
              .position = item.is_plain ? -1 : first_selectable_position(item.submenu),
              .hproc = parent->hproc,
              .anchor = submenu_anchor(*parent, *row),
              .context = nullptr};
    if (parent->context) {
        o.context = submenu_context(*parent->context, level_count(), item);
        if (o.context) o.anchor.side = o.context->pos_menu.flags;
    }
    const size_t opener = levels.size() - 1;
    parent->submenu_is_open = true;
    draw_selection(*parent, -1);
    show(parent->row_rect(*row));
    open_items(item, o);
    if (levels.size() == opener + 1) show_parent(levels[opener]);
}

Menu *top() {
    return levels.empty() ? nullptr : &levels.back();
}

int level_count() {
    return static_cast<int>(levels.size());
}

bool is_for_former_menu() {
    return levels.empty() || (unheard > 0 && unheard-- > 0);
}

void close_top() {
    if (!levels.empty()) levels.back().taken.close_above();
    if (levels.empty()) return;
    Menu menu = std::move(levels.back());
    levels.pop_back();
    drop_touch();
    put_screen_back(menu);
    if (Menu *parent = top()) {
        show_parent(*parent);
        menu.covered = raster::joined(menu.covered, parent->rect);
    }
    update_after_close(menu);
    menu.taken.give_input_back();
}

void finish(int index) {
    const Menu *menu = top();
    const kv_menuhandler hproc = menu ? menu->hproc : nullptr;
    while (top()) close_top();
    if (hproc) hproc(index);
}

void reset() {
    levels.clear();
    menu_font = nullptr;
    drop_look();
    reset_grid();
    reset_contexts();
}

} // namespace menus

void OpenMenuEx(imenuex *menu, int pos, int x, int y, kv_menuhandler hproc) {
    using namespace menus;
    ground::guarded([&] {
        if (is_empty(menu) || !hproc) return;
        const icontext_menu *context = take_context();
        const Anchor anchor = context ? anchor_of(*context, x, y) : Anchor{.x = x, .y = y};
        open({.menu = menu, .position = pos, .hproc = hproc, .anchor = anchor, .context = context});
    });
}

void OpenMenu(imenu *menu, int pos, int x, int y, kv_menuhandler hproc) {
    ground::guarded([&] {
        if (!menu || menu->type == 0) return;
        std::vector<imenuex> items = menus::extended(menu);
        OpenMenuEx(items.data(), pos, x, y, hproc);
    });
}

void UpdateMenuEx(imenuex *menu) {
    using namespace menus;
    ground::guarded([&] {
        Menu *shown = top();
        if (!shown || !menu) return;
        shown->touch = {};
        drop_touch();
        const irect before = shown->covered;
        const int current = shown->level().current;
        shown->request.menu = menu;
        shown->request.position = -1;
        const bool is_whole = shown->taken.under.restore();
        measure(*shown);
        select_row(*shown, current);
        show_selected(*shown);
        if (is_whole) shown->taken.under.save(shown->covered);
        draw_menu(*shown);
        show(raster::joined(before, shown->covered));
    });
}

void GetMenuRectEx(irect *result, imenuex *menu) {
    using namespace menus;
    if (!result) return;
    *result = {};
    ground::guarded([&] {
        if (is_empty(menu) || !kvstate.framebuffer) return;
        Menu measured = make_menu({menu, -1, nullptr, {}, nullptr});
        measure(measured);
        result->w = measured.rect.w;
        result->h = measured.rect.h;
    });
}

void GetMenuRect(irect *result, imenu *menu) {
    if (!result) return;
    *result = {};
    ground::guarded([&] {
        if (!menu || menu->type == 0) return;
        std::vector<imenuex> items = menus::extended(menu);
        GetMenuRectEx(result, items.data());
    });
}

void SetMenuFont(ifont *font) {
    menus::menu_font = font;
}
