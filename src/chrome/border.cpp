// SPDX-License-Identifier: MIT
// Borders with square and round corners.
#include <array>
#include <cmath>
#include <cstdio>
#include <optional>

#include "chrome/chrome.h"
#include "kelvane/bitmaps.h"
#include "kelvane/frames.h"
#include "raster/box.h"
#include "theme/parameters.h"

namespace {

using namespace raster;
using theme::Picture;

struct RoundCorners {
    bool top_left, top_right, bottom_left, bottom_right;
};

RoundCorners round_corners(int style) {
    switch (style) {
    case ROUND_ALL:
        return {true, true, true, true};
    case ROUND_TOP:
        return {true, true, false, false};
    case ROUND_DOWN:
        return {false, false, true, true};
    case ROUND_LEFT:
        return {true, false, true, false};
    case ROUND_RIGHT:
        return {false, true, false, true};
    case ROUND_TOP_LEFT:
        return {true, false, false, false};
    case ROUND_TOP_RIGHT:
        return {false, true, false, false};
    case ROUND_BOTTOM_LEFT:
        return {false, false, true, false};
    case ROUND_BOTTOM_RIGHT:
        return {false, false, false, true};
    default:
        return {};
    }
}

// A quarter of a circle, one point a degree without the ones that repeat.
struct Arc {
    int radius = 0;
    int count = 0;
    std::array<int64_t, 90> x, y;
};

Arc make_arc(int radius) {
    Arc arc;
    arc.radius = radius;
    for (int degree = 0; degree < 90; ++degree) {
        const double angle = degree * M_PI / 180;
        const int64_t x = std::llround(std::cos(angle) * radius);
        const int64_t y = std::llround(std::sin(angle) * radius);
        const size_t n = static_cast<size_t>(arc.count);
        if (n > 0 && arc.x[n - 1] == x && arc.y[n - 1] == y) continue;
        arc.x[n] = x, arc.y[n] = y;
        ++arc.count;
    }
    return arc;
}

// Most borders share one radius, so the last arc is kept.
const Arc &arc_of(int radius) {
    static Arc last;
    if (last.radius != radius) last = make_arc(radius);
    return last;
}

// The pictures of round corners. They are asked for once, by the first border's colour; a theme
// that has not got all four gives computed arcs.
struct EdgePictures {
    Picture top_left, top_right, bottom_left, bottom_right;
    bool complete() const { return top_left && top_right && bottom_left && bottom_right; }
};
std::optional<EdgePictures> edges;

struct EdgeNames {
    const char *top_left, *top_right, *bottom_left, *bottom_right;
};
constexpr EdgeNames plain_edges{"edge_top_left", "edge_top_right", "edge_bottom_left",
                                "edge_bottom_right"};
constexpr EdgeNames white_edges{"edge_top_left_white", "edge_top_right_white",
                                "edge_bottom_left_white", "edge_bottom_right_white"};

EdgePictures load_edges(int color) {
    const EdgeNames &names = color == WHITE ? white_edges : plain_edges;
    return {Picture(names.top_left), Picture(names.top_right), Picture(names.bottom_left),
            Picture(names.bottom_right)};
}

void draw_bars(const Box &b, int64_t size, int64_t radius, const RoundCorners &round, int color) {
    const int64_t tl = round.top_left ? radius : 0, tr = round.top_right ? radius : 0;
    const int64_t bl = round.bottom_left ? radius : 0, br = round.bottom_right ? radius : 0;
    fill({b.x, b.y + tl, size, b.h - tl - bl}, color);
    fill({b.x + tl, b.y, b.w - tl - tr, size}, color);
    fill({b.x + b.w - size, b.y + tr, size, b.h - tr - br}, color);
    fill({b.x + bl, b.y + b.h - size, b.w - bl - br, size}, color);
}

void draw_arcs(const Box &b, int64_t size, int radius, const RoundCorners &round, int color) {
    const Arc &arc = arc_of(radius);
    const int64_t side = size - 1;
    for (size_t i = 0; i < static_cast<size_t>(arc.count); ++i) {
        const int64_t left = b.x + radius - arc.x[i] + 1;
        const int64_t right = b.x + b.w - radius + arc.x[i] - size;
        const int64_t top = b.y + radius - arc.y[i] + 1;
        const int64_t bottom = b.y + b.h - size - radius + arc.y[i];
        if (round.top_left) fill({left, top, side, side}, color);
        if (round.top_right) fill({right, top, side, side}, color);
        if (round.bottom_left) fill({left, bottom, side, side}, color);
        if (round.bottom_right) fill({right, bottom, side, side}, color);
    }
}

void draw_edge(int64_t x, int64_t y, const Picture &edge) {
    DrawBitmap(saturated(x), saturated(y), edge.get());
}

void draw_edges(const Box &b, int64_t size, int64_t radius, const RoundCorners &round) {
    const int64_t right = b.x + b.w - size - radius + 2, bottom = b.y + b.h - radius - 1;
    if (round.top_left) draw_edge(b.x + 1, b.y + 1, edges->top_left);
    if (round.top_right) draw_edge(right, b.y + 1, edges->top_right);
    if (round.bottom_left) draw_edge(b.x + 1, bottom, edges->bottom_left);
    if (round.bottom_right) draw_edge(right, bottom, edges->bottom_right);
}

// The lower corners of DrawRectRound().
struct SelectorPictures {
    Picture bottom_left{"frame_selector_bl"}, bottom_right{"frame_selector_br"};
};
std::optional<SelectorPictures> selector;

void refuse_corner(int flags, int flag, const char *name) {
    if ((flags & flag) != 0)
        std::fprintf(stderr, "%s() flag %s is not supported\n", "DrawRectRound", name);
}

} // namespace

namespace chrome {

void reset_borders() {
    edges.reset();
    selector.reset();
}

} // namespace chrome

void DrawBorder(const irect *r, int border_size, int style, int radius, int color) {
    if (!edges) edges = load_edges(color);
    if (!r || Box(*r).empty()) return;
    const Box box(*r);
    const RoundCorners round = radius < 1 ? RoundCorners{} : round_corners(style);
    draw_bars(box, border_size, radius, round, color);
    if (radius < 1) return;
    if (edges->complete())
        draw_edges(box, border_size, radius, round);
    else if (border_size > 1)
        draw_arcs(box, border_size, radius, round, color);
}

void DrawRectRound(int x, int y, int w, int h, int, int flags) {
    constexpr int64_t size = 5;
    refuse_corner(flags, RECT_ROUND_TL, "RECT_ROUND_TL");
    refuse_corner(flags, RECT_ROUND_TR, "RECT_ROUND_TR");
    if (!selector) selector.emplace();
    const Box b(x, y, w, h);
    if (b.empty()) return;
    static const Picture none;
    const Picture &left = (flags & RECT_ROUND_BL) != 0 ? selector->bottom_left : none;
    const Picture &right = (flags & RECT_ROUND_BR) != 0 ? selector->bottom_right : none;
    fill({b.x, b.y, size, b.h - left.height()}, BLACK);
    draw_edge(b.x, b.y + b.h - left.height(), left);
    fill({b.x + left.width(), b.y + b.h - size, b.w - left.width() - right.width(), size}, BLACK);
    draw_edge(b.x + b.w - right.width(), b.y + b.h - right.height(), right);
    fill({b.x + b.w - size, b.y, size, b.h - right.height()}, BLACK);
    fill({b.x, b.y, b.w, size}, BLACK);
}
