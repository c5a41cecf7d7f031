// SPDX-License-Identifier: MIT
// Finds a place on the side of the page where the word is not, and shares it among the panes.
#include "dictionary_view/place.h"

#include <algorithm>

#include "ground/number.h"

namespace dictionary_view {
namespace {

constexpr int share_percent = 60; // of the screen
constexpr int toolbar_units = 13, side_units = 3;
constexpr int left_tools = 3;
constexpr int least_units = 40; // of the height, before the word is covered

int saturated_sum(int a, int b) {
    return ground::saturated(int64_t{a} + b);
}

// The rows that the view takes: at the foot, or, when the word is there, at the top.
irect rows_beside(const Measures &m) {
    const int h = m.foot * share_percent / 100;
    const int word_end = saturated_sum(m.word.y, m.word.h);
    const bool is_word = m.word.w > 0 && m.word.h > 0 && word_end > 0 && m.word.y < m.foot;
    const irect at_foot{0, m.foot - h, m.screen_w, h, 0};
    if (!is_word || word_end <= at_foot.y) return at_foot;
    if (m.word.y >= h) return {0, 0, m.screen_w, h, 0};
    const int below = m.foot - word_end, above = m.word.y;
    if (std::max(below, above) < least_units * m.unit) return at_foot;
    if (below >= above) return {0, word_end, m.screen_w, below, 0};
    return {0, 0, m.screen_w, above, 0};
}

irect inside(const irect &r, int border) {
    return {r.x + border, r.y + border, std::max(r.w - 2 * border, 1),
            std::max(r.h - 2 * border, 1), 0};
}

void place_tools(const Measures &m, Place &p) {
    const int pitch = std::max(toolbar_units * m.unit, m.tool_w);
    const int margin = side_units * m.unit - (pitch - m.tool_w) / 2;
    const int right = static_cast<int>(tool_count) - left_tools;
    const int end = p.frame.x + p.frame.w - margin;
    for (int i = 0; i < static_cast<int>(tool_count); ++i) {
        const int x =
            i < left_tools ? margin + i * pitch : end - (right - (i - left_tools)) * pitch;
        p.tools[static_cast<size_t>(i)] = {x, p.toolbar.y, pitch, p.toolbar.h, 0};
    }
    const int from = margin + left_tools * pitch;
    p.name = {from, p.toolbar.y, std::max(end - right * pitch - from, 1), p.toolbar.h, 0};
}

void place_panes(const Measures &m, Place &p) {
    const irect &b = p.body;
    const int list_w = std::min(m.list_w, b.w * 2 / 5);
    p.row_h = m.row_h;
    p.rows = std::max((b.h - m.unit) / m.row_h, 1);
    p.list = {b.x, b.y + std::clamp(b.h - p.rows * m.row_h, 0, m.unit), list_w,
              std::min(p.rows * m.row_h, b.h), 0};
    p.divider = {b.x + list_w, b.y, m.hairline, b.h, 0};
    const int x = p.divider.x + m.hairline;
    p.article = {x, b.y, std::max(b.x + b.w - x, 1), b.h, 0};
}

void mirror(irect &r, int screen_w) {
    r.x = screen_w - r.x - r.w;
}

void mirror_all(Place &p, int screen_w) {
    for (irect *r : {&p.name, &p.list, &p.divider, &p.article}) mirror(*r, screen_w);
    for (irect &tool : p.tools) mirror(tool, screen_w);
}

} // namespace

Place place_view(const Measures &m) {
    Place p{};
    p.whole = rows_beside(m);
    const bool is_at_top = p.whole.y == 0;
    const int rim = std::min(m.rim, p.whole.h / 4);
    p.frame = p.whole;
    p.frame.y += is_at_top ? 0 : rim;
    p.frame.h -= rim;
    p.toolbar = inside(p.frame, m.border);
    p.toolbar.h = std::max(toolbar_units * m.unit, m.tool_h);
    p.rule = {p.toolbar.x, p.toolbar.y + p.toolbar.h, p.toolbar.w, m.rule, 0};
    const int top = p.rule.y + p.rule.h, foot = p.frame.y + p.frame.h - m.border;
    p.body = {p.toolbar.x, top, p.toolbar.w, std::max(foot - top, 1), 0};
    place_tools(m, p);
    place_panes(m, p);
    if (m.sides == Sides::mirrored) mirror_all(p, m.screen_w);
    return p;
}

} // namespace dictionary_view
