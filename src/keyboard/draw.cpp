// SPDX-License-Identifier: MIT
// Draws the sheet, its keys and its buttons.
#include "keyboard/draw.h"

#include <algorithm>

#include "kelvane/frames.h"
#include "kelvane/keyboard.h"
#include "kelvane/languages.h"
#include "kelvane/text.h"
#include "modal/input.h"
#include "raster/screen_scope.h"
#include "text/font_scope.h"

namespace keyboard {
namespace {

constexpr int line_flags = VALIGN_MIDDLE | TEXT_DOTS | TEXT_RTL_MIRROR;

bool is_special(uint16_t key) {
    return key < code::space && key != code::wide_space;
}

bool is_shift_on(const Board &b, uint16_t key) {
    return (key == code::shift && b.shift == Shift::upper) ||
           (key == code::numbers && b.shift == Shift::numbers);
}

// For fingers Enter is a button, which is inverted instead.
bool is_inverted_key(const Board &b, uint16_t key) {
    return b.way == Way::keys && key == code::enter && (b.flags & KBD_INVERTED_ENTER_KEY);
}

Face face_of(const Board &b, uint16_t key, bool is_pressed) {
    if (is_pressed != is_inverted_key(b, key) || is_shift_on(b, key)) return Face::pressed;
    return is_special(key) ? Face::special : Face::plain;
}

void draw_key(const Board &b, const irect &r, uint16_t key, bool is_pressed,
              const text::FontPtr &letters) {
    const Face face = face_of(b, key, is_pressed);
    FillAreaRect(&r, WHITE);
    draw_face(b.look, r, face);
    draw_legend(b, r, key, face == Face::pressed, letters);
}

// A letter for five keys has no face until it is selected.
void draw_grid_key(const Board &b, const GridKey &key) {
    const irect r = grid_rect(b, key);
    const GridKey *selected = b.grid->key();
    const bool is_selected = selected && selected->column == key.column && selected->row == key.row;
    if (key.row == command_row || is_selected)
        draw_key(b, r, key.code, is_selected, b.look.low_letter);
    else
        draw_legend(b, r, key.code, false, b.look.low_letter);
}

void draw_grid_area(const Board &b, const Area &area) {
    const irect r = area_rect(b, area);
    FillAreaRect(&r, WHITE);
    for (const GridKey &key : area.keys) draw_grid_key(b, key);
    const bool is_commands = area.keys.front().row == command_row;
    if (&area == &b.grid->area() && !is_commands)
        DrawBorder(&r, b.look.border, ROUND_ALL, b.look.radius / 2, BLACK);
}

void draw_grid(const Board &b) {
    for (const GridKey &key : b.grid->keys()) draw_grid_key(b, key);
    draw_grid_area(b, b.grid->area());
}

void draw_all_keys(const Board &b) {
    if (b.way == Way::keys) return draw_grid(b);
    for (const TouchKey &key : b.touch.keys)
        draw_key(b, touch_rect(b, key), key.code, false, b.look.letter);
}

// The first and the last button follow the curve of the frame.
void fill_button(const Board &b, int index, int color) {
    const irect &r = b.place.buttons[static_cast<size_t>(index)];
    const int corner = std::clamp(b.look.radius - b.look.border, 0, std::min(r.w, r.h) / 2);
    const bool is_last = index + 1 == static_cast<int>(b.buttons.size());
    modal::fill_button(r, index == 0 ? corner : 0, is_last ? corner : 0, color);
}

void draw_button_on_screen(const Board &b, int index, bool is_pressed) {
    const Button &button = b.buttons[static_cast<size_t>(index)];
    const irect &r = b.place.buttons[static_cast<size_t>(index)];
    const bool is_inverted = button.code == code::enter && (b.flags & KBD_INVERTED_ENTER_KEY);
    const bool is_black = is_pressed != is_inverted;
    fill_button(b, index, is_black ? BLACK : WHITE);
    if (index > 0) FillArea(r.x, r.y, b.look.hairline, r.h, BLACK);
    const text::FontScope font;
    SetFont(b.look.title.get(), is_black ? WHITE : BLACK);
    const int margin = 2 * b.look.unit;
    DrawTextRect(r.x + margin, r.y, std::max(r.w - 2 * margin, 1), r.h, button.label.c_str(),
                 ALIGN_CENTER | line_flags);
}

void draw_title(const Board &b) {
    const irect &r = b.place.title;
    if (r.w < 1) return;
    const text::FontScope font(b.look.title.get());
    DrawTextRect(r.x, r.y, r.w, r.h, b.title.c_str(), ALIGN_LEFT | line_flags);
}

void draw_sheet(const Board &b) {
    const Place &p = b.place;
    FillAreaRect(&p.whole, WHITE);
    draw_title(b);
    if (p.entry.w > 0) DrawBorder(&p.entry, b.look.border, ROUND_ALL, b.look.radius / 2, BLACK);
    if (!b.buttons.empty()) FillArea(p.frame.x, p.rule_y, p.frame.w, 2 * b.look.hairline, BLACK);
    for (size_t i = 0; i < b.buttons.size(); ++i)
        draw_button_on_screen(b, static_cast<int>(i), false);
    DrawBorder(&p.frame, b.look.border, ROUND_ALL, b.look.radius, BLACK);
}

} // namespace

irect touch_rect(const Board &b, const TouchKey &key) {
    return b.place.key(key.pos.x, key.pos.y, key.pos.w);
}

irect grid_rect(const Board &b, const GridKey &key) {
    if (key.row < command_row) return b.place.key(key.column, key.row - b.first_row(), 1);
    const auto &keys = b.grid->keys();
    const auto first = std::find_if(keys.begin(), keys.end(),
                                    [](const GridKey &k) { return k.row == command_row; });
    const auto own =
        std::find_if(first, keys.end(), [&](const GridKey &k) { return k.column == key.column; });
    return b.place.command(static_cast<int>(own - first), static_cast<int>(keys.end() - first),
                           command_row - b.first_row());
}

irect area_rect(const Board &b, const Area &area) {
    irect all = grid_rect(b, area.keys.front());
    int right = all.x + all.w, bottom = all.y + all.h;
    for (const GridKey &key : area.keys) {
        const irect r = grid_rect(b, key);
        all.x = std::min(all.x, r.x);
        all.y = std::min(all.y, r.y);
        right = std::max(right, r.x + r.w);
        bottom = std::max(bottom, r.y + r.h);
    }
    all.w = right - all.x;
    all.h = bottom - all.y;
    return all;
}

void draw_board(const Board &b) {
    const raster::ScreenScope screen;
    draw_sheet(b);
    draw_all_keys(b);
}

void draw_keys(const Board &b) {
    const raster::ScreenScope screen;
    const irect &keys = b.place.keys;
    const int left = b.place.frame.x + b.look.border;
    FillArea(left, keys.y, b.place.frame.w - 2 * b.look.border, keys.h, WHITE);
    draw_all_keys(b);
}

void draw_touch_key(const Board &b, const TouchKey &key, bool is_pressed) {
    const raster::ScreenScope screen;
    draw_key(b, touch_rect(b, key), key.code, is_pressed, b.look.letter);
}

void draw_button(const Board &b, int index, bool is_pressed) {
    const raster::ScreenScope screen;
    draw_button_on_screen(b, index, is_pressed);
}

void draw_area(const Board &b, const Area &area) {
    const raster::ScreenScope screen;
    draw_grid_area(b, area);
}

void draw_hint(const Board &b, const irect &at, uint16_t letter) {
    const raster::ScreenScope screen;
    FillAreaRect(&at, WHITE);
    DrawBorder(&at, b.look.border, ROUND_ALL, b.look.radius / 2, BLACK);
    draw_legend(b, at, letter, false, b.look.letter);
}

} // namespace keyboard
