// SPDX-License-Identifier: MIT
// Draws rows. Where the interface runs right to left, everything in them changes sides.
#include "lists/row.h"

#include <algorithm>
#include <cstdint>

#include "chrome/selection.h"
#include "kelvane/frames.h"
#include "kelvane/text.h"
#include "raster/rects.h"
#include "runtime/night.h"
#include "text/font_scope.h"

namespace lists {
namespace {

constexpr int after_cover = 3, icon_side = 8, bar_w = 20; // in units

// The border of a selected row has room around covers.
int cover_h(const Look &look, int row_h) {
    return std::max(row_h - 2 * std::max(2 * look.unit, 4 * look.hairline), 1);
}
int cover_w(const Look &look, int row_h) {
    return cover_h(look, row_h) * 3 / 4;
}

bool is_filled_when_marked(const Look &look, const RowPlace &place) {
    return !look.is_lined(place.area.h);
}

// What a row is drawn with, and what of its width is still free.
class Brush {
  public:
    Brush(const Look &look_, const RowPlace &place, const ilistrow &row_, Mark mark)
        : look(look_), row(row_),
          is_filled(mark == Mark::selected && is_filled_when_marked(look_, place)),
          rest_(place.inside(look_)) {}

    bool is_disabled() const { return (row.flags & LIST_ROW_DISABLED) != 0; }
    int color() const {
        if (is_disabled()) return look.disabled_color;
        return is_filled ? WHITE : BLACK;
    }
    // For a picture that has been drawn: white on black where texts are, and pale beside grey ones.
    void suit(const irect &r) const {
        if (is_filled) InvertArea(r.x, r.y, r.w, r.h);
        if (is_disabled()) DimArea(r.x, r.y, r.w, r.h, WHITE);
    }
    const irect &rest() const { return rest_; }
    int alignment() const { return look.is_rtl ? ALIGN_RIGHT : ALIGN_LEFT; }
    int far_alignment() const { return look.is_rtl ? ALIGN_LEFT : ALIGN_RIGHT; }

    // Takes so much from where lines begin, or from where they end.
    irect take(int w) { return cut(w, look.is_rtl); }
    irect take_end(int w) { return cut(w, !look.is_rtl); }
    // Leaves only so much where lines end.
    void keep_end(int w) { rest_ = take_end(w); }

    const Look &look;
    const ilistrow &row;
    const bool is_filled;

  private:
    irect cut(int w, bool from_right) {
        w = std::clamp(w, 0, rest_.w);
        const irect taken{from_right ? rest_.x + rest_.w - w : rest_.x, rest_.y, w, rest_.h, 0};
        if (!from_right) rest_.x += w;
        rest_.w -= w;
        return taken;
    }

