// SPDX-License-Identifier: MIT
// Fills the list by stepping, and steps back to what is selected.
#include "dictionary_view/words.h"

#include <algorithm>
#include <cstdlib>

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

} // namespace

// The dictionary's current word is the selected one again.
void Words::hold() {
    char *headword = nullptr;
    if (LookupCurrent(&headword, nullptr) != DICT_NONE && headword_ == headword) return;
    LookupWordExact(headword_.c_str(), nullptr, nullptr);
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

// The current word gets so many words before it, or more where too few follow it.
void Words::fill_with(int before) {
    shown_.clear();
    selected_ = move(Direction::back, before);
    char *headword = nullptr;
    if (LookupCurrent(&headword, nullptr) == DICT_NONE) return;
    shown_.emplace_back(headword);
    while (static_cast<int>(shown_.size()) < rows_) {
        const char *word = next_word(Direction::forward);
        if (!word) break;
        shown_.emplace_back(word);
    }
    int at = static_cast<int>(shown_.size()) - 1; // where the dictionary is
    const int missing = rows_ - static_cast<int>(shown_.size());
    if (missing > 0) {
        move(Direction::back, at);
        std::vector<std::string> above;
        while (static_cast<int>(above.size()) < missing) {
            const char *word = next_word(Direction::back);
            if (!word) break;
            above.emplace_back(word);
        }
        shown_.insert(shown_.begin(), above.rbegin(), above.rend());
        selected_ += static_cast<int>(above.size());
        at = 0;
    }
    const int way = selected_ - at;
    move(way < 0 ? Direction::back : Direction::forward, std::abs(way));
    keep_current();
}

void Words::fill(int rows) {
    rows_ = std::max(rows, 1);
    headword_.clear();
    translation_.clear();
    fill_with(std::min(rows_before, (rows_ - 1) / 2));
}

bool Words::step(Direction direction) {
    const int row = selected_ + static_cast<int>(direction);
    if (select(row)) return true;
    hold();
    if (move(direction, 1) == 0) return false;
    fill_with(direction == Direction::back ? rows_ - 1 : 0);
    return true;
}

bool Words::turn(Direction direction) {
    const int count = static_cast<int>(shown_.size());
    const int steps = direction == Direction::forward ? count - selected_ : selected_ + rows_;
    hold();
    if (move(direction, steps) == 0) return false;
    fill_with(0);
    return true;
}

bool Words::select(int row) {
    if (row < 0 || row >= static_cast<int>(shown_.size())) return false;
    hold();
    const int way = row - selected_;
    move(way < 0 ? Direction::back : Direction::forward, std::abs(way));
    selected_ = row;
    keep_current();
    return true;
}

} // namespace dictionary_view
