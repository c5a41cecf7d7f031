// SPDX-License-Identifier: MIT
// Draws menus row by row.
#include "menus/draw.h"

#include <algorithm>

#include "kelvane/frames.h"
#include "kelvane/languages.h"
#include "kelvane/text.h"
#include "menus/row.h"
#include "raster/box.h"
#include "raster/rects.h"
#include "raster/screen_scope.h"

namespace menus {
namespace {

bool is_shown(const Menu &menu, const Row &row) {
    return row.page == menu.level().page;
}

const Row *row_at(const Menu &menu, int row) {
    const Level &level = menu.level();
    if (row < 0 || row >= static_cast<int>(level.rows.size())) return nullptr;
    const Row &found = level.rows[static_cast<size_t>(row)];
    return is_shown(menu, found) ? &found : nullptr;
}

// Rows that lie on pages or under the edges are many in a long menu.
void draw_shown_rows(const Menu &menu) {
    const irect in = inside_of(menu);
    for (const Row &row : menu.level().rows) {
        const irect r = menu.row_rect(row);
        const int end = r.y + r.h + menu.look->separator_h();
        if (is_shown(menu, row) && end > in.y && r.y < in.y + in.h)
            draw_row(menu, row, Ground::white);
    }
}

// On the side away from where lines begin, below the title.
void draw_scroll_bar(const Menu &menu) {
    const Level &level = menu.level();
    if (!level.is_paged()) return;
    const Look &look = *menu.look;
    const irect in = inside_of(menu);
    const int head = level.title() ? look.p.title_height : 0;
    const irect track{IsRTL() ? in.x + look.unit : in.x + in.w - look.unit - thumb_w,
                      in.y + head + look.unit, thumb_w, std::max(in.h - head - 2 * look.unit, 1),
                      0};
    const int pages = level.last_page + 1;
    const int thumb_h = std::min(std::max(track.h / pages, 2 * thumb_w), track.h);
    const int top = track.y + (track.h - thumb_h) * level.page / level.last_page;
    const int line = std::clamp(look.p.separator_height, 1, thumb_w / 2);
    FillAreaRect(&track, look.p.background_color_normal);
    FillArea(track.x + (thumb_w - line) / 2, track.y, line, track.h, BLACK);
    FillArea(track.x, top, thumb_w, thumb_h, BLACK);
}

// Where the rim may be drawn: between caption and panel, and away from the level below.
irect rim_clip(const Menu &menu) {
    const irect page = page_area(), &parent = menu.beside;
    if (parent.w < 1) return page;
    const int right = parent.x + parent.w;
    if (menu.rect.x < parent.x) return {0, page.y, parent.x, page.h, 0};
    return {right, page.y, std::max(page.w - right, 0), page.h, 0};
}

void draw_rim(const Menu &menu) {
    const int rim = menu.look->rim();
    const irect &r = menu.rect;
    const irect clip = rim_clip(menu);
    SetClipRect(&clip);
    if (clip.w > 0 && clip.h > 0)
        fill_rounded({r.x - rim, r.y - rim, r.w + 2 * rim, r.h + 2 * rim, 0},
                     menu.look->rim_radius());
    SetClip(0, 0, ScreenWidth(), ScreenHeight());
}

void draw_pointer(const Menu &menu) {
    const irect &at = menu.pointer;
    if (at.w < 1) return;
    const bool is_above = at.y < menu.rect.y;
    DrawBitmap(at.x, at.y, is_above ? menu.look->pointer.get() : menu.look->pointer_down.get());
}

// Up to the middle of the border: its corners are not quite round.
void fill(const Menu &menu) {
    const icontext_menu_properties &p = menu.look->p;
    const int in = p.border_size / 2;
    const irect &r = menu.rect;
    fill_rounded({r.x + in, r.y + in, r.w - 2 * in, r.h - 2 * in, 0}, p.border_radius - in);
}

// What is white before anything else; a rim that is not cut off is so under the menu as well.
void draw_ground(const Menu &menu) {
    const bool has_rim = !menu.context || menu.context->enable_aura != 0;
    if (has_rim) draw_rim(menu);
    if (!has_rim || menu.beside.w > 0) fill(menu);
}

void draw_frame(const Menu &menu) {
    draw_border(menu.rect, *menu.look);
    draw_pointer(menu);
}

// The frame comes last, as rows reach into its round corners.
void draw_contents(const Menu &menu) {
    const irect in = inside_of(menu);
    SetClipRect(&in);
    draw_shown_rows(menu);
    draw_scroll_bar(menu);
    draw_exit_button(menu);
    draw_frame(menu);
}

} // namespace

irect inside_of(const Menu &menu) {
    const int border = menu.look->p.border_size;
    const irect &r = menu.rect;
    return {r.x + border, r.y + border, std::max(r.w - 2 * border, 0),
            std::max(r.h - 2 * border, 0), 0};
}

irect exit_rect(const Menu &menu) {
    const Look &look = *menu.look;
    if (menu.request.exit == ExitButton::none || !menu.level().title()) return {};
    const irect in = inside_of(menu);
    const int w = look.exit.width(), h = look.exit.height();
    const int x = IsRTL() ? in.x + look.exit_x : in.x + in.w - look.exit_x - w;
    return {x, in.y + look.exit_y - menu.scroll, w, h, 0};
}

void fill_rounded(const irect &r, int radius) {
    const int c = std::max(std::min({radius, r.w / 2 - 1, r.h / 2 - 1}), 0);
    FillArea(r.x, r.y + c, r.w, r.h - 2 * c, WHITE);
    if (c == 0) return;
    FillArea(r.x + c, r.y, r.w - 2 * c, c, WHITE);
    FillArea(r.x + c, r.y + r.h - c, r.w - 2 * c, c, WHITE);
    const irect clip = GetClipRect();
    const irect both = raster::shared(clip, r); // discs are wider than their radius says
    SetClipRect(&both);
    for (const int x : {r.x + c, r.x + r.w - 1 - c})
        for (const int y : {r.y + c, r.y + r.h - 1 - c}) DrawCircle(x, y, c, WHITE);
    SetClipRect(&clip);
}

void draw_border(const irect &r, const Look &look) {
    SetClipRect(&r); // themes may have corners that are larger than menus
    DrawBorder(&r, look.p.border_size, ROUND_ALL, look.p.border_radius, BLACK);
    SetClip(0, 0, ScreenWidth(), ScreenHeight());
}

void draw_exit_button(const Menu &menu) {
    const irect at = exit_rect(menu);
    if (at.w < 1) return;
    const raster::ScreenScope screen;
    const irect in = inside_of(menu);
    SetClipRect(&in);
    FillAreaRect(&at, menu.look->p.background_color_normal);
    DrawBitmap(at.x, at.y,
               menu.touch.on_exit ? menu.look->exit_pressed.get() : menu.look->exit.get());
}

void draw_menu(const Menu &menu) {
    const raster::ScreenScope screen;
    draw_ground(menu);
    draw_contents(menu);
}

void draw_rows(const Menu &menu) {
    const raster::ScreenScope screen;
    fill(menu);
    draw_contents(menu);
}

void draw_selection(const Menu &menu, int former) {
    const raster::ScreenScope screen;
    const irect in = inside_of(menu);
    SetClipRect(&in);
    for (const int row : {former, menu.level().current})
        if (const Row *shown = row_at(menu, row)) draw_row(menu, *shown);
    draw_scroll_bar(menu);
    if (menu.is_scrolled_by_finger()) draw_frame(menu);
}

} // namespace menus
