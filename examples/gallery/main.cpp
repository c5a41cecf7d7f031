// SPDX-License-Identifier: MIT
// The gallery: what the library draws, shows and hears, a page each.
//
// PREV and NEXT, a swipe or a tap on the strip at the bottom turn the pages; MENU, or the window's
// "Orientation" menu, turns the screen; BACK ends. For random input `--stay` keeps BACK from ending
// it, and `--stay Boxes` keeps it on that page.
#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <numeric>

#include <kelvane.hpp>

#include "lettering.h"
#include "page.h"

namespace {

constexpr std::array pages = {&shapes_page,  &pictures_page, &text_page,       &prose_page,
                              &updates_page, &paint_page,    &events_page,     &boxes_page,
                              &menus_page,   &form_page,     &dictionary_page, &lists_page,
                              &settings_page};
constexpr int count = int(pages.size());
// Every so many turned pages one flash clears the ghosts of the former ones.
constexpr int turns_per_flash = 4;

int current = 0;
int first_tab = 0, tabs = 0;     // in the strip
std::array<int, count> tab_ends; // of those
int turns = 0;
bool pressed = false;
bool stay = false;         // BACK does not end the gallery
bool stay_on_page = false; // and nothing turns the page
int down_x = 0, down_y = 0;

// The left edge of everything.
int margin() {
    return 6 * unit();
}

irect strip_area() {
    return iRect(0, ScreenHeight() - PanelHeight() - 12 * unit(), ScreenWidth(), 12 * unit(), 0);
}

irect body_area() {
    const int top = 19 * unit();
    return iRect(margin(), top, ScreenWidth() - 2 * margin(), strip_area().y - top - 3 * unit(), 0);
}

void draw_title() {
    const Ink heading = {.size = size_of(Type::title), .bold = true};
    draw_text(margin(), 4 * unit(), pages[size_t(current)]->title, heading);
    draw_text(margin(), 11 * unit(), pages[size_t(current)]->hint, {});
}

// As many as there is room for, with the current one as near to the middle as may be.
void choose_tabs(const std::array<int, count> &widths) {
    const int gap = 3 * unit();
    int used = widths[size_t(current)] + gap;
    first_tab = current;
    tabs = 1;
    for (bool grew = true; grew;) {
        grew = false;
        for (const int next : {first_tab + tabs, first_tab - 1}) {
            if (next < 0 || next >= count) continue;
            if (used + widths[size_t(next)] + gap > ScreenWidth()) continue;
            used += widths[size_t(next)] + gap;
            first_tab = std::min(first_tab, next);
            tabs++;
            grew = true;
        }
    }
}

// Each tab is as wide as its title asks, with the same room beside all titles.
void lay_out_tabs() {
    std::array<int, count> widths{};
    for (size_t i = 0; i < count; i++) widths[i] = text_width(pages[i]->title, {.bold = true});
    choose_tabs(widths);
    const auto first = widths.begin() + first_tab;
    const int room = ScreenWidth() - std::accumulate(first, first + tabs, 0);
    int titles = 0;
    for (int i = 0; i < tabs; i++) {
        titles += first[i];
        tab_ends[size_t(first_tab) + size_t(i)] = titles + room * (i + 1) / tabs;
    }
}

irect tab_area(int index) {
    const irect strip = strip_area();
    const int left = index > first_tab ? tab_ends[size_t(index) - 1] : 0;
    return iRect(left, strip.y, tab_ends[size_t(index)] - left, strip.h, 0);
}

void draw_strip() {
    lay_out_tabs();
    const irect strip = strip_area();
    FillArea(strip.x, strip.y, strip.w, hairline(), BLACK);
    for (int i = first_tab; i < first_tab + tabs; i++) {
        const irect tab = tab_area(i);
        const bool selected = i == current;
        if (selected) FillArea(tab.x, tab.y, tab.w, unit(), BLACK);
        const Ink ink = {.bold = selected};
        draw_text(tab.x + tab.w / 2, tab.y + (tab.h - capital_height(ink.size)) / 2,
                  pages[size_t(i)]->title, ink, Align::centre);
    }
}

// One page shows the status panel, and its own number in it.
void choose_panel() {
    const bool wanted = pages[size_t(current)] == &settings_page;
    SetPanelMode(wanted ? PANEL_ON : PANEL_BY_THEME);
    SetPanelText("Gallery");
    SetPanelPages(current + 1, count);
}

void draw() {
    choose_panel();
    ClearScreen();
    draw_title();
    pages[size_t(current)]->draw(body_area());
    draw_strip();
}

void turn_to(int page) {
    if (page < 0 || page >= count || page == current || stay_on_page) return;
    if (pages[size_t(current)]->leave) pages[size_t(current)]->leave();
    current = page;
    draw();
    if (++turns % turns_per_flash == 0) {
        FullUpdate();
    } else {
        SoftUpdate();
    }
}

void turn_screen(int orientation) {
    SetOrientation(orientation);
    Repaint();
}

// The next orientation clockwise: 0 upright, 1 by 90 degrees, 3 by 180, 2 by 270.
int next_orientation() {
    constexpr int next[] = {1, 3, 0, 2};
    return next[GetOrientation() & 3];
}

int key_pressed(int key) {
    switch (key) {
    case KEY_BACK:
        if (!stay) CloseApp();
        return 1;
    case KEY_PREV:
    case KEY_PREV2:
    case KEY_LEFT:
        turn_to(current - 1);
        return 1;
    case KEY_NEXT:
    case KEY_NEXT2:
    case KEY_RIGHT:
        turn_to(current + 1);
        return 1;
    case KEY_HOME:
        turn_to(0);
        return 1;
    case KEY_MENU:
        turn_screen(next_orientation());
        return 1;
    default:
        return 0;
    }
}

int tab_at(int x, int y) {
    for (int i = first_tab; i < first_tab + tabs; i++)
        if (inside(tab_area(i), x, y)) return i;
    return -1;
}

// A tap on the strip, or a swipe that is longer than a fifth of the width and rather flat.
int pointer_released(int x, int y) {
    if (!pressed) return 0;
    pressed = false;
    const int dx = x - down_x, dy = y - down_y;
    const int tab = tab_at(down_x, down_y);
    if (tab >= 0) {
        if (tab_at(x, y) == tab) turn_to(tab);
    } else if (std::abs(dx) > ScreenWidth() / 5 && std::abs(dx) > 2 * std::abs(dy)) {
        turn_to(dx < 0 ? current + 1 : current - 1);
    }
    return 1;
}

int handler(int type, int par1, int par2) {
    note_event(type, par1, par2);
    if (type == EVT_SHOW) {
        draw();
        FullUpdate();
        return 1;
    }
    if (type == EVT_ORIENTATION) {
        turn_screen(par1);
        return 1;
    }
    if (pages[size_t(current)]->handle(type, par1, par2, body_area())) return 1;
    switch (type) {
    case EVT_KEYPRESS:
        return key_pressed(par1);
    case EVT_POINTERDOWN:
        pressed = true;
        down_x = par1;
        down_y = par2;
        return 1;
    case EVT_POINTERUP:
        return pointer_released(par1, par2);
    default:
        return 0;
    }
}

} // namespace

const Page &current_page() {
    return *pages[size_t(current)];
}

int unit() {
    return GetThemeInt("unit.size", 4);
}

int hairline() {
    return GetThemeInt("separator.size", 1);
}

irect grid_cell(const irect &area, int columns, int rows, int index, int gap) {
    const int column = index % columns, row = index / columns;
    const int left = (area.w + gap) * column / columns, top = (area.h + gap) * row / rows;
    return iRect(area.x + left, area.y + top, (area.w + gap) * (column + 1) / columns - gap - left,
                 (area.h + gap) * (row + 1) / rows - gap - top, 0);
}

int main(int argc, char **argv) {
    stay = argc > 1 && std::strcmp(argv[1], "--stay") == 0;
    for (int i = 0; argc > 2 && i < count; i++) {
        if (std::strcmp(argv[2], pages[size_t(i)]->title) != 0) continue;
        current = i;
        stay_on_page = true;
    }
    return kelvane::run(handler);
}
