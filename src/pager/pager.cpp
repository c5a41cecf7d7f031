// SPDX-License-Identifier: MIT
// The strip with the page counter and the arrows of a touch screen.
#include "pager/pager.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <optional>

#include "chrome/panel.h"
#include "hw.h"
#include "kelvane/events.h"
#include "kelvane/pager.h"
#include "kelvane/theme.h"
#include "kelvane/updates.h"
#include "modal/input.h"
#include "raster/box.h"
#include "text/font_scope.h"

namespace {

using namespace raster;

constexpr int hatch_step = 3;

std::optional<ipager> standard_pager; // of the theme's properties
bool press_pending = false;           // an arrow's area is hatched

int64_t separator(const ipager &p) {
    return p.separator_size;
}

Box left_area(const ipager &p, const Box &at) {
    return {at.x + separator(p), at.y, p.left_width, at.h};
}
Box page_area(const ipager &p, const Box &at) {
    return {at.x + p.left_width + 2 * separator(p), at.y, p.page_width, at.h};
}
Box right_area(const ipager &p, const Box &at) {
    return {at.x + p.left_width + int64_t{p.page_width} + 3 * separator(p), at.y, p.rigth_width,
            at.h};
}

bool has_previous(const ipager &p) {
    return p.current_page > 1;
}
bool has_next(const ipager &p) {
    return p.current_page < p.total_pages;
}

void draw_icon(const Box &area, const ibitmap *icon) {
    if (!icon) return;
    DrawBitmap(saturated(area.x + (area.w - icon->width) / 2),
               saturated(area.y + (area.h - icon->height) / 2), icon);
}

void draw_counter(const ipager &p, const Box &area) {
    char text[20];
    std::snprintf(text, sizeof text, "%d / %d", p.current_page, p.total_pages);
    const text::FontScope font(p.page_font);
    const irect r = to_rect(area, ALIGN_CENTER | VALIGN_MIDDLE);
    DrawTextRect2(&r, text);
}

// Dotted columns before x, as many as the separator is thick.
void draw_separator(const ipager &p, const Box &at, int64_t x) {
    const icanvas *c = GetCanvas();
    const int64_t end = c ? std::min<int64_t>(x + p.separator_size, c->width) : x;
    for (int64_t column = std::max<int64_t>(x, 0); column < end; ++column)
        DrawLineEx(static_cast<int>(column), saturated(at.y + 3), static_cast<int>(column),
                   saturated(at.y + at.h - 3), BLACK, 2);
}

void draw_separators(const ipager &p, const Box &at) {
    const irect top = to_rect({0, at.y, ScreenWidth(), p.separator_size});
    DimArea(top.x, top.y, top.w, top.h, BLACK);
    draw_separator(p, at, at.x);
    draw_separator(p, at, page_area(p, at).x - separator(p));
    draw_separator(p, at, right_area(p, at).x - separator(p));
    draw_separator(p, at, right_area(p, at).x + p.rigth_width);
}

void redraw(ipager &p, const Box &at) {
    DrawPager(&p);
    modal::update(at);
}

// Shows that an arrow is pressed.
void press(const ipager &p, Box area) {
    area.y += p.separator_size;
    area.h -= p.separator_size;
    modal::draw_pressed(area, hatch_step);
    WaitForUpdateComplete();
    ++area.w; // the hatch reaches one column further
    modal::update(area);
    press_pending = true;
}

// Shows the pager as it was and sends the key of the arrow under the finger, if any.
void release(ipager &p, const Box &at, int x, int y) {
    const bool left = contains(left_area(p, at), x, y), right = contains(right_area(p, at), x, y);
    press_pending = false;
    redraw(p, at);
    if (left || right) modal::send_key(EVT_KEYPRESS, left ? KEY_PREV : KEY_NEXT);
}

} // namespace

namespace pager {

void reset() {
    if (standard_pager) {
        CloseFont(standard_pager->page_font);
        std::free(standard_pager->icon_left);
        std::free(standard_pager->icon_right);
    }
    standard_pager.reset();
    press_pending = false;
}

} // namespace pager

void UpdatePager(ipager *p) {
    if (!p) return;
    const int64_t width =
        int64_t{p->left_width} + p->page_width + p->rigth_width + 4 * separator(*p);
    const int64_t centred = (ScreenWidth() - width) / 2;
    const int64_t y = int64_t{ScreenHeight()} - PanelHeight() - p->height;
    p->position = to_rect({std::max<int64_t>(p->indent_horizontal, centred), y, width, p->height});
    p->orientation = GetOrientation();
}

irect GetPagerRect(ipager *p) {
    if (!p) {
        if (!standard_pager) standard_pager = LoadPagerProperties();
        p = &*standard_pager;
    }
    const bool is_empty = p->position.w < 1 || p->position.h < 1;
    if (is_empty || p->orientation != GetOrientation()) UpdatePager(p);
    return p->position;
}

int GetPagerHeight(ipager *p) {
    return p && device_touchpanel() != 0 ? GetPagerRect(p).h : 0;
}

void DrawPager(ipager *p) {
    if (!p || p->height < 1) return;
    const irect position = GetPagerRect(p);
    FillAreaRect(&position, WHITE);
    const Box at(position);
    if (has_previous(*p)) draw_icon(left_area(*p, at), p->icon_left);
    if (has_next(*p)) draw_icon(right_area(*p, at), p->icon_right);
    draw_counter(*p, page_area(*p, at));
    draw_separators(*p, at);
}

int IsPagerEvent(ipager *p, int type, int x, int y) {
    if (!p || p->height < 1 || !modal::is_pointer_event(type) || device_touchpanel() == 0) return 0;
    const Box at(GetPagerRect(p));
    return contains({at.x, at.y, at.w + 1, at.h + 1}, x, y) ? 1 : 0;
}

int PagerHandler(ipager *p, int type, int x, int y) {
    if (IsPagerEvent(p, type, x, y) == 0) return 0;
    const Box at(GetPagerRect(p)), left = left_area(*p, at), right = right_area(*p, at);
    switch (type) {
    case EVT_POINTERDOWN:
        if (has_previous(*p) && contains(left, x, y)) press(*p, left);
        if (has_next(*p) && contains(right, x, y)) press(*p, right);
        break;
    case EVT_POINTERDRAG:
        if (press_pending) redraw(*p, at);
        press_pending = false;
        break;
    case EVT_POINTERUP:
        if (press_pending) release(*p, at, x, y);
        break;
    }
    return 1;
}
