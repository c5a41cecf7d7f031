// SPDX-License-Identifier: MIT
// Lays a list out and draws the rows that are in sight.
#include <algorithm>

#include "internal.h"
#include "kelvane/languages.h"
#include "kelvane/text.h"
#include "lists/drawing.h"
#include "lists/list.h"
#include "lists/strip.h"
#include "modal/input.h"
#include "raster/box.h"
#include "raster/rects.h"
#include "raster/screen_scope.h"
#include "runtime/night.h"
#include "text/font_scope.h"

namespace lists {
namespace {

constexpr int tallest_row = 1 << 12;
constexpr int narrow_units = 100; // places that are not as wide have narrower margins
constexpr int empty_percent = 40; // of the height: where a list says that it is empty
constexpr int empty_icon_side = 16;

int row_height(const Look &look, int asked) {
    if (asked == LIST_COVER_ROWS) return look.cover_row_h();
    return asked > 0 ? std::min(asked, tallest_row) : look.row_h;
}

// Where several rows are written one below the other.
class Column {
  public:
    Column(const irect &r, int y) : r_(r), y_(y) {}
    void text(const ifont *font, const char *text) {
        if (!*text) return;
        const text::FontScope scope(font);
        const int h = TextRectHeight(r_.w, text, ALIGN_CENTER);
        DrawTextRect(r_.x, y_, r_.w, std::max(h, 1), text, ALIGN_CENTER);
        y_ += h;
    }
    void picture(const ibitmap &picture, int side) {
        StretchBitmap(r_.x + (r_.w - side) / 2, y_, side, side, &picture, 0);
        y_ += side;
    }
    void gap(int h) { y_ += h; }

  private:
    irect r_;
    int y_;
};

} // namespace

// Without a screen there is no look yet.
void List::lay_out() {
    if (!kvstate.framebuffer) return;
    look_ = look();
    place_ = raster::shared(wanted_, {0, 0, ScreenWidth(), ScreenHeight(), 0});
    row_h_ = row_height(*look_, rows_.height);
    const int strip_h = std::min(look_->strip_h, place_.h / 2);
    top_ = std::min(look_->gap(), place_.h / 2);
    const int room = place_.h - top_;
    const bool has_strip = paging_.count > room / row_h_ && strip_h > 0 && room - strip_h >= row_h_;
    strip_ =
        has_strip ? irect{place_.x, place_.y + place_.h - strip_h, place_.w, strip_h, 0} : irect{};
    paging_.set_per_page((room - strip_.h) / row_h_);
    is_stale_ = true;
}

RowPlace List::row_place(int row) const {
    const bool is_narrow = place_.w < narrow_units * look_->unit;
    return {{place_.x, place_.y + top_ + (row - paging_.first()) * row_h_, place_.w,
             std::min(row_h_, std::max(place_.h - top_, 1)), 0},
            is_narrow ? look_->margin / 2 : look_->margin};
}

irect List::row_rect(int row) const {
    return look_ && paging_.shows(row) ? row_place(row).area : irect{};
}

void List::settle() {
    if (!is_settled_) paging_.select(nearest(paging_.selected));
    is_settled_ = true;
    is_fresh_ &= is_empty();
}

// Between rows of several lines, and elsewhere where the theme has lines; not beside the selection.
void List::draw_separator(int row) {
    if (!has_lines() || !paging_.shows(row) || !paging_.shows(row + 1)) return;
    const int selected = paging_.selected;
    if (row == selected) return;
    const RowPlace place = row_place(row);
    if (row + 1 != selected) return draw_line_below(*look_, place);
    const irect &r = place.area;
    FillArea(r.x, r.y + r.h - look_->hairline, r.w, look_->hairline, WHITE);
}

List::Tones List::draw_inside(int row, const RowPlace &place) {
    const bool is_marked = row == paging_.selected;
    if (rows_.draw && rows_.draw(row, &place.area, rows_.context) != 0) {
        if (is_marked && !is_abandoned_) mark_row(*look_, place);
        return Tones::all;
    }
    const ilistrow r = filled(row);
    if (is_abandoned_) return Tones::all;
    lists::draw_row(*look_, place, r, is_marked ? Mark::selected : Mark::none);
    const bool has_greys = r.picture || (r.flags & LIST_ROW_DISABLED) != 0;
    return has_greys || look_->is_lined(row_h_) ? Tones::all : Tones::two;
}

List::Tones List::draw_row(int row, Ground ground) {
    if (!kvstate.framebuffer || is_abandoned_ || !paging_.shows(row)) return Tones::two;
    const raster::ScreenScope screen;
    const text::FontScope font;
    const RowPlace place = row_place(row);
    const irect clip = raster::shared(place.area, place_);
    SetClipRect(&clip);
    night::remove_pictures(clip);
    if (ground == Ground::any) FillAreaRect(&clip, WHITE);
    const Tones tones = draw_inside(row, place);
    if (is_abandoned_) return tones;
    SetClipRect(&place_);
    draw_separator(row - 1);
    draw_separator(row);
    return tones;
}

void List::draw_row(int row) {
    if (is_stale_) return draw();
    if (is_drawing_) return;
    const Drawing drawing(is_drawing_);
    draw_row(row, Ground::any);
}

void List::draw_empty() const {
    const irect r{place_.x + look_->margin, place_.y, std::max(place_.w - 2 * look_->margin, 1),
                  place_.h, 0};
    const int side = rows_.empty_icon ? empty_icon_side * look_->unit : 0;
    Column column(r, std::max(r.y + r.h * empty_percent / 100 - side, r.y));
    if (rows_.empty_icon) column.picture(*rows_.empty_icon, side);
    column.gap(4 * look_->unit);
    column.text(look_->bold.get(), GetLangText(empty_title_.c_str()));
    column.gap(2 * look_->unit);
    column.text(look_->body.get(), GetLangText(empty_line_.c_str()));
}

void List::draw_rows() {
    for (int i = 0; i < paging_.shown(); ++i) draw_row(paging_.first() + i, Ground::white);
}

void List::draw() {
    if (!kvstate.framebuffer || is_drawing_ || is_abandoned_) return;
    if (look_ != look()) lay_out();
    if (place_.w < 1 || place_.h < 1) return;
    const Drawing drawing(is_drawing_);
    is_stale_ = false;
    settle();
    if (is_abandoned_) return;
    const raster::ScreenScope screen;
    const text::FontScope font;
    SetClipRect(&place_);
    FillAreaRect(&place_, WHITE);
    night::remove_pictures(place_);
    if (is_empty())
        draw_empty();
    else
        draw_rows();
    if (is_abandoned_) return;
    SetClipRect(&place_);
    if (strip_.h > 0) draw_strip(*look_, strip_, paging_.page, paging_.last_page());
}

void List::redraw() {
    draw();
    if (!is_abandoned_) modal::update(raster::Box(place_));
}

} // namespace lists
