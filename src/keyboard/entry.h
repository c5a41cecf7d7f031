// SPDX-License-Identifier: MIT
// The text that is edited, with its cursor, selection and template. Nothing here draws.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "keyboard/kinds.h"

namespace keyboard {

enum class Selection { none, all };

// Invariants: the cursor lies in the text or at its end; the text has at most capacity + 1
// characters; with a template nothing is selected, and the text is empty or as long as the
// template.
class Entry {
  public:
    using Text = std::vector<uint16_t>;

    // `utf8` is cut to the capacity.
    Entry(const char *utf8, size_t capacity, Selection selection, const Kind &kind);

    const Text &text() const { return text_; }
    size_t cursor() const { return cursor_; }
    bool all_selected() const { return all_selected_; }
    // Everything in it was entered here: nothing is left of the initial text.
    bool is_new() const { return is_new_; }
    // Where the character stands that is typed last as long as the cursor is not moved.
    std::optional<size_t> place_before_cursor() const;

    // Each returns whether anything changed.
    bool insert(uint16_t c);
    bool backspace();
    bool clear();
    // Puts the cursor before a character, and with a template at the nearest place to type at.
    bool move_to(size_t position);
    bool move_left();
    bool move_right();

    // At most as many characters as the capacity says.
    std::string utf8() const;
    // Text of some of the characters.
    std::string utf8(size_t from, size_t to) const;

  private:
    bool is_masked() const { return kind_->mask != nullptr; }
    bool is_typed_over(size_t position) const;
    size_t next_place(size_t position) const;
    size_t place_near(size_t position) const;
    bool overwrite(uint16_t c);
    bool step_back_in_template();
    bool start_from_template();
    void keep_fields_in_range();
    bool empty_selection();

    const Kind *kind_;
    Text text_, template_;
    size_t capacity_;
    size_t cursor_ = 0;
    bool all_selected_;
    bool is_new_;
};

} // namespace keyboard
