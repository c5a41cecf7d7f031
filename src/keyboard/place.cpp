// SPDX-License-Identifier: MIT
// Stacks the parts from the title down to the buttons.
#include "keyboard/place.h"

#include <algorithm>

#include "keyboard/layout.h"

namespace keyboard {
namespace {

// In units.
constexpr int title_h = 11, untitled_h = 3, entry_h = 13, above_keys = 3, below_keys = 2;
constexpr int finger_row = 14, landscape_row = 11, dense_row = 12, keys_row = 10;
constexpr int dense_from = 6; // rows
constexpr int button_h = 12, side = 3, sides = 5;

int row_units(const Measures &m) {
    if (m.way == Way::keys) return keys_row;
    if (m.screen.w > m.screen.h) return landscape_row;
    return m.rows >= dense_from ? dense_row : finger_row;
}

int rule_of(const Measures &m) {
    return m.buttons > 0 ? 2 * m.hairline : 0;
}

// The row of commands belongs to the keys.
int commands_h(const Measures &m) {
    return m.way == Way::keys ? finger_row * m.unit : 0;
}

// What is there beside the rows of keys.
int rest_h(const Measures &m) {
    const int u = m.unit;
    return 2 * u + m.border + (m.has_title ? title_h : untitled_h) * u +
           (m.has_entry ? (entry_h + above_keys) * u : 0) + commands_h(m) + below_keys * u +
           rule_of(m) + (m.buttons > 0 ? button_h * u : m.border);
}

void place_buttons(const Measures &m, Place &p) {
    if (m.buttons == 0) return;
    const int left = p.frame.x + m.border, right = p.frame.x + p.frame.w - m.border;
    const int top = p.rule_y + rule_of(m), bottom = p.frame.y + p.frame.h - m.border;
    for (int i = 0; i < m.buttons; ++i) {
        const int x = left + (right - left) * i / m.buttons;
        const int end = left + (right - left) * (i + 1) / m.buttons;
        p.buttons.push_back({x, top, end - x, std::max(bottom - top, 1), 0});
    }
}

void place_rows(const Measures &m, int room, Place &p) {
    const int rows = std::max(m.rows, 1);
    p.gap = m.unit;
    p.sides = sides * m.unit;
    p.row_h = std::max(std::min(row_units(m) * m.unit, room / rows), 2);
    p.key_h = std::max(p.row_h - p.gap, 1);
    p.keys.h = p.row_h * m.rows + commands_h(m);
    p.spread(m.way == Way::keys ? block_columns : m.columns, m.way);
}

} // namespace

Place place_keyboard(const Measures &m) {
    const int u = m.unit, rest = rest_h(m);
    const int room = std::max(m.screen.foot - rest, 0);
    Place p{};
    p.whole.w = m.screen.w;
    place_rows(m, room, p);
    const int h = rest + p.row_h * m.rows;
    const int top = std::max(m.screen.foot - h, 0);
    p.whole = {0, top, m.screen.w, std::min(h, m.screen.h), 0};
    p.frame = {0, top + 2 * u, m.screen.w, h - 2 * u, 0};
    int y = p.frame.y + m.border;
    if (m.has_title) p.title = {side * u, y, m.screen.w - 2 * side * u, title_h * u, 0};
    y += (m.has_title ? title_h : untitled_h) * u;
    if (m.has_entry) {
        p.entry = {side * u, y, m.screen.w - 2 * side * u, entry_h * u, 0};
        y += (entry_h + above_keys) * u;
    }
    p.keys.y = y;
    p.rule_y = y + p.keys.h + below_keys * u;
    place_buttons(m, p);
    return p;
}

void Place::spread(int columns, Way way) {
    unit_w = std::max((whole.w - sides) / std::max(columns, 1), 2);
    keys.w = unit_w * std::max(columns, 1) - (way == Way::finger ? gap : 0);
    keys.x = (whole.w - keys.w) / 2;
}

void Place::fill(int columns, int rows) {
    spread(columns, Way::finger);
    row_h = std::max(keys.h / std::max(rows, 1), 2);
    key_h = std::max(row_h - gap, 1);
}

irect Place::key(int column, int row, int width) const {
    return {keys.x + column * unit_w, keys.y + row * row_h, std::max(width * unit_w - gap, 1),
            key_h, 0};
}

irect Place::command(int index, int count, int row) const {
    const int left = keys.x + keys.w * index / count;
    const int right = keys.x + keys.w * (index + 1) / count;
    const int y = keys.y + row * row_h, h = std::max(keys.y + keys.h - y - gap, 1);
    return {left, y, std::max(right - left - gap, 1), h, 0};
}

} // namespace keyboard
