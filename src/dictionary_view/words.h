// SPDX-License-Identifier: MIT
// The words around the current one of the open dictionary: a list that is walked through.
#pragma once

#include <string>
#include <vector>

namespace dictionary_view {

enum class Direction { back = -1, forward = 1 };

// Steps through the dictionary from word to word, so that equal headwords stay apart. What someone
// else looks up meanwhile does no harm; when another dictionary is open, the list becomes one of
// it.
class Words {
  public:
    // A list of so many rows, in which the dictionary's current word is selected, in one of the
    // upper rows. Throws bad_alloc.
    void fill(int rows);
    // Selects the word before or after, on a new list when it is not in this one. False at the end
    // of the dictionary. Throws bad_alloc.
    bool step(Direction direction);
    // Shows the list before or after this one and selects its first word; near an end of the
    // dictionary there may be less to move by. False when it stays as it is. Throws bad_alloc.
    bool turn(Direction direction);
    // False when the row is empty. Throws bad_alloc.
    bool select(int row);

    const std::vector<std::string> &shown() const { return shown_; }
    int selected() const { return selected_; }
    // Of the selected one; empty without any.
    const std::string &headword() const { return headword_; }
    const std::string &translation() const { return translation_; }

  private:
    bool hold();
    int move(Direction direction, int steps);
    void walk(int from, int to);
    void fill_with(int before);
    void keep_current();

    std::vector<std::string> shown_;
    std::string dictionary_; // whose words these are
    std::string headword_, translation_;
    int rows_ = 0, selected_ = 0;
};

} // namespace dictionary_view
