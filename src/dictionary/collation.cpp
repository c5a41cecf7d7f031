// SPDX-License-Identifier: MIT
// Compares words as a dictionary wants them compared.
#include "dictionary/collation.h"

#include <algorithm>
#include <numeric>

#include "dictionary/format.h"
#include "ground/utf8.h"

namespace dictionary {
namespace {

// The character at s, which is moved past it; 0, again and again, at the NUL. The decoder stops at
// a NUL by itself.
uint16_t next(const char *&s) {
    constexpr size_t longest_character = 4;
    const auto first = static_cast<unsigned char>(*s);
    if (first >= 0x80) return utf8::next(s, s + longest_character);
    s += first != 0;
    return first;
}

} // namespace

Collation::Collation() {
    // To copy it costs less than to count again for each dictionary.
    static const auto identity = [] {
        Map map;
        std::iota(map.begin(), map.end(), uint16_t{0});
        return map;
    }();
    map_ = identity;
}

void Collation::apply(std::span<const uint8_t> pairs) {
    constexpr size_t pair = 4;
    for (; pairs.size() >= pair; pairs = pairs.subspan(pair))
        map_[read_u16(pairs.data())] = read_u16(&pairs[2]);
}

void Collation::append(const char *utf8, Word &out) const {
    while (const uint16_t c = next(utf8))
        if (const uint16_t collated = map_[c]) out.push_back(collated);
}

Word Collation::collate(const char *utf8) const {
    Word word;
    append(utf8, word);
    return word;
}

Word Collation::without_dropped(const char *utf8) const {
    Word word;
    while (const uint16_t c = next(utf8))
        if (map_[c] != 0) word.push_back(c);
    return word;
}

int Collation::compare_start(const char *&utf8, WordView word) const {
    for (const uint16_t expected : word) {
        uint16_t c, collated = 0;
        while (collated == 0 && (c = next(utf8)) != 0) collated = map_[c];
        if (collated != expected) return collated < expected ? -1 : 1;
    }
    return 0;
}

int Collation::start_order(const char *utf8, WordView word) const {
    return compare_start(utf8, word);
}

int Collation::order(const char *utf8, WordView word) const {
    const int order = compare_start(utf8, word);
    if (order != 0) return order;
    while (const uint16_t c = next(utf8))
        if (map_[c] != 0) return 1;
    return 0;
}

// A dropped character that only one text has does not move the others apart.
size_t Collation::difference(const char *a, const char *b) const {
    const auto is_dropped = [this](uint16_t c) { return c != 0 && map_[c] == 0; };
    size_t count = 0;
    while (*a || *b) {
        const char *after_a = a, *after_b = b;
        const uint16_t in_a = next(after_a), in_b = next(after_b);
        count += in_a != in_b;
        if (is_dropped(in_a) || !is_dropped(in_b)) a = after_a;
        if (is_dropped(in_b) || !is_dropped(in_a)) b = after_b;
    }
    return count;
}

bool is_before(WordView a, WordView b) {
    return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end());
}

} // namespace dictionary
