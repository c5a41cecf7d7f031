// SPDX-License-Identifier: MIT
// Finds the records of a container and the words in them.
#include "dictionary/container.h"

#include <algorithm>
#include <cstring>

#include "dictionary/format.h"

namespace dictionary {
namespace {

constexpr size_t smallest_record = record_prefix + 2; // two empty texts

// So many bytes of equal headwords, and of the spelling beside each, are compared in one search.
// Only containers that were made to hurt have more; what follows counts as spelt no better.
constexpr uint64_t most_compared = 32 << 20;

// Whether a record, without its length, holds two texts with their NULs.
bool is_whole(std::span<const uint8_t> record) {
    const auto *const end = record.data() + record.size();
    const auto *nul = static_cast<const uint8_t *>(std::memchr(record.data(), 0, record.size()));
    if (!nul || ++nul == end) return false;
    return end[-1] == 0 || std::memchr(nul, 0, static_cast<size_t>(end - nul));
}

// The length of the record at the front; 0 when none is whole there.
size_t first_record(std::span<const uint8_t> bytes) {
    if (bytes.size() < smallest_record) return 0;
    const size_t length = read_u16(bytes.data());
    const bool is_inside = length >= smallest_record && length <= bytes.size();
    return is_inside && is_whole(bytes.subspan(record_prefix, length - record_prefix)) ? length : 0;
}

} // namespace

void Container::read(std::span<uint8_t> bytes) {
    bytes_ = reinterpret_cast<char *>(bytes.data());
    order_ = Order::unknown;
    was_searched_ = false;
    records_.clear();
    std::span<const uint8_t> rest = bytes;
    while (size() < most_records) {
        const size_t length = first_record(rest);
        if (length == 0) break;
        records_.push_back(static_cast<uint32_t>(rest.data() - bytes.data() + record_prefix));
        rest = rest.subspan(length);
    }
    is_damaged_ = rest.size() == 1 || (rest.size() >= record_prefix && read_u16(rest.data()) != 0);
}

Entry Container::entry(size_t record) const {
    char *const word = headword(record);
    return {word, word + std::strlen(word) + 1};
}

size_t Container::record_bytes(size_t record) const {
    return read_u16(reinterpret_cast<const uint8_t *>(headword(record) - record_prefix));
}

const char *Container::walk(size_t record) {
    walked_ += record_bytes(record);
    return headword(record);
}

bool Container::is_sorted(const Collation &collation) {
    Word before, word;
    for (size_t i = 0; i < size(); ++i, before.swap(word)) {
        word.clear();
        collation.append(walk(i), word);
        if (is_before(word, before)) return false;
    }
    return true;
}

// The order is looked at when a container is searched again: to look costs as much as a scan. Where
// headwords are in order, their middle tells on which side a word is.
size_t Container::first_not_before(WordView word, const Collation &collation) {
    if (was_searched_ && order_ == Order::unknown)
        order_ = is_sorted(collation) ? Order::sorted : Order::other;
    was_searched_ = true;
    const auto is_before_word = [&](const uint32_t &place) {
        return collation.order(walk(static_cast<size_t>(&place - records_.data())), word) < 0;
    };
    const auto found = order_ == Order::sorted
                           ? std::partition_point(records_.begin(), records_.end(), is_before_word)
                           : std::find_if_not(records_.begin(), records_.end(), is_before_word);
    return static_cast<size_t>(found - records_.begin());
}

Container::Found Container::find(const char *spelling, WordView word, const Collation &collation) {
    const size_t spelling_bytes = std::strlen(spelling);
    size_t least = SIZE_MAX;
    uint64_t compared = 0;
    Found best{size() - 1, false};
    for (size_t i = first_not_before(word, collation); i < size(); ++i) {
        const int order = collation.order(walk(i), word);
        if (order > 0) {
            if (!best.is_exact) best.record = i;
            break;
        }
        if (order < 0 || compared > most_compared) continue;
        compared += record_bytes(i) + spelling_bytes;
        const size_t difference = collation.difference(headword(i), spelling);
        if (difference < least) {
            least = difference;
            best = {i, true};
        }
    }
    return best;
}

} // namespace dictionary
