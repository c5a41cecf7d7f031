// SPDX-License-Identifier: MIT
// An unpacked container: records of headwords and translations, in the order of their headwords.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "dictionary/collation.h"

namespace dictionary {

struct Entry {
    char *headword, *translation;
};

class Container {
  public:
    // Finds the records of unpacked bytes, which stay where they are. They end at the first one
    // that is not whole. Throws bad_alloc.
    void read(std::span<uint8_t> bytes);

    size_t size() const { return records_.size(); }
    // Whether bytes remain behind the last record that are not the end of a container.
    bool is_damaged() const { return is_damaged_; }
    Entry entry(size_t record) const;
    char *headword(size_t record) const { return bytes_ + records_[record]; }
    // The same, for who compares it: its record counts as walked over.
    const char *walk(size_t record);
    // How many bytes were walked over until now, in all that was ever read.
    uint64_t walked() const { return walked_; }

    struct Found {
        size_t record;
        bool is_exact;
    };
    // Scans the records for a word, as far as the first one behind it: of equal headwords the one
    // spelt most like it, else the first one behind it, else the last one. The container is not
    // empty.
    // @param word collated from `spelling`
    Found find(const char *spelling, WordView word, const Collation &collation);

  private:
    size_t record_bytes(size_t record) const;

    enum class Order { unknown, sorted, other };
    // The first record that does not come before a word.
    size_t first_not_before(WordView word, const Collation &collation);
    bool is_sorted(const Collation &collation);

    char *bytes_ = nullptr;
    std::vector<uint32_t> records_; // where the headwords are
    Order order_ = Order::unknown;
    bool was_searched_ = false, is_damaged_ = false;
    uint64_t walked_ = 0;
};

} // namespace dictionary
