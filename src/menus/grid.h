// SPDX-License-Identifier: MIT
// The menu of nine cells.
#pragma once

#include <array>
#include <string>

#include "kelvane/menus.h"
#include "menus/look.h"
#include "modal/takeover.h"

namespace menus {

inline constexpr int grid_side = 3, grid_cells = grid_side * grid_side;

struct Cell {
    int kind = 0; // 0: empty
    int index = 0;
    std::string text;
    const ibitmap *picture = nullptr;
};

struct Grid {
    modal::Takeover taken;
    kv_menuhandler hproc = nullptr;
    LookPtr look;
    std::array<Cell, grid_cells> cells;
    irect rect{}, covered{};
    int current = -1;
    int unheard = 0; // events that were queued for a grid that is gone

    // Where the interface runs right to left, so do the cells.
    irect cell_rect(int cell) const;
    // All cells are of one size, with a hairline between two.
    irect place(int column, int row) const;
};

// The cell that can be chosen, so many further in steps of that size, round and round; the present
// one where there is no other. -1 steps back.
int next_cell(const Grid &grid, int step);

void draw_grid(const Grid &grid);
void draw_cell(const Grid &grid, int cell);

// Takes it away as the screen closes. Nobody is told.
void reset_grid();

} // namespace menus
