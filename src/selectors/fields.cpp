// SPDX-License-Identifier: MIT
// Each field has a plus above its number and a minus below; the selected one is black. Digits and
// clocks run from left to right in every language, and so do the fields.
#include "selectors/fields.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "kelvane/events.h"
#include "kelvane/languages.h"
#include "kelvane/text.h"
#include "lists/row.h"
#include "raster/box.h"
#include "text/font_scope.h"

namespace selectors {
namespace {

// The parts of a field, from above.
enum Part : int { LABEL, PLUS, VALUE, MINUS };
constexpr int part_count = 4;
constexpr int steps_when_held = 10, repeats_before = 4;
constexpr int widest_units = 30, gap_units = 3;

} // namespace

FieldSheet::FieldSheet(const char *title, std::vector<Field> fields)
    : Sheet(title), fields_(std::move(fields)) {
    for (size_t i = 0; i < fields_.size(); ++i) limit(i, fields_[i].least, fields_[i].most);
}

void FieldSheet::limit(size_t field, int least, int most) {
    Field &f = fields_[field];
    f.least = least;
    f.most = most;
    f.value = std::clamp(f.value, least, most);
}

int FieldSheet::body_h() const {
    return part_count * look().row_h + 2 * look().unit + sample_h();
}

void FieldSheet::place_body(const irect &body) {
    body_ = body;
}

irect FieldSheet::cell(size_t field) const {
    const int count = static_cast<int>(fields_.size()), gap = gap_units * look().unit;
    const int w = std::min((body_.w + gap) / count, widest_units * look().unit);
    const int left = body_.x + (body_.w - count * w + gap) / 2;
    return {left + static_cast<int>(field) * w, body_.y, w - gap, body_.h - sample_h(), 0};
}

irect FieldSheet::part(size_t field, int which) const {
    const irect c = cell(field);
    const int h = (c.h - look().unit) / part_count;
    return {c.x, c.y + which * h, c.w, h, 0};
}

void FieldSheet::draw_sign(const irect &r, bool is_plus) const {
    draw_key(r);
    const int length = 4 * look().unit, thick = std::max(look().units(8), look().hairline);
    const int x = r.x + r.w / 2, y = r.y + r.h / 2;
    FillArea(x - length / 2, y - thick / 2, length, thick, BLACK);
    if (is_plus) FillArea(x - thick / 2, y - length / 2, thick, length, BLACK);
}

void FieldSheet::draw_field(size_t field) const {
    const Field &f = fields_[field];
    const bool is_selected = field == selected_ && fields_.size() > 1;
    {
        const text::FontScope font(look().small.get());
        lists::draw_line_of_text(part(field, LABEL), GetLangText(f.label), ALIGN_CENTER);
    }
    draw_sign(part(field, PLUS), true);
    draw_sign(part(field, MINUS), false);
    const irect value = part(field, VALUE);
    if (is_selected) FillAreaRect(&value, BLACK);
    char text[16];
    std::snprintf(text, sizeof text, "%0*d", f.digits, f.value);
    const text::FontScope font(big_font());
    SetFont(big_font(), is_selected ? WHITE : BLACK);
    lists::draw_line_of_text(value, text, ALIGN_CENTER);
}

void FieldSheet::draw_body() const {
    for (size_t i = 0; i < fields_.size(); ++i) draw_field(i);
    const int h = sample_h();
    if (h > 0) draw_sample({body_.x, body_.y + body_.h - h, body_.w, h, 0});
}

// Round and round.
void FieldSheet::step(size_t field, int by) {
    Field &f = fields_[field];
    const int count = f.most - f.least + 1;
    f.value = f.least + ((f.value - f.least + by) % count + count) % count;
    selected_ = field;
    changed();
    show_part(body_);
}

void FieldSheet::select(size_t field) {
    if (field == selected_) return;
    selected_ = field;
    show_part(body_);
}

bool FieldSheet::key(int code, int repeats) {
    const int by = repeats > repeats_before ? steps_when_held : 1;
    switch (code) {
    case KEY_UP:
        step(selected_, by);
        return true;
    case KEY_DOWN:
        step(selected_, -by);
        return true;
    case KEY_LEFT:
    case KEY_PREV:
    case KEY_PREV2:
        select(selected_ > 0 ? selected_ - 1 : fields_.size() - 1);
        return true;
    case KEY_RIGHT:
    case KEY_NEXT:
    case KEY_NEXT2:
        select((selected_ + 1) % fields_.size());
        return true;
    default:
        return false;
    }
}

void FieldSheet::tap(int x, int y) {
    press(x, y, 1);
}

void FieldSheet::hold(int x, int y) {
    press(x, y, steps_when_held);
}

void FieldSheet::press(int x, int y, int steps) {
    const auto is_on = [&](const irect &r) { return raster::contains(raster::Box(r), x, y); };
    for (size_t i = 0; i < fields_.size(); ++i) {
        if (is_on(part(i, PLUS))) return step(i, steps);
        if (is_on(part(i, MINUS))) return step(i, -steps);
        if (is_on(part(i, VALUE))) return select(i);
    }
}

} // namespace selectors
