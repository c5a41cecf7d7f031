// SPDX-License-Identifier: MIT
// Edits the text, freely or over a template.
#include "keyboard/entry.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "ground/utf8.h"

namespace keyboard {
namespace {

constexpr size_t chunk = 64; // characters that are decoded at once

Entry::Text decode(const char *utf8, size_t most) {
    Entry::Text text;
    const char *end = utf8 + std::strlen(utf8);
    while (utf8 < end && text.size() < most) {
        uint16_t codes[chunk];
        const size_t count = utf8::decode(utf8, end, codes, std::min(chunk, most - text.size()));
        text.insert(text.end(), codes, codes + count);
    }
    return text;
}

bool is_digit(uint16_t c) {
    return c >= '0' && c <= '9';
}

} // namespace

Entry::Entry(const char *utf8, size_t capacity, Selection selection, const Kind &kind)
    : kind_(&kind), text_(decode(utf8, capacity)), capacity_(capacity), cursor_(text_.size()),
      all_selected_(selection == Selection::all && !is_masked() && !text_.empty()),
      is_new_(text_.empty()) {
    if (!is_masked()) return;
    template_ = text_;
    cursor_ = next_place(0);
}

bool Entry::is_typed_over(size_t position) const {
    const uint16_t c = position < template_.size() ? template_[position] : 0;
    return c > 0 && c < 0x80 && std::strchr(kind_->mask, c);
}

// The first place to type at from a position on; the end when there is none.
size_t Entry::next_place(size_t position) const {
    while (position < template_.size() && !is_typed_over(position)) ++position;
    return position;
}

// Whether it was empty and is filled now, so that it must be shown whatever the key does.
bool Entry::start_from_template() {
    if (!text_.empty() || template_.empty()) return false;
    text_ = template_;
    cursor_ = next_place(0);
    return true;
}

void Entry::keep_fields_in_range() {
    for (const Field &field : kind_->fields) {
        if (field.at + 2 > text_.size()) continue;
        uint16_t &tens = text_[field.at], &ones = text_[field.at + 1];
        if (!is_digit(tens) || !is_digit(ones)) continue;
        const int value = std::clamp(10 * (tens - '0') + (ones - '0'), field.least, field.most);
        tens = static_cast<uint16_t>('0' + value / 10);
        ones = static_cast<uint16_t>('0' + value % 10);
    }
}

bool Entry::overwrite(uint16_t c) {
    const bool was_filled = start_from_template();
    const bool is_allowed = c > 0 && c < 0x80 && std::strchr(kind_->mask, c);
    if (!is_allowed || !is_typed_over(cursor_)) return was_filled;
    text_[cursor_] = c;
    cursor_ = next_place(cursor_ + 1);
    keep_fields_in_range();
    return true;
}

bool Entry::empty_selection() {
    if (!std::exchange(all_selected_, false)) return false;
    text_.clear();
    cursor_ = 0;
    return true;
}

bool Entry::insert(uint16_t c) {
    if (is_masked()) return overwrite(c);
    empty_selection();
    if (text_.size() > capacity_) return false;
    is_new_ = is_new_ || text_.empty();
    text_.insert(text_.begin() + static_cast<ptrdiff_t>(cursor_), c);
    ++cursor_;
    return true;
}

std::optional<size_t> Entry::place_before_cursor() const {
    size_t place = cursor_;
    while (is_masked() && place > 0 && !is_typed_over(place - 1)) --place;
    return place > 0 ? std::optional(place - 1) : std::nullopt;
}

// What was typed over comes back.
bool Entry::step_back_in_template() {
    const bool was_filled = start_from_template();
    const auto place = place_before_cursor();
    if (!place) return was_filled;
    cursor_ = *place;
    text_[cursor_] = template_[cursor_];
    keep_fields_in_range();
    return true;
}

bool Entry::backspace() {
    if (is_masked()) return step_back_in_template();
    if (empty_selection()) return true;
    if (cursor_ == 0) return false;
    text_.erase(text_.begin() + static_cast<ptrdiff_t>(--cursor_));
    return true;
}

bool Entry::clear() {
    const bool had_text = !text_.empty();
    all_selected_ = false;
    text_.clear();
    cursor_ = 0;
    return had_text;
}

// The first place to type at from a position on, else the last one.
size_t Entry::place_near(size_t position) const {
    const size_t ahead = next_place(position);
    if (ahead < template_.size()) return ahead;
    for (size_t place = template_.size(); place > 0; --place)
        if (is_typed_over(place - 1)) return place - 1;
    return template_.size();
}

bool Entry::move_to(size_t position) {
    const bool was_selected = std::exchange(all_selected_, false);
    size_t to = std::min(position, text_.size());
    if (is_masked() && !text_.empty()) to = place_near(to);
    return std::exchange(cursor_, to) != to || was_selected;
}

bool Entry::move_left() {
    return move_to(place_before_cursor().value_or(0));
}

bool Entry::move_right() {
    const bool is_at_end = cursor_ == text_.size(); // of a finished template too
    return is_at_end ? std::exchange(all_selected_, false) : move_to(cursor_ + 1);
}

std::string Entry::utf8(size_t from, size_t to) const {
    std::string out;
    for (size_t i = from; i < std::min(to, text_.size()); ++i) out += utf8::encoded(text_[i]);
    return out;
}

std::string Entry::utf8() const {
    return utf8(0, capacity_);
}

} // namespace keyboard
