// SPDX-License-Identifier: MIT
// Draws the sheet: the toolbar, the list of words and the article.
#include "dictionary_view/draw.h"

#include <algorithm>

#include "kelvane/bitmaps.h"
#include "kelvane/frames.h"
#include "kelvane/text.h"
#include "raster/screen_scope.h"
#include "text/font_scope.h"

namespace dictionary_view {
namespace {

constexpr int row_side_tenths = 40; // of a unit

bool is_black(const View &v, Tool tool) {
    if (v.pressed == tool) return true;
    return tool == (v.focus == Pane::list ? Tool::word_list : Tool::article);
}

void draw_tool(const View &v, Tool tool) {
    const irect &r = v.place.tools[static_cast<size_t>(tool)];
    const ToolPicture &picture = v.toolbar.tools[static_cast<size_t>(tool)];
    const theme::Picture &shown = is_black(v, tool) ? picture.pressed : picture.plain;
    DrawBitmap(r.x + (r.w - shown.width()) / 2, r.y + (r.h - shown.height()) / 2, shown.get());
}

void draw_toolbar(const View &v) {
    const irect &bar = v.place.toolbar, &name = v.place.name;
    TileBitmap(bar.x, bar.y, bar.w, bar.h, v.toolbar.ground.get());
    for (size_t i = 0; i < tool_count; ++i) draw_tool(v, static_cast<Tool>(i));
    const text::FontScope font(v.look.type.label.get());
    if (StringWidth(v.name.c_str()) > name.w) SetFont(v.look.type.small.get(), -1);
    DrawTextRect(name.x, name.y, name.w, name.h, v.name.c_str(),
                 ALIGN_CENTER | VALIGN_MIDDLE | TEXT_DOTS);
    FillAreaRect(&v.place.rule, BLACK);
}

void draw_row(const View &v, int index) {
    const irect r = v.place.row(index);
    const bool is_selected = index == v.words.selected();
    const std::string &word = v.words.shown()[static_cast<size_t>(index)];
    if (is_selected) FillAreaRect(&r, BLACK);
    const text::FontScope font;
    const Type &type = v.look.type;
    SetFont(is_selected ? type.number.get() : type.body.get(), is_selected ? WHITE : BLACK);
    const Sides sides = sides_of(word);
    const int side = v.look.units(row_side_tenths), left = sides == Sides::mirrored ? 1 : 2;
    DrawTextRect(r.x + left * side / 2, r.y, std::max(r.w - 3 * side / 2, 1), r.h, word.c_str(),
                 VALIGN_MIDDLE | TEXT_DOTS | alignment(sides));
}

void draw_list(const View &v) {
    for (int i = 0; i < static_cast<int>(v.words.shown().size()); ++i) draw_row(v, i);
}

void draw_text(const View &v) {
    SetClipRect(&v.place.article);
    v.article.draw(v.look);
    SetClip(0, 0, ScreenWidth(), ScreenHeight());
}

// Rows and articles may reach into its round corners.
void draw_border(const View &v) {
    DrawBorder(&v.place.frame, v.look.border, ROUND_ALL, v.look.radius, BLACK);
}

// On white.
void draw_panes(const View &v) {
    draw_list(v);
    draw_text(v);
    FillAreaRect(&v.place.divider, BLACK);
    draw_border(v);
}

} // namespace

void draw_view(const View &v) {
    const raster::ScreenScope screen;
    FillAreaRect(&v.place.whole, WHITE);
    draw_toolbar(v);
    draw_panes(v);
}

void draw_tools(const View &v) {
    const raster::ScreenScope screen;
    draw_toolbar(v);
    draw_border(v);
}

void draw_body(const View &v) {
    const raster::ScreenScope screen;
    FillAreaRect(&v.place.body, WHITE);
    draw_panes(v);
}

void draw_article(const View &v) {
    const raster::ScreenScope screen;
    FillAreaRect(&v.place.article, WHITE);
    draw_text(v);
    draw_border(v);
}

} // namespace dictionary_view
