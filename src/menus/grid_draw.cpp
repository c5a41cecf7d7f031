// SPDX-License-Identifier: MIT
// Draws the grid: a picture and a label in two lines in each cell.
#include <algorithm>

#include "kelvane/events.h"
#include "kelvane/languages.h"
#include "kelvane/text.h"
#include "menus/draw.h"
#include "menus/grid.h"
#include "raster/screen_scope.h"
#include "text/font_scope.h"

namespace menus {
namespace {

constexpr int label_lines = 2;

// Both stand in the middle of the cell, one below the other.
struct Parts {
    int picture_x, picture_y;
    irect label;
};

Parts parts_of(const Grid &grid, const irect &cell, const Cell &what) {
    const Look &look = *grid.look;
    const ifont *font = look.small_font.get();
    const int label_h = font ? label_lines * font->linespacing : 0;
    const int w = what.picture ? what.picture->width : 0;
    const int h = what.picture ? what.picture->height : 0;
    const int top = cell.y + std::max((cell.h - h - look.unit - label_h) / 2, 0);
    return {cell.x + (cell.w - w) / 2,
            top,
            {cell.x + look.unit, top + h + look.unit, cell.w - 2 * look.unit, label_h, 0}};
}

void draw_contents(const Grid &grid, const irect &r, const Cell &cell, bool selected) {
    const Parts parts = parts_of(grid, r, cell);
    DrawBitmap(parts.picture_x, parts.picture_y, cell.picture);
    if (selected) InvertArea(r.x, r.y, r.w, r.h);
    const text::FontScope scope(grid.look->small_font.get());
    const icontext_menu_properties &p = grid.look->p;
    const int plain = cell.kind == ITEM_INACTIVE ? p.font_disabled_color : p.font_normal_color;
    SetFont(grid.look->small_font.get(), selected ? WHITE : plain);
    const irect &l = parts.label;
    DrawTextRect(l.x, l.y, l.w, l.h, cell.text.c_str(), ALIGN_CENTER | TEXT_DOTS);
}

void draw_hairlines(const Grid &grid) {
    const int line = std::max(grid.look->p.separator_height, 1);
    const irect first = grid.place(0, 0), last = grid.place(grid_side - 1, grid_side - 1);
    const int w = last.x + last.w - first.x, h = last.y + last.h - first.y;
    for (int i = 1; i < grid_side; ++i) {
        const irect cell = grid.place(i, i);
        FillArea(cell.x - line, first.y, line, h, BLACK);
        FillArea(first.x, cell.y - line, w, line, BLACK);
    }
}

} // namespace

irect Grid::place(int column, int row) const {
    const int border = look->p.border_size, line = std::max(look->p.separator_height, 1);
    const int side = (rect.w - 2 * border - (grid_side - 1) * line) / grid_side;
    return {rect.x + border + column * (side + line), rect.y + border + row * (side + line), side,
            side, 0};
}

irect Grid::cell_rect(int cell) const {
    const int column = cell % grid_side;
    return place(IsRTL() ? grid_side - 1 - column : column, cell / grid_side);
}

void draw_cell(const Grid &grid, int cell) {
    if (cell < 0) return;
    const raster::ScreenScope screen;
    const irect r = grid.cell_rect(cell);
    SetClipRect(&r);
    FillAreaRect(&r, WHITE);
    draw_contents(grid, r, grid.cells[static_cast<size_t>(cell)], cell == grid.current);
}

void draw_grid(const Grid &grid) {
    {
        const raster::ScreenScope screen;
        fill_rounded(grid.covered, grid.look->rim_radius());
        draw_border(grid.rect, *grid.look);
        draw_hairlines(grid);
    }
    for (int cell = 0; cell < grid_cells; ++cell) draw_cell(grid, cell);
    const raster::ScreenScope screen;
    draw_border(grid.rect, *grid.look);
}

} // namespace menus
