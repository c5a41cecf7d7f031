// SPDX-License-Identifier: MIT
// The index of a dictionary: where each container lies, and with which word it begins.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "dictionary/collation.h"

namespace dictionary {

class Index {
  public:
    Index() = default;
    // Reads a section. Throws bad_alloc.
    // @param start where the first container begins in the file
    Index(std::span<const uint8_t> section, uint32_t start, const Collation &collation);

    // How many containers there are.
    size_t size() const { return entries_.empty() ? 0 : entries_.size() - 1; }
    uint64_t offset(size_t container) const { return entries_[container].offset; }
    // Of a container, as it is packed.
    size_t packed_size(size_t container) const {
        return entries_[container + 1].offset - entries_[container].offset;
    }
    WordView first_word(size_t container) const;

    // The last container whose first word does not come after a word, or the first container.
    // However the index is ordered, the search ends.
    size_t find(WordView word) const;
    // The last container whose first word comes before a word, or the first container.
    size_t find_before(WordView word) const;

  private:
    struct Entry {
        uint32_t offset; // the largest number when it lies beyond
        uint32_t word;   // where its first word begins in words_
    };
    template <class Condition>
    size_t last_where(Condition holds) const;

    std::vector<Entry> entries_; // one more than there are containers
    Word words_;                 // the collated first words, one behind the other
};

} // namespace dictionary
