// SPDX-License-Identifier: MIT
// The grid menu: its record, its keys and its pointer.
#include "menus/grid.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "chrome/panel.h"
#include "ground/guard.h"
#include "internal.h"
#include "kelvane/languages.h"
#include "kelvane/updates.h"
#include "menus/handler.h"
#include "menus/items.h"
#include "modal/input.h"
#include "raster/box.h"
#include "runtime/queue.h"

namespace menus {
namespace {

constexpr int cell_units = 40;
constexpr int dismissed = -1;

std::optional<Grid> grid; // the open one

bool is_selectable_cell(const Grid &g, int cell) {
    return cell >= 0 && is_selectable(g.cells[static_cast<size_t>(cell)].kind);
}

void fill_cells(Grid &g, const imenu *menu, const ibitmap *const *pictures) {
    for (size_t i = 0; i < g.cells.size() && menu[i].type != 0; ++i) {
        const int kind = kind_of(menu[i].type);
        if (kind == 0 || kind == ITEM_HEADER || kind == ITEM_SEPARATOR) continue;
        const char *text = menu[i].text ? GetLangText(menu[i].text) : "";
        g.cells[i] = {kind, menu[i].index, text, pictures ? pictures[i] : nullptr};
    }
}

// In the middle of what the screen leaves.
void place(Grid &g) {
    const Look &look = *g.look;
    const int room_w = ScreenWidth(), room_h = ScreenHeight() - PanelHeight();
    const int around =
        2 * look.p.border_size + (grid_side - 1) * std::max(look.p.separator_height, 1);
    const int room = std::min(room_w, room_h) - around - 2 * look.rim();
    const int side = std::max(std::min(cell_units * look.unit, room / grid_side), 1);
    const int length = grid_side * side + around;
    g.rect = {(room_w - length) / 2, (room_h - length) / 2, length, length, 0};
    const int rim = look.rim();
    g.covered = {g.rect.x - rim, g.rect.y - rim, length + 2 * rim, length + 2 * rim, 0};
}

void select_first(Grid &g, int pos) {
    if (pos < 0 || pos >= grid_cells) return;
    g.current = pos;
    if (!is_selectable_cell(g, pos)) g.current = next_cell(g, -1);
    if (!is_selectable_cell(g, g.current)) g.current = -1;
}

void close_grid() {
    Grid closed = std::move(*grid);
    grid.reset();
    if (!closed.taken.under.restore()) SendEvent(closed.taken.previous(), EVT_SHOW, 0, 0);
    WaitForUpdateComplete();
    FullUpdate();
    closed.taken.give_input_back();
}

void answer(int index) {
    const kv_menuhandler hproc = grid->hproc;
    close_grid();
    hproc(index);
}

void select(int cell) {
    if (!is_selectable_cell(*grid, cell) || cell == grid->current) return;
    const int former = std::exchange(grid->current, cell);
    draw_cell(*grid, former);
    draw_cell(*grid, cell);
    PartialUpdateBW(grid->rect.x, grid->rect.y, grid->rect.w, grid->rect.h);
}

bool grid_key(int code) {
    switch (mirrored_key(code)) {
    case KEY_UP:
        select(next_cell(*grid, -grid_side));
        return true;
    case KEY_DOWN:
        select(next_cell(*grid, grid_side));
        return true;
    case KEY_LEFT:
    case KEY_PREV2:
        select(next_cell(*grid, -1));
        return true;
    case KEY_RIGHT:
    case KEY_NEXT2:
        select(next_cell(*grid, 1));
        return true;
    case KEY_OK:
    case KEY_NEXT:
        if (grid->current >= 0) answer(grid->cells[static_cast<size_t>(grid->current)].index);
        return true;
    case KEY_MENU:
    case KEY_PREV:
    case KEY_BACK:
        answer(dismissed);
        return true;
    default:
        return false;
    }
}

// A cell, or out_of_border, or no_item on a line.
int cell_at(int x, int y) {
    if (!raster::contains(raster::Box(grid->rect), x, y)) return out_of_border;
    for (int cell = 0; cell < grid_cells; ++cell)
        if (raster::contains(raster::Box(grid->cell_rect(cell)), x, y)) return cell;
    return no_item;
}

void grid_pointer(int type, int x, int y) {
    const int cell = cell_at(x, y);
    if (type == EVT_POINTERDOWN) select(cell);
    if (type != EVT_POINTERUP) return;
    if (cell == out_of_border) modal::send_key(EVT_KEYPRESS, KEY_BACK);
    if (cell >= 0 && cell == grid->current) modal::send_key(EVT_KEYPRESS, KEY_OK);
}

int grid_handler(int type, int par1, int par2) {
    if (!grid) return 1; // what was queued for one that has closed
    if (grid->unheard > 0) {
        grid->unheard--;
        return 1;
    }
    if (modal::is_pointer_event(type)) {
        grid_pointer(type, par1, par2);
        return 1;
    }
    if (modal::is_system_event(type)) return 1;
    if (type != EVT_KEYPRESS && type != EVT_KEYREPEAT) return 0;
    return grid_key(par1) ? 1 : 0;
}

void open_grid(Grid &&made) {
    grid = std::move(made);
    grid->unheard = queue_count(grid_handler);
    grid->taken.under.save(grid->covered);
    grid->taken.take_input(grid_handler, 0, close_grid);
    draw_grid(*grid);
    modal::update(raster::Box(grid->covered));
}

} // namespace

int next_cell(const Grid &g, int step) {
    int cell = g.current < 0 && step > 0 ? grid_cells - step : std::max(g.current, 0);
    for (int tried = 0; tried < grid_cells; ++tried) {
        cell = (cell + step + grid_cells) % grid_cells;
        if (is_selectable_cell(g, cell)) return cell;
    }
    return g.current;
}

void reset_grid() {
    grid.reset();
}

} // namespace menus

void OpenMenu3x3(const imenu *menu, const ibitmap *const pictures[9], int pos,
                 kv_menuhandler hproc) {
    using namespace menus;
    ground::guarded([&] {
        if (!menu || menu->type == 0 || !hproc || !kvstate.framebuffer || grid) return;
        Grid made;
        made.hproc = hproc;
        made.look = load_look(nullptr);
        fill_cells(made, menu, pictures);
        place(made);
        select_first(made, pos);
        open_grid(std::move(made));
    });
}