    irect rest_;
};

// A sign of the theme in the middle of its column; inverted on black.
void draw_sign(const Brush &b, const irect &column, const ibitmap *sign) {
    if (!sign) return;
    const irect r{column.x + (column.w - sign->width) / 2, column.y + (column.h - sign->height) / 2,
                  sign->width, sign->height, 0};
    if (b.is_filled) FillAreaRect(&r, WHITE);
    DrawBitmap(r.x, r.y, sign);
    b.suit(r);
}

// The largest with the same proportions.
irect fitted(const irect &box, const ibitmap &picture) {
    const int64_t w = picture.width, h = picture.height;
    if (w < 1 || h < 1) return {};
    const bool is_wide = w * box.h > h * box.w;
    const int fitted_w = is_wide ? box.w : static_cast<int>(std::max<int64_t>(w * box.h / h, 1));
    const int fitted_h = is_wide ? static_cast<int>(std::max<int64_t>(h * box.w / w, 1)) : box.h;
    return {box.x + (box.w - fitted_w) / 2, box.y + (box.h - fitted_h) / 2, fitted_w, fitted_h, 0};
}

irect draw_picture(const irect &box, const ibitmap &picture) {
    const irect r = fitted(box, picture);
    if (r.w == picture.width && r.h == picture.height)
        DrawBitmap(r.x, r.y, &picture);
    else
        StretchBitmap(r.x, r.y, r.w, r.h, &picture, 0);
    return r;
}

// A book without a picture on its cover.
void draw_blank_cover(const Look &look, const irect &r) {
    FillAreaRect(&r, WHITE);
    DrawBorder(&r, look.hairline, 0, 0, BLACK);
    FillArea(r.x + 3 * look.unit, r.y + 4 * look.unit, 7 * look.unit, look.unit, BLACK);
}

void draw_cover(Brush &b, int row_h) {
    const int w = cover_w(b.look, row_h), h = cover_h(b.look, row_h);
    const irect column = b.take(w);
    b.take(after_cover * b.look.unit);
    const irect box{column.x, column.y + (column.h - h) / 2, w, h, 0};
    if (b.row.picture)
        night::stays(draw_picture(box, *b.row.picture));
    else
        draw_blank_cover(b.look, box);
    b.suit(box);
}

void draw_icon(Brush &b) {
    if (!b.row.picture) return;
    const int side = icon_side * b.look.unit;
    const irect column = b.take(side + 2 * b.look.unit);
    const irect box{column.x + (b.look.is_rtl ? column.w - side : 0),
                    column.y + (column.h - side) / 2, side, side, 0};
    if (b.is_filled) FillAreaRect(&box, WHITE);
    draw_picture(box, *b.row.picture);
    b.suit(box);
}

void draw_bullet(Brush &b) {
    if ((b.row.flags & LIST_ROW_CHOICE) == 0) return;
    const bool is_chosen = (b.row.flags & LIST_ROW_CHOSEN) != 0;
    const theme::Picture &bullet = is_chosen ? b.look.bullet_chosen : b.look.bullet;
    draw_sign(b, b.take(bullet.width()), bullet.get());
    b.take(b.look.units(25));
}

void draw_arrow(Brush &b) {
    const ibitmap *arrow = b.look.row_arrow();
    if ((b.row.flags & LIST_ROW_ARROW) == 0 || !arrow) return;
    draw_sign(b, b.take_end(arrow->width), arrow);
    b.take_end(b.look.unit);
}

const ifont *title_font(const Brush &b, bool is_bold) {
    if (b.row.font) return b.row.font;
    return (is_bold ? b.look.bold : b.look.body).get();
}

// What stands at the end, of at most half of the row. `drop` is how much lower its line begins.
void draw_value(Brush &b, const irect &line, int drop) {
    if (!b.row.value || !*b.row.value) return;
    const text::FontScope scope(b.look.small.get());
    SetFont(b.look.small.get(), b.color());
    const int most = b.row.progress < 0 ? b.rest().w / 2 : b.rest().w;
    const irect column = b.take_end(std::min(StringWidth(b.row.value) + b.look.hairline, most));
    b.take_end(2 * b.look.unit);
    DrawTextRect(column.x, line.y + drop, column.w, 1, b.row.value, b.far_alignment() | TEXT_DOTS);
}

int baseline(const ifont *font) {
    return font ? font->baseline : 0;
}
int height(const ifont *font) {
    return font ? font->height : 0;
}

void draw_text(const Brush &b, const ifont *font, int y, const char *text) {
    const irect &r = b.rest();
    if (!text || r.w < 1) return;
    const text::FontScope scope(font);
    SetFont(font, b.color());
    DrawTextRect(r.x, y, r.w, 1, text, b.alignment() | TEXT_DOTS);
}

// Title and value stand on one baseline.
void draw_one_line(Brush &b) {
    draw_bullet(b);
    draw_icon(b);
    draw_arrow(b);
    const bool is_bold = b.is_filled || (b.row.flags & LIST_ROW_HEADING) != 0;
    const ifont *font = title_font(b, is_bold);
    const irect r = b.rest();
    const irect line{r.x, r.y + (r.h - height(font)) / 2, r.w, height(font), 0};
    draw_value(b, line, baseline(font) - baseline(b.look.small.get()));
    draw_text(b, font, line.y, b.row.title);
}

// A hairline that is thick as far as one has come.
void draw_progress(const Brush &b, const irect &r) {
    const int done = r.w * std::clamp(b.row.progress, 0, 100) / 100;
    FillArea(r.x, r.y + (r.h - b.look.hairline) / 2, r.w, b.look.hairline, BLACK);
    FillArea(b.look.is_rtl ? r.x + r.w - done : r.x, r.y, done, r.h, BLACK);
}

// The value, and below it how far one has come.
void draw_end(Brush &b, int y) {
    const Look &look = b.look;
    const int small_h = height(look.small.get());
    if (b.row.progress < 0) return draw_value(b, {b.rest().x, y, b.rest().w, small_h, 0}, 0);
    const int w = std::min(bar_w * look.unit, b.rest().w / 2);
    Brush column = b;
    column.keep_end(w);
    b.take_end(w + 2 * look.unit);
    const irect &r = column.rest();
    draw_progress(column, {r.x, y + small_h + look.unit, r.w, look.bar_h(), 0});
    draw_value(column, {r.x, y, r.w, small_h, 0}, 0);
}

// Beside covers the value belongs to the second line, elsewhere to the row.
void draw_end_of_two_lines(Brush &b) {
    const irect &r = b.rest();
    draw_end(b, r.y + (r.h - height(b.look.small.get())) / 2);
}

void draw_several_lines(Brush &b, const RowPlace &place) {
    const Look &look = b.look;
    const bool is_cover = place.area.h >= look.cover_row_h();
    const bool is_bare = !is_cover && b.row.progress < 0;
    if (is_bare && (!b.row.line || !*b.row.line)) return draw_one_line(b);
    draw_bullet(b);
    if (is_cover) draw_cover(b, place.area.h);
    if (!is_cover) draw_icon(b);
    draw_arrow(b);
    const ifont *font = title_font(b, true), *small = look.small.get();
    const int bar_room = is_cover || is_bare ? 0 : look.unit + look.bar_h();
    const int top = b.rest().y + (b.rest().h - height(font) - height(small) - bar_room) / 2;
    if (is_bare) draw_end_of_two_lines(b);
    draw_text(b, font, top, b.row.title);
    if (!is_bare) draw_end(b, top + height(font));
    draw_text(b, small, top + height(font), b.row.line);
}

} // namespace

irect RowPlace::inside(const Look &look) const {
    const int gap = look.is_lined(area.h) ? look.gap() : 0;
    return {area.x + margin, area.y + gap, std::max(area.w - 2 * margin, 0),
            std::max(area.h - 2 * gap, 0), 0};
}

void draw_row(const Look &look, const RowPlace &place, const ilistrow &row, Mark mark) {
    Brush b(look, place, row, mark);
    if (b.is_filled) FillAreaRect(&place.area, BLACK);
    if (!look.is_lined(place.area.h)) return draw_one_line(b);
    draw_several_lines(b, place);
    if (mark == Mark::selected) mark_row(look, place);
}

void mark_row(const Look &look, const RowPlace &place) {
    const irect &r = place.area;
    if (is_filled_when_marked(look, place)) return InvertArea(r.x, r.y, r.w, r.h);
    const int out = std::clamp(place.margin - look.unit, 0, 3 * look.unit);
    const irect around{r.x + place.margin - out, r.y, std::max(r.w - 2 * (place.margin - out), 0),
                       r.h, 0};
    chrome::mark_drawn(around);
}

void draw_line_below(const Look &look, const RowPlace &place) {
    const irect in = place.inside(look);
    const bool is_cover = place.area.h >= look.cover_row_h();
    const int text = is_cover ? cover_w(look, place.area.h) + after_cover * look.unit : 0;
    const int w = std::max(in.w - text, 0);
    FillArea(look.is_rtl ? in.x : in.x + text, place.area.y + place.area.h - look.hairline, w,
             look.hairline, BLACK);
}

void draw_line_of_text(const irect &r, const char *text, int flags) {
    const ifont *font = GetFont();
    const int y = r.y + (r.h - height(font)) / 2;
    if (text && r.w > 0) DrawTextRect(r.x, y, r.w, 1, text, flags | TEXT_DOTS);
}

} // namespace lists
