// SPDX-License-Identifier: MIT
// Fills the tables of steps as characters are met.
#include "text/advance_cache.h"

#include <algorithm>

namespace text {
namespace {

constexpr size_t columns = 256, first_slots = 1024, most_slots = 65536;
const AdvanceCache::Page nothing_known{};

} // namespace

AdvanceCache::AdvanceCache() : steps_(2 * columns, unknown) {
    pages_.fill(nothing_known.data());
}

AdvanceEntry &AdvanceCache::own_entry(uint16_t c) {
    std::unique_ptr<Page> &page = own_pages_[c >> 8];
    if (!page) {
        page = std::make_unique<Page>();
        pages_[c >> 8] = page->data();
    }
    return (*page)[c & 255];
}

void AdvanceCache::add_number(uint16_t c) {
    AdvanceEntry &entry = own_entry(c);
    const size_t number = steps_.size() / columns;
    if (entry.number != AdvanceEntry::unnumbered || number >= columns) return;
    steps_.resize(steps_.size() + columns, unknown);
    entry.number = static_cast<uint8_t>(number);
    steps_[AdvanceEntry::line_start * columns + number] = entry.width;
}

int16_t AdvanceCache::find_kerning(uint16_t first, uint16_t second) const {
    const AdvanceEntry left = entry(first), right = entry(second);
    if (left.number != AdvanceEntry::unnumbered && right.number != AdvanceEntry::unnumbered) {
        const int16_t step = steps_[left.number * columns + right.number];
        return step != unknown ? static_cast<int16_t>(step - right.width) : unknown;
    }
    if (pairs_.empty()) return unknown;
    const Pair &pair = pairs_[slot_of(key(first, second))];
    return pair.key != 0 ? static_cast<int16_t>(pair.kerning) : unknown;
}

void AdvanceCache::set_kerning(uint16_t first, uint16_t second, int16_t kerning) {
    const AdvanceEntry left = entry(first), right = entry(second);
    if (left.number != AdvanceEntry::unnumbered && right.number != AdvanceEntry::unnumbered) {
        steps_[left.number * columns + right.number] = static_cast<int16_t>(kerning + right.width);
        return;
    }
    make_room();
    Pair &pair = pairs_[slot_of(key(first, second))];
    pair_count_ += pair.key == 0;
    pair = {key(first, second), kerning};
}

// The pair's slot, or the free one where it belongs.
size_t AdvanceCache::slot_of(uint32_t key) const {
    const size_t mask = pairs_.size() - 1;
    size_t slot = (key * 0x9E3779B1U >> 7) & mask;
    while (pairs_[slot].key != 0 && pairs_[slot].key != key) slot = (slot + 1) & mask;
    return slot;
}

void AdvanceCache::make_room() {
    if (2 * (pair_count_ + 1) <= pairs_.size()) return;
    std::vector<Pair> old(std::min(std::max(first_slots, 2 * pairs_.size()), most_slots));
    old.swap(pairs_);
    if (old.size() == most_slots) old.clear();
    pair_count_ = 0;
    for (const Pair &pair : old) {
        if (pair.key == 0) continue;
        pairs_[slot_of(pair.key)] = pair;
        ++pair_count_;
    }
}

} // namespace text
