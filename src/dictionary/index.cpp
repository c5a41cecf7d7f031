// SPDX-License-Identifier: MIT
// Reads and searches the index.
#include "dictionary/index.h"

#include <algorithm>
#include <cstring>
#include <optional>

#include "dictionary/format.h"

namespace dictionary {
namespace {

struct Listed {
    uint16_t size;
    const char *word;
};

// Takes an entry off a section; nothing at the end of the list, or where it is cut.
std::optional<Listed> take_entry(std::span<const uint8_t> &section) {
    if (section.size() < 2 || read_u16(section.data()) == 0) return std::nullopt;
    const auto word = section.subspan(2);
    const auto end = std::ranges::find(word, uint8_t{0});
    if (end == word.end()) return std::nullopt;
    const Listed entry{read_u16(section.data()), reinterpret_cast<const char *>(word.data())};
    section = word.subspan(static_cast<size_t>(end - word.begin()) + 1);
    return entry;
}

size_t count_entries(std::span<const uint8_t> section) {
    size_t count = 0;
    while (take_entry(section)) ++count;
    return count;
}

uint32_t saturated_sum(uint32_t a, uint16_t b) {
    return b > UINT32_MAX - a ? UINT32_MAX : a + b;
}

} // namespace

Index::Index(std::span<const uint8_t> section, uint32_t start, const Collation &collation) {
    section = section.first(std::min(section.size(), most_index_bytes));
    const size_t count = count_entries(section);
    if (count == 0) return;
    entries_.reserve(count + 1);
    words_.reserve(section.size()); // no word has more characters than bytes
    while (const auto entry = take_entry(section)) {
        entries_.push_back({start, static_cast<uint32_t>(words_.size())});
        collation.append(entry->word, words_);
        start = saturated_sum(start, entry->size);
    }
    entries_.push_back({start, static_cast<uint32_t>(words_.size())});
}

WordView Index::first_word(size_t container) const {
    const uint32_t begin = entries_[container].word;
    return WordView(words_).subspan(begin, entries_[container + 1].word - begin);
}

template <class Condition>
size_t Index::last_where(Condition holds) const {
    size_t low = 0, high = size();
    while (high - low >= 2) {
        const size_t middle = low + (high - low) / 2;
        (holds(first_word(middle)) ? low : high) = middle;
    }
    return low;
}

size_t Index::find(WordView word) const {
    return last_where([&](WordView first) { return !is_before(word, first); });
}

size_t Index::find_before(WordView word) const {
    return last_where([&](WordView first) { return is_before(first, word); });
}

} // namespace dictionary
