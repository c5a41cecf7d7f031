// SPDX-License-Identifier: MIT
// Draws rows. Where the interface runs right to left, everything in them changes sides.
#include "menus/row.h"

#include <algorithm>
#include <cstddef>

#include "kelvane/languages.h"
#include "kelvane/text.h"
#include "menus/draw.h"
#include "raster/rects.h"
#include "text/font_scope.h"

namespace menus {
namespace {

constexpr int label_flags = ALIGN_LEFT | VALIGN_MIDDLE | TEXT_DOTS | TEXT_RTL_MIRROR;
constexpr int every_bullet_unselected = 1; // bullet_style
constexpr int longest_gap = 1 << 12;       // separator_style

// A row on the screen: what it is drawn with and whether it is marked.
struct Brush {
    const Menu &menu;
    const Row &row;
    irect place; // from border to border, without the scroll bar
    bool is_rtl;
    bool is_selected;
    Ground ground;

    const Look &look() const { return *menu.look; }
    const icontext_menu_properties &p() const { return menu.look->p; }
    bool is_filled() const { return is_selected && look().fills_selection(); }
    void fill(int color) const {
        if (ground == Ground::any || color != WHITE) FillAreaRect(&place, color);
    }
    // A part of the row, so far from where lines begin.
    irect part(int offset, int w) const {
        const int x = is_rtl ? place.x + place.w - offset - w : place.x + offset;
        return {x, place.y, w, place.h, 0};
    }
};

// Indents count from the edge of the menu.
Brush brush_for(const Menu &menu, const Row &row, Ground ground) {
    irect place = menu.row_rect(row);
    const irect in = inside_of(menu);
    const bool is_rtl = IsRTL() != 0;
    const int scroll_w = row.item.kind == ITEM_HEADER ? 0 : menu.layout.columns.scroll_w;
    place.x = in.x + (is_rtl ? scroll_w : 0);
    place.w = std::max(in.w - scroll_w, 0);
    return {menu, row, place, is_rtl, menu.level().selected() == &row, ground};
}

LabelState state_of(const Brush &b) {
    if (b.row.item.kind == ITEM_HEADER) return LabelState::title;
    if (b.row.item.kind == ITEM_INACTIVE) return LabelState::disabled;
    return b.is_selected ? LabelState::selected : LabelState::plain;
}

int color_of(const Brush &b) {
    if (b.row.item.kind == ITEM_INACTIVE) return b.p().font_disabled_color;
    return b.is_filled() ? b.p().font_selected_color : b.p().font_normal_color;
}

// A rectangle of one line, as more would be broken into several.
irect one_line(const irect &r, const ifont *font) {
    const int h = font ? std::min(font->height, r.h) : r.h;
    return {r.x, r.y + (r.h - h) / 2, r.w, h, 0};
}

void draw_label(const Brush &b, int offset, int beyond) {
    const ifont *font = label_font(b.look(), b.menu.request.fonts, b.row.item, state_of(b));
    const int w = b.place.w - offset - beyond;
    if (w < 1) return;
    const text::FontScope scope(font);
    SetFont(font, color_of(b));
    const irect r = one_line(b.part(offset, w), font);
    DrawTextRect(r.x, r.y, r.w, r.h, b.row.item.text.c_str(), label_flags);
}

// On a black row pictures are inverted with what they stand on.
void draw_picture(const Brush &b, const ibitmap *picture, int offset) {
    if (!picture) return;
    const irect at = b.part(offset, picture->width);
    const int y = at.y + (at.h - picture->height) / 2;
    if (b.is_filled()) FillArea(at.x, y, picture->width, picture->height, WHITE);
    DrawBitmap(at.x, y, picture);
    if (b.is_filled()) InvertArea(at.x, y, picture->width, picture->height);
}

void draw_line(const Brush &b, int y) {
    const int indent = b.p().separator_indent_horizontal - b.p().border_size;
    const int left = b.place.x + indent, right = b.place.x + b.place.w - 1 - indent;
    const int step = std::clamp(b.p().separator_style, 0, longest_gap) + 1;
    for (int i = 0; i < b.p().separator_height && left <= right; ++i)
        DrawLineEx(left, y + i, right, y + i, b.p().separator_color, step);
}

// So many rows of pixels at the foot of the row.
void draw_marker(const Brush &b, int h) {
    const int indent = b.p().marker_indent_horizontal;
    FillArea(b.place.x + indent, b.place.y + b.place.h - h, b.place.w - 2 * indent, h,
             b.p().marker_color);
}

void draw_background(const Brush &b) {
    const icontext_menu_properties &p = b.p();
    const bool disabled = b.row.item.kind == ITEM_INACTIVE;
    b.fill(disabled ? p.background_color_disabled : p.background_color_normal);
    if (b.is_selected)
        draw_marker(b, b.is_filled() ? b.place.h : std::min(p.marker_height, b.place.h));
}

// The next row of the page that has a height, up or down; null without one.
const Row *neighbour(const Level &level, const Row &row, Direction direction) {
    const auto count = static_cast<std::ptrdiff_t>(level.rows.size());
    for (std::ptrdiff_t i = &row - level.rows.data();;) {
        i += static_cast<int>(direction);
        if (i < 0 || i >= count) return nullptr;
        const Row &next = level.rows[static_cast<size_t>(i)];
        if (next.page != row.page) return nullptr;
        if (next.h > 0) return &next;
    }
}

// The line between two items. A filled one reaches as far as the next item.
void draw_line_below(const Menu &menu, const Row &above, Ground ground) {
    const Row *below = neighbour(menu.level(), above, Direction::forward);
    if (!above.has_line || !below) return;
    Brush b = brush_for(menu, above, ground);
    b.is_selected |= menu.level().selected() == below;
    b.place.y += above.h;
    b.place.h = below->y - above.y - above.h;
    b.fill(b.p().background_color_normal);
    if (b.is_filled())
        draw_marker(b, b.place.h);
    else
        draw_line(b, b.place.y + b.p().separator_indent_vertical);
}

const ibitmap *bullet_of(const Brush &b) {
    const bool marked = b.is_selected && b.p().bullet_style != every_bullet_unselected;
    return marked ? b.look().bullet_selected.get() : b.look().bullet.get();
}

void draw_arrow(const Brush &b) {
    const bool is_open = b.is_selected && b.menu.submenu_is_open;
    const ibitmap *arrow = is_open ? b.look().arrow_open.get() : b.look().closed_arrow();
    if (!arrow) return;
    const int indent = b.menu.layout.columns.indent - b.p().border_size;
    draw_picture(b, arrow, b.place.w - indent - arrow->width);
}

void draw_item(const Brush &b) {
    const Columns &c = b.menu.layout.columns;
    const int border = b.p().border_size, start = c.indent - border;
    const irect clip = GetClipRect();
    const irect own = raster::shared(clip, b.place); // icons may be higher than rows
    SetClipRect(&own);
    draw_background(b);
    if (b.row.item.kind == ITEM_BULLET && c.bullet_w > 0) draw_picture(b, bullet_of(b), start);
    draw_picture(b, b.row.item.icon, start + c.bullet_w);
    if (b.row.item.kind == ITEM_SUBMENU) draw_arrow(b);
    draw_label(b, c.text_offset() - border, c.beyond_text() - c.scroll_w - border);
    SetClipRect(&clip);
}

// "2 / 3" at the end of the title bar. Returns its width.
int draw_counter(const Brush &b, int beyond) {
    const Level &level = b.menu.level();
    if (!level.is_paged()) return 0;
    const Counter made = counter(level.page, level.last_page);
    const ifont *font = b.look().small_font.get();
    const text::FontScope scope(font);
    SetFont(font, b.p().font_normal_color);
    const int w = StringWidth(made.text);
    const irect r = one_line(b.part(b.place.w - beyond - w, w), font);
    DrawString(r.x, r.y, made.text);
    return w + b.look().unit;
}

void draw_header(const Brush &b) {
    const Look &look = b.look();
    const int indent = b.menu.layout.columns.indent - b.p().border_size;
    b.fill(b.p().background_color_normal);
    const bool is_title = b.menu.level().title() == &b.row;
    const bool has_exit = is_title && b.menu.request.exit == ExitButton::in_header;
    const int beyond = has_exit ? look.exit_x + look.exit.width() + look.unit : indent;
    draw_label(b, indent, beyond + (is_title ? draw_counter(b, beyond) : 0));
    const int rule = std::min(look.rule(), b.place.h);
    FillArea(b.place.x, b.place.y + b.place.h - rule, b.place.w, rule, b.p().separator_color);
}

} // namespace

void draw_row(const Menu &menu, const Row &row, Ground ground) {
    if (row.h == 0) return;
    const Brush b = brush_for(menu, row, ground);
    switch (row.item.kind) {
    case ITEM_HEADER:
        draw_header(b);
        break;
    case ITEM_SEPARATOR:
        draw_line(b, b.place.y + b.p().separator_indent_vertical);
        break;
    default:
        draw_item(b);
        break;
    }
    if (const Row *above = neighbour(menu.level(), row, Direction::back))
        draw_line_below(menu, *above, ground);
    draw_line_below(menu, row, ground);
}

} // namespace menus
