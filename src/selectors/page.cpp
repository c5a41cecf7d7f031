// SPDX-License-Identifier: MIT
// OpenPageSelector(): a number between one and all pages, by steps, along a line, or by digits.
#include <algorithm>
#include <array>
#include <cstdio>
#include <string>

#include "ground/guard.h"
#include "hw.h"
#include "kelvane/events.h"
#include "kelvane/selectors.h"
#include "kelvane/text.h"
#include "lists/row.h"
#include "raster/box.h"
#include "selectors/sheet.h"
#include "text/font_scope.h"

namespace selectors {
namespace {

constexpr int digit_columns = 6, digit_rows = 2;
// In the order of the keys; the others are digits.
constexpr int backspace = -1, clear = -2;
constexpr std::array digits = {1, 2, 3, 4, 5, backspace, 6, 7, 8, 9, 0, clear};

class PageSheet : public Sheet {
  public:
    PageSheet(int page, int pages, kv_numberhandler hproc, void *context)
        : Sheet("@GoToPage"), hproc_(hproc), context_(context), pages_(std::max(pages, 1)),
          page_(std::clamp(page, 1, pages_)) {}

  private:
    int body_h() const override;
    void place_body(const irect &body) override;
    void draw_body() const override;
    bool key(int code, int repeats) override;
    void tap(int x, int y) override;
    void touch(int type, int x, int y) override;
    void answer(bool is_accepted) override;

    int row_h() const { return std::max(look().row_h, 12 * look().unit); }
    int disc_r() const { return 2 * look().unit; } // its sides are a pixel farther out
    irect digit_place(size_t index) const;
    void draw_number() const;
    void draw_line() const;
    void draw_digit(size_t index) const;
    void set_page(int64_t page);
    void type(int digit);
    int page_at(int x) const;

