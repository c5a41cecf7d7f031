// SPDX-License-Identifier: MIT
// How far the pen moves from character to character, remembered so that a step of the layout is two
// look-ups: the number of a character, and the step by the numbers of both characters.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

namespace text {

// What is known of one character.
struct AdvanceEntry {
    static constexpr uint8_t unknown_width = 255;
    // Of the start of a line, with which nothing kerns; of characters that have no number of their
    // own, whose steps are never found in the table.
    static constexpr uint8_t line_start = 0, unnumbered = 1;

    uint8_t width = unknown_width; // modulo 256; one of 255 is measured each time
    uint8_t number = unnumbered;
};

// A step is the kerning of a pair and the width of its second character. Invariants: pages that
// hold nothing are one shared page; the table of steps has a row of 256 columns for each number
// that was given out, and unknown steps in row and column `unnumbered`.
class AdvanceCache {
  public:
    static constexpr int16_t unknown = INT16_MIN;
    using Page = std::array<AdvanceEntry, 256>;

    AdvanceCache();

    // Page c >> 8 has the entry of c at c & 255.
    const AdvanceEntry *const *pages() const { return pages_.data(); }
    // Row by the number of the first character, column by that of the second.
    const int16_t *steps() const { return steps_.data(); }

    const AdvanceEntry &entry(uint16_t c) const { return pages_[c >> 8][c & 255]; }
    void set_width(uint16_t c, uint8_t width) { own_entry(c).width = width; }
    // Gives a character with a known width a number, if there is one left.
    void add_number(uint16_t c);

    // `unknown` until it is set.
    int16_t find_kerning(uint16_t first, uint16_t second) const;
    void set_kerning(uint16_t first, uint16_t second, int16_t kerning);

  private:
    // Kerning of pairs of which one has no number: a hash table with open addressing, which starts
    // anew when it is full.
    struct Pair {
        uint32_t key; // 0: free
        int32_t kerning;
    };
    static uint32_t key(uint16_t first, uint16_t second) { return uint32_t{first} << 16 | second; }
    AdvanceEntry &own_entry(uint16_t c);
    size_t slot_of(uint32_t key) const;
    void make_room();

    std::array<const AdvanceEntry *, 256> pages_;
    std::array<std::unique_ptr<Page>, 256> own_pages_;
    std::vector<int16_t> steps_;
    std::vector<Pair> pairs_; // a power of two, at most half of it used
    size_t pair_count_ = 0;
};

} // namespace text
