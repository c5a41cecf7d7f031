// SPDX-License-Identifier: MIT
// An open dictionary and its current word.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "dictionary/cache.h"
#include "dictionary/collation.h"
#include "dictionary/container.h"
#include "dictionary/file.h"
#include "dictionary/index.h"
#include "dictionary/morphology.h"

namespace dictionary {

// A word of a dictionary.
struct Position {
    size_t container = 0, record = 0;
};

enum class Step { next, previous };

struct Match {
    Position position;
    bool is_exact;
};

class Dictionary {
  public:
    // Null, with a word on standard error, when the file is no dictionary. Throws bad_alloc, as all
    // the others.
    static std::unique_ptr<Dictionary> open(file::Stream stream);

    // Finds a word or the nearest one that follows, and says so on standard error.
    std::optional<Match> find(const char *word);
    // The same, but tries other forms of the word as well.
    std::optional<Match> find_form(const char *word);
    // The position beside another; nothing at either end of the dictionary, or where it cannot be
    // read.
    std::optional<Position> neighbour(Position from, Step step);
    // What stands at a position, until four other containers were used; nothing when it cannot be
    // read.
    std::optional<Entry> entry(Position position);
    // Calls `put` with all headwords that start with a prefix, in their order, until it answers
    // false.
    void each_word(const char *prefix, const std::function<bool(const char *)> &put);

    // The text of the layout that the dictionary brings along, given away; may be empty.
    Bytes take_keyboard() { return std::move(keyboard_); }

  private:
    explicit Dictionary(file::Stream stream) : file_(std::move(stream)) {}
    void read_sections();
    Container *container(size_t number) { return cache_.open(number, file_, index_); }
    bool is_behind(Container &c) const;
    std::optional<Match> search(const char *word);
    std::optional<Match> search_forms(const char *word);

    File file_;
    Collation collation_;
    Morphology morphology_;
    Index index_;
    Cache cache_;
    Bytes keyboard_;
    std::string language_;
    Word collated_; // the word that is searched
};

} // namespace dictionary