    kv_numberhandler hproc_;
    void *context_;
    int pages_, page_;
    bool is_typing_ = false; // a digit goes behind the number, and does not begin a new one
    bool is_on_line_ = false;
    bool has_digits_ = false;
    irect number_{}, line_{}, digits_{};
};

int PageSheet::body_h() const {
    const int digits_h = device_touchpanel() > 0 ? digit_rows * row_h() + 4 * look().unit : 0;
    return 2 * row_h() + digits_h;
}

void PageSheet::place_body(const irect &body) {
    number_ = {body.x, body.y, body.w, row_h(), 0};
    line_ = {body.x, number_.y + number_.h, body.w, row_h(), 0};
    has_digits_ = device_touchpanel() > 0;
    digits_ = {body.x, line_.y + line_.h + 2 * look().unit, body.w, digit_rows * row_h(), 0};
}

irect PageSheet::digit_place(size_t index) const {
    const int column = static_cast<int>(index) % digit_columns;
    const int row = static_cast<int>(index) / digit_columns, gap = look().unit;
    const int w = (digits_.w + gap) / digit_columns, h = digits_.h / digit_rows;
    return {digits_.x + column * w, digits_.y + row * h, w - gap, h - gap, 0};
}

void PageSheet::draw_number() const {
    char text[32];
    std::snprintf(text, sizeof text, "%d / %d", page_, pages_);
    const text::FontScope font(big_font());
    lists::draw_line_of_text(number_, text, ALIGN_CENTER);
}

// A hairline that is thick up to a disc.
void PageSheet::draw_line() const {
    const int r = disc_r(), side = r + 1, thick = look().bar_h();
    const int middle = line_.y + line_.h / 2, room = line_.w - 2 * side - 1;
    const auto done = static_cast<int>(int64_t{room} * (page_ - 1) / std::max(pages_ - 1, 1));
    const int knob = look().is_rtl ? line_.x + line_.w - 1 - side - done : line_.x + side + done;
    FillArea(line_.x, middle - look().hairline / 2, line_.w, look().hairline, BLACK);
    const int from = look().is_rtl ? knob : line_.x;
    const int to = look().is_rtl ? line_.x + line_.w : knob;
    const bool is_seen = to - from > 3 * r; // a shorter one would be a stump beside the disc
    if (is_seen) FillArea(from, middle - thick / 2, to - from, thick, BLACK);
    DrawCircle(knob, middle, r, BLACK);
}

void PageSheet::draw_digit(size_t index) const {
    const irect r = digit_place(index);
    const int digit = digits[index];
    draw_key(r);
    const std::string text = digit == backspace ? "\u232B"
                             : digit == clear   ? "C"
                                                : std::to_string(digit);
    const text::FontScope font(look().body.get());
    lists::draw_line_of_text(r, text.c_str(), ALIGN_CENTER);
}

void PageSheet::draw_body() const {
    draw_number();
    draw_line();
    for (size_t i = 0; has_digits_ && i < digits.size(); ++i) draw_digit(i);
}

void PageSheet::set_page(int64_t page) {
    const auto to = static_cast<int>(std::clamp<int64_t>(page, 1, pages_));
    if (to == page_) return;
    page_ = to;
    show_part({number_.x, number_.y, number_.w, number_.h + line_.h, 0});
}

// What would be more pages than there are begins a new number, which no zero does.
void PageSheet::type(int digit) {
    const bool goes_on = is_typing_ && int64_t{page_} * 10 + digit <= pages_;
    is_typing_ = goes_on || digit != 0;
    if (digit == clear || digit == backspace) {
        is_typing_ = digit == backspace && page_ >= 10;
        return set_page(digit == clear ? 1 : page_ / 10);
    }
    if (is_typing_) set_page(goes_on ? int64_t{page_} * 10 + digit : digit);
}

bool PageSheet::key(int code, int repeats) {
    const int64_t more = repeats > 4 ? 10 : 1, hundred = repeats > 0 ? 10 : 1;
    const int towards_left = look().is_rtl ? 1 : -1;
    is_typing_ = false;
    switch (code) {
    case KEY_UP:
        set_page(page_ + more);
        return true;
    case KEY_DOWN:
        set_page(page_ - more);
        return true;
    case KEY_LEFT:
        set_page(page_ + towards_left * 10 * hundred);
        return true;
    case KEY_RIGHT:
        set_page(page_ - towards_left * 10 * hundred);
        return true;
    case KEY_NEXT:
    case KEY_NEXT2:
        set_page(page_ + 10 * hundred);
        return true;
    case KEY_PREV:
    case KEY_PREV2:
        set_page(page_ - 10 * hundred);
        return true;
    default:
        return false;
    }
}

int PageSheet::page_at(int x) const {
    const int side = disc_r() + 1, room = std::max(line_.w - 2 * side - 1, 1);
    const int from_left = std::clamp(x - line_.x - side, 0, room);
    const int along = look().is_rtl ? room - from_left : from_left;
    return static_cast<int>(1 + (int64_t{along} * (pages_ - 1) + room / 2) / room);
}

// On e-paper the line follows a finger when it is lifted.
void PageSheet::touch(int type, int x, int y) {
    if (type == EVT_POINTERDOWN) is_on_line_ = raster::contains(raster::Box(line_), x, y);
    if (type != EVT_POINTERUP || !is_on_line_) return;
    is_on_line_ = is_typing_ = false;
    set_page(page_at(x));
}

void PageSheet::tap(int x, int y) {
    for (size_t i = 0; has_digits_ && i < digits.size(); ++i)
        if (raster::contains(raster::Box(digit_place(i)), x, y)) return type(digits[i]);
}

void PageSheet::answer(bool is_accepted) {
    if (hproc_) hproc_(is_accepted ? page_ : -1, context_);
}

} // namespace
} // namespace selectors

int OpenPageSelector(int page, int pages, kv_numberhandler hproc, void *context) {
    using namespace selectors;
    return ground::guarded(
        0, [&] { return open(std::make_shared<PageSheet>(page, pages, hproc, context)); });
}

void CloseSelector(int selector) {
    ground::guarded([&] {
        const auto found = selectors::find(selector);
        if (found && found->is_selector()) selectors::close_with_above(selector);
    });
}
