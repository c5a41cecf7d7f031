// SPDX-License-Identifier: MIT
// Unpacks containers in the place of the one that was used longest ago.
#include "dictionary/cache.h"

#include <algorithm>
#include <cstdio>
#include <numeric>

namespace dictionary {
namespace {

// Behind the bytes of a container: as a length, they end it; in a text, they end that.
constexpr size_t spare_bytes = 2;

// What it costs to turn to a container, in bytes: also an empty one is asked of the file.
constexpr uint64_t turning_to_one = 1 << 10;

} // namespace

Cache::Cache(uint32_t limit) : limit_(limit) {
    for (Slot &slot : slots_)
        slot.bytes = std::make_unique_for_overwrite<uint8_t[]>(limit + spare_bytes);
}

// The slot of a container, or the one to put it into.
Cache::Slot &Cache::find(size_t number) {
    const auto found = std::ranges::find(slots_, number, &Slot::number);
    return found != slots_.end() ? *found : *std::ranges::min_element(slots_, {}, &Slot::last_used);
}

Container *Cache::open(size_t number, File &file, const Index &index) {
    Slot &slot = find(number);
    if (slot.number != number && !fill(slot, number, file, index)) return nullptr;
    slot.last_used = ++uses_;
    return &slot.container;
}

uint64_t Cache::searched() const {
    return std::accumulate(
        slots_.begin(), slots_.end(), unpacked_,
        [](uint64_t sum, const Slot &slot) { return sum + slot.container.walked(); });
}

bool Cache::fill(Slot &slot, size_t number, File &file, const Index &index) {
    slot.number = none;
    unpacked_ += turning_to_one + index.packed_size(number);
    packed_.resize(index.packed_size(number));
    if (!file.read(index.offset(number), packed_)) {
        std::fprintf(stderr, "error reading container %zu\n", number);
        return false;
    }
    const auto size = file.unpack(packed_, {slot.bytes.get(), limit_});
    if (!size) {
        std::fprintf(stderr, "error unpacking container %zu\n", number);
        return false;
    }
    unpacked_ += *size;
    std::fill_n(&slot.bytes[*size], spare_bytes, uint8_t{0});
    slot.container.read({slot.bytes.get(), *size});
    slot.number = number;
    return true;
}

} // namespace dictionary
