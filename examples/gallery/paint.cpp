// SPDX-License-Identifier: MIT
// Finger painting: the fastest updates while the finger moves, one grey update when it lifts.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <vector>

#include "lettering.h"
#include "page.h"

namespace {

// One piece of a stroke, in pixels from the corner of the paper.
struct Piece {
    int16_t x1, y1, x2, y2;
    int16_t radius;
    int color;
};

constexpr size_t most_pieces = 4000;
constexpr int colors[] = {BLACK, DGRAY, LGRAY, WHITE};
constexpr int color_count = int(std::size(colors)), size_count = 3;

std::vector<Piece> painting;
int color = 0, size = 1;
bool painting_now = false;
int last_x = 0, last_y = 0;

enum : int { clear_tool = color_count + size_count, tool_count };

irect tool_area(const irect &area, int index) {
    return grid_cell(iRect(area.x, area.y, area.w, 12 * unit(), 0), tool_count, 1, index, unit());
}

irect paper_area(const irect &area) {
    return iRect(area.x, area.y + 14 * unit(), area.w, area.h - 14 * unit(), 0);
}

int brush(int index) {
    return unit() * (1 + index * index) / 2;
}

void draw_tool(const irect &area, int index) {
    const irect r = tool_area(area, index);
    FillAreaRect(&r, WHITE);
    if (index < color_count) {
        FillArea(r.x + 2 * unit(), r.y + 2 * unit(), r.w - 4 * unit(), r.h - 4 * unit(),
                 colors[index]);
        DrawRect(r.x + 2 * unit(), r.y + 2 * unit(), r.w - 4 * unit(), r.h - 4 * unit(), BLACK);
    } else if (index < clear_tool) {
        DrawCircle(r.x + r.w / 2, r.y + r.h / 2, brush(index - color_count), BLACK);
    } else {
        draw_text(r.x + r.w / 2, r.y + (r.h - capital_height(size_of(Type::small))) / 2, "Clear",
                  {.bold = true}, Align::centre);
    }
    const bool active = index == color || index == color_count + size;
    if (active) {
        DrawBorder(&r, unit(), ROUND_ALL, 2 * unit(), BLACK);
    } else if (index == clear_tool) {
        DrawBorder(&r, 3 * unit() / 4, ROUND_ALL, 2 * unit(), BLACK);
    }
}

void draw_piece(const irect &paper, const Piece &p) {
    const int steps = std::max({std::abs(p.x2 - p.x1), std::abs(p.y2 - p.y1), 1});
    const int stride = std::max(1, p.radius / 2);
    for (int i = 0; i < steps + stride; i += stride) {
        const int at = std::min(i, steps);
        DrawCircle(paper.x + p.x1 + (p.x2 - p.x1) * at / steps,
                   paper.y + p.y1 + (p.y2 - p.y1) * at / steps, p.radius, p.color);
    }
}

irect inner(const irect &paper) {
    return iRect(paper.x + 1, paper.y + 1, paper.w - 2, paper.h - 2, 0);
}

void draw_paper(const irect &paper) {
    FillAreaRect(&paper, WHITE);
    DrawRect(paper.x, paper.y, paper.w, paper.h, BLACK);
    const kelvane::ClipGuard sheet(inner(paper));
    for (const Piece &p : painting) draw_piece(paper, p);
}

void draw(const irect &area) {
    for (int i = 0; i < tool_count; i++) draw_tool(area, i);
    draw_paper(paper_area(area));
}

void stroke_to(const irect &paper, int x, int y) {
    if (painting.size() == most_pieces) painting.erase(painting.begin());
    painting.push_back({int16_t(last_x - paper.x), int16_t(last_y - paper.y), int16_t(x - paper.x),
                        int16_t(y - paper.y), int16_t(brush(size)), colors[color]});
    {
        const kelvane::ClipGuard sheet(inner(paper));
        draw_piece(paper, painting.back());
    }
    const int reach = brush(size) + 1;
    DynamicUpdateA2(std::max(0, std::min(x, last_x) - reach),
                    std::max(0, std::min(y, last_y) - reach), std::abs(x - last_x) + 2 * reach,
                    std::abs(y - last_y) + 2 * reach);
    last_x = x;
    last_y = y;
}

void end_stroke(const irect &paper) {
    painting_now = false;
    PartialUpdate(paper.x, paper.y, paper.w, paper.h);
}

void use_tool(const irect &area, int tool) {
    if (tool < color_count) color = tool;
    if (tool >= color_count && tool < clear_tool) size = tool - color_count;
    if (tool == clear_tool) painting.clear();
    draw(area);
    PartialUpdate(area.x, area.y, area.w, area.h);
}

int pointer_down(int x, int y, const irect &area) {
    for (int i = 0; i < tool_count; i++) {
        if (inside(tool_area(area, i), x, y)) {
            use_tool(area, i);
            return 1;
        }
    }
    if (!inside(paper_area(area), x, y)) return 0;
    painting_now = true;
    last_x = x;
    last_y = y;
    stroke_to(paper_area(area), x, y);
    return 1;
}

int handle(int type, int par1, int par2, const irect &area) {
    switch (type) {
    case EVT_POINTERDOWN:
        return pointer_down(par1, par2, area);
    case EVT_POINTERMOVE:
        if (painting_now) stroke_to(paper_area(area), par1, par2);
        return painting_now;
    case EVT_POINTERUP:
        if (!painting_now) return 0;
        end_stroke(paper_area(area));
        return 1;
    default:
        return 0;
    }
}

void leave() {
    painting_now = false;
    ExitUpdateA2();
}

} // namespace

const Page paint_page = {"Paint", "Draw with a finger, or with the left mouse button", draw, handle,
                         leave};
