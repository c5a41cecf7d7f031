// SPDX-License-Identifier: MIT
// Draws the rows of a page and opens what they name.
#include "rows.h"

#include "lettering.h"

namespace {

void write(const irect &r, const char *text, const Ink &ink) {
    draw_text(r.x + 2 * unit(), r.y + (r.h - capital_height(ink.size)) / 2, text, ink);
}

} // namespace

void Rows::draw_row(int index) const {
    const irect r = row_area(index);
    const bool active = index == selected_;
    FillAreaRect(&r, active ? BLACK : WHITE);
    FillArea(r.x, r.y + r.h - hairline(), r.w, hairline(), BLACK);
    write(r, rows_[index].name,
          {.size = size_of(Type::label), .color = active ? WHITE : BLACK, .bold = active});
}

void Rows::draw_answer() const {
    const irect r = row_area(count_);
    FillAreaRect(&r, WHITE);
    write(r, answer_, {.size = size_of(Type::label)});
}

void Rows::draw(const irect &area) {
    place_ = area;
    for (int i = 0; i < count_; i++) draw_row(i);
    draw_answer();
}

void Rows::answer(const char *text) {
    answer_ = text;
    if (&current_page() != &page_) return;
    draw_answer();
    const irect r = row_area(count_);
    PartialUpdate(r.x, r.y, r.w, r.h);
}

void Rows::select(int index) {
    selected_ = (index + count_) % count_;
    draw(place_);
    PartialUpdateBW(place_.x, place_.y, place_.w, place_.h);
}

int Rows::tapped(int x, int y) {
    for (int i = 0; i < count_; i++) {
        if (!inside(row_area(i), x, y)) continue;
        select(i);
        rows_[i].open();
        return 1;
    }
    return 0;
}

int Rows::key_pressed(int key) {
    switch (key) {
    case KEY_UP:
        select(selected_ - 1);
        return 1;
    case KEY_DOWN:
        select(selected_ + 1);
        return 1;
    case KEY_OK:
        rows_[selected_].open();
        return 1;
    default:
        return 0;
    }
}

int Rows::handle(int type, int par1, int par2) {
    if (type == EVT_POINTERDOWN) return tapped(par1, par2);
    return type == EVT_KEYPRESS ? key_pressed(par1) : 0;
}
