// SPDX-License-Identifier: MIT
// Fills the list by stepping, and steps back to what is selected.
#include "dictionary_view/words.h"

#include <algorithm>
#include <cstdlib>

#include "dictionary_view/choice.h"
#include "kelvane/dictionary.h"

namespace dictionary_view {
namespace {

constexpr int rows_before = 3; // the word that was looked up

// The word that the dictionary went to; null at its end.
const char *next_word(Direction direction) {
    char *headword = nullptr;
    const auto step = direction == Direction::back ? LookupPrevious : LookupNext;
    return step(&headword, nullptr) == DICT_NONE ? nullptr : headword;
}

// So many words on the way, or fewer up to the end.
std::vector<std::string> gather(Direction direction, int count) {
    std::vector<std::string> words;
    while (static_cast<int>(words.size()) < count) {
        const char *word = next_word(direction);
        if (!word) break;
        words.emplace_back(word);
    }
    return words;
}

} // namespace

// The dictionary's current word is the selected one again. False when that is not there any more,
// as another dictionary is open, or none: then the list is a new one.
bool Words::hold() {
    char *headword = nullptr;
    const bool is_same = dictionary_ == open_name();
    const bool is_current = LookupCurrent(&headword, nullptr) != DICT_NONE && headword_ == headword;
    const bool is_found =
        is_current || LookupWordExact(headword_.c_str(), nullptr, nullptr) != DICT_NONE;
    if (is_same && is_found) return true;
    fill(rows_);
    return false;
}

// Returns how many steps there were.
int Words::move(Direction direction, int steps) {
    int done = 0;
    while (done < steps && next_word(direction)) ++done;
    return done;
}

void Words::keep_current() {
    char *headword = nullptr, *translation = nullptr;
    if (LookupCurrent(&headword, &translation) == DICT_NONE) return;
    headword_ = headword;
    translation_ = translation;
}

// From the row where the dictionary is to another one.
void Words::walk(int from, int to) {
    move(to < from ? Direction::back : Direction::forward, std::abs(to - from));
}

// The current word gets so many words before it, or more where too few follow it.
void Words::fill_with(int before) {
    shown_.clear();
    selected_ = move(Direction::back, before);
    char *headword = nullptr;
    if (LookupCurrent(&headword, nullptr) == DICT_NONE) return;
    shown_.emplace_back(headword);
    const auto below = gather(Direction::forward, rows_ - 1);
    shown_.insert(shown_.end(), below.begin(), below.end());
    const int last = static_cast<int>(below.size()), missing = rows_ - 1 - last;
    if (missing > 0) {
        move(Direction::back, last);
        const auto above = gather(Direction::back, missing);
        shown_.insert(shown_.begin(), above.rbegin(), above.rend());
        selected_ += static_cast<int>(above.size());
    }
    walk(missing > 0 ? 0 : last, selected_);
    keep_current();
}

void Words::fill(int rows) {
    rows_ = std::max(rows, 1);
    dictionary_ = open_name();
    headword_.clear();
    translation_.clear();
    fill_with(std::min(rows_before, (rows_ - 1) / 2));
}

bool Words::step(Direction direction) {
    const int row = selected_ + static_cast<int>(direction);
    if (select(row)) return true;
    if (!hold()) return true;
    if (move(direction, 1) == 0) return false;
    fill_with(direction == Direction::back ? rows_ - 1 : 0);
    return true;
}

bool Words::turn(Direction direction) {
    const int count = static_cast<int>(shown_.size());
    const int steps = direction == Direction::forward ? count - selected_ : selected_ + rows_;
    if (!hold()) return true;
    if (move(direction, steps) == 0) return false;
    fill_with(0);
    return true;
}

bool Words::select(int row) {
    if (row < 0 || row >= static_cast<int>(shown_.size())) return false;
    if (!hold()) return true;
    walk(selected_, row);
    selected_ = row;
    keep_current();
    return true;
}

} // namespace dictionary_view
