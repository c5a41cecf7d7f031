// SPDX-License-Identifier: MIT
// How a dictionary compares words: each character is replaced by another, or dropped.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace dictionary {

using Word = std::vector<uint16_t>;
using WordView = std::span<const uint16_t>;

class Collation {
  public:
    // Each character is itself.
    Collation();
    // Takes pairs of characters, from and to, of 16 bits each; 0 drops a character.
    void apply(std::span<const uint8_t> pairs);

    uint16_t of(uint16_t character) const { return map_[character]; }
    // Adds what a text is compared by. Throws bad_alloc, as the others.
    void append(const char *utf8, Word &out) const;
    Word collate(const char *utf8) const;
    // The characters of a text as they are, without those that the comparison drops.
    Word without_dropped(const char *utf8) const;

    // Where a text stands beside a collated word: below 0, 0 or above 0.
    int order(const char *utf8, WordView word) const;
    // The same, and 0 for all texts that start with the word.
    int start_order(const char *utf8, WordView word) const;
    // In how many characters two texts differ that collate to the same.
    size_t difference(const char *a, const char *b) const;

  private:
    int compare_start(const char *&utf8, WordView word) const;

    using Map = std::array<uint16_t, 0x10000>;
    Map map_;
};

// The order of collated words: a word that begins another one is before it.
bool is_before(WordView a, WordView b);

} // namespace dictionary
