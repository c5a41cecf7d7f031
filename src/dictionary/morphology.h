// SPDX-License-Identifier: MIT
// Rules that lead from a form of a word to words that a dictionary may have: "ponies" to "pony".
#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "dictionary/collation.h"

namespace dictionary {

// So many forms of a word are tried, none of more characters.
inline constexpr size_t most_forms = 1000, longest_form = 1024;
// What a section has beyond these is left out.
inline constexpr size_t most_strings = 1 << 16, most_parts = 1 << 18;

class Morphology {
  public:
    Morphology() = default;
    // Reads a section; a string of a kind that is not known is reported on standard error. Throws
    // bad_alloc.
    Morphology(std::span<const uint8_t> section, const Collation &collation);

    // Calls `found` with each form of a word in the order of the rules, until it answers true.
    // Characters are compared as the collation has them. Throws bad_alloc.
    // @param word without characters that the collation drops
    void try_forms(WordView word, const Collation &collation,
                   const std::function<bool(WordView)> &found) const;

  private:
    // Of text_: a pattern or a variant.
    struct Part {
        uint32_t start, size;
    };
    // Of parts_: patterns, and the variants behind them.
    struct Rule {
        uint32_t first_pattern, first_variant, end;
        bool is_at_end; // of a word, or at its beginning
    };
    using Class = std::bitset<0x10000>; // of collated characters
    struct Attempt;

    WordView text(const Part &part) const { return WordView(text_).subspan(part.start, part.size); }
    void read_string(WordView string, const Collation &collation);
    void define_class(WordView string, const Collation &collation);
    void add_rule(WordView string);
    uint32_t add_parts(WordView list);
    bool try_rule(const Rule &rule, Attempt &attempt) const;
    bool match(WordView pattern, bool is_at_end, Attempt &attempt) const;

    Word text_;
    std::vector<Part> parts_;
    std::vector<Rule> rules_;
    std::vector<Class> classes_;
};

} // namespace dictionary
