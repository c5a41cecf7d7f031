// SPDX-License-Identifier: MIT
// Greys and every drawing primitive, a cell each.
#include <algorithm>
#include <iterator>

#include "lettering.h"
#include "page.h"

namespace {

void greys(const irect &r) {
    for (int i = 0; i < 16; i++) {
        const int left = r.w * i / 16, right = r.w * (i + 1) / 16;
        FillArea(r.x + left, r.y, right - left, r.h * 2 / 3, i * 0x111111);
    }
    DrawRect(r.x, r.y, r.w, r.h * 2 / 3, BLACK);
    constexpr int named[] = {BLACK, DGRAY, LGRAY, WHITE};
    for (int i = 0; i < 4; i++) {
        const irect swatch =
            grid_cell(iRect(r.x, r.y + r.h * 3 / 4, r.w, r.h / 4, 0), 4, 1, i, unit());
        FillAreaRect(&swatch, named[i]);
        DrawRect(swatch.x, swatch.y, swatch.w, swatch.h, BLACK);
    }
}

void lines(const irect &r) {
    for (int i = 0; i <= 12; i++) {
        DrawLine(r.x, r.y + r.h - 1, r.x + (r.w - 1) * i / 12, r.y, BLACK);
        DrawLine(r.x, r.y + r.h - 1, r.x + r.w - 1, r.y + (r.h - 1) * i / 12, DGRAY);
    }
}

void dashes(const irect &r) {
    constexpr int patterns[][2] = {{1, 1}, {2, 2}, {6, 3}, {12, 4}, {3, 12}, {24, 8}};
    const int rows = int(std::size(patterns));
    for (int i = 0; i < rows; i++) {
        const int y = r.y + r.h * (2 * i + 1) / (2 * rows);
        for (int line = 0; line < unit() / 2; line++)
            DrawDashLine(r.x, y + line, r.x + r.w - 1, y + line, BLACK, patterns[i][0],
                         patterns[i][1]);
    }
}

void discs(const irect &r) {
    const int radius = std::min(r.w, r.h) / 2 - 1;
    constexpr int colors[] = {BLACK, LGRAY, WHITE, DGRAY, 0xDDDDDD, BLACK};
    for (int i = 0; i < 6; i++)
        DrawCircle(r.x + r.w / 2, r.y + r.h / 2, radius * (6 - i) / 6, colors[i]);
}

void borders(const irect &r) {
    constexpr int styles[] = {ROUND_ALL,  ROUND_TOP,       ROUND_DOWN,
                              ROUND_LEFT, ROUND_TOP_RIGHT, ROUND_BOTTOM_LEFT};
    for (int i = 0; i < 6; i++) {
        const irect cell = grid_cell(r, 3, 2, i, 2 * unit());
        DrawBorder(&cell, 3 * unit() / 4, styles[i], 2 * unit(), BLACK);
    }
}

void hatches(const irect &r) {
    constexpr int steps[] = {3, 6, 12};
    for (int i = 0; i < 3; i++) {
        const irect cell = grid_cell(r, 3, 1, i, 2 * unit());
        DrawDiagonalHatch(cell.x, cell.y, cell.w, cell.h, steps[i], BLACK);
        DrawRect(cell.x, cell.y, cell.w, cell.h, BLACK);
    }
}

// The corners of a moon cut out of the hatch.
irect eye;
int in_eye(int x, int y) {
    const long long dx = x - eye.x, dy = y - eye.y;
    return dx * dx + dy * dy < 1LL * eye.w * eye.w;
}

void hatch_with_limits(const irect &r) {
    eye = iRect(r.x + r.w / 2, r.y + r.h / 2, std::min(r.w, r.h) / 3, 0, 0);
    DrawDiagonalHatchLimits(r.x, r.y, r.w, r.h, 4, BLACK, in_eye);
    DrawRect(r.x, r.y, r.w, r.h, BLACK);
}

void dimmed(const irect &r) {
    greys(r);
    DimArea(r.x, r.y + r.h / 3, r.w, r.h / 3, WHITE);
}

void inverted(const irect &r) {
    discs(r);
    InvertArea(r.x + r.w / 2, r.y, r.w - r.w / 2, r.h);
}

void selections(const irect &r) {
    for (int i = 0; i < 4; i++) {
        const irect cell = grid_cell(r, 2, 2, i, 2 * unit());
        if (i == 1) FillArea(cell.x + 4, cell.y + 4, cell.w - 8, cell.h - 8, LGRAY);
        if (i % 2 == 0) {
            DrawSelection(cell.x, cell.y, cell.w, cell.h, i == 0 ? BLACK : DGRAY);
        } else {
            DrawRectRound(cell.x, cell.y, cell.w, cell.h, BLACK, RECT_ROUND_BL | RECT_ROUND_BR);
        }
    }
}

void clipped(const irect &r) {
    for (int i = 0; i < 15; i++) {
        const kelvane::ClipGuard cell(grid_cell(r, 5, 3, i, unit()));
        DrawCircle(r.x + r.w / 2, r.y + r.h / 2, r.h / 2, BLACK);
        for (int ray = 0; ray <= 24; ray++)
            DrawLine(r.x + r.w * ray / 24, r.y, r.x + r.w - r.w * ray / 24, r.y + r.h, DGRAY);
    }
}

// A moiré of stepped lines.
void stepped(const irect &r) {
    for (int y = 0; y < r.h; y += 3)
        DrawLineEx(r.x, r.y + y, r.x + r.w - 1, r.y + y, BLACK, 2 + y * 10 / std::max(1, r.h));
}

struct Cell {
    const char *name;
    void (*draw)(const irect &r);
};

constexpr Cell cells[] = {
    {"Fill area", greys},      {"Line", lines},      {"Dash line", dashes},
    {"Circle", discs},         {"Border", borders},  {"Diagonal hatch", hatches},
    {"Invert area", inverted}, {"Dim area", dimmed}, {"Hatch with limits", hatch_with_limits},
    {"Selection", selections}, {"Clip", clipped},    {"Stepped lines", stepped},
};

void draw(const irect &area) {
    const bool upright = area.h > area.w;
    const int columns = upright ? 3 : 4, rows = int(std::size(cells)) / columns;
    const int caption = 5 * unit();
    for (int i = 0; i < int(std::size(cells)); i++) {
        irect cell = grid_cell(area, columns, rows, i, 5 * unit());
        draw_text(cell.x, cell.y, cells[i].name, {});
        cell.y += caption;
        cell.h -= caption;
        cells[i].draw(cell);
    }
}

int handle(int, int, int, const irect &) {
    return 0;
}

} // namespace

const Page shapes_page = {"Shapes", "Greys and drawing primitives", draw, handle, nullptr};
