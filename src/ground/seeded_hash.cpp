// SPDX-License-Identifier: MIT
// Multiplies words with a seed of the process: fast, and nobody outside can foresee the outcome.
#include "ground/seeded_hash.h"

#include <cstring>
#include <unistd.h>

namespace ground {
namespace {

// The product of two words, folded into one: each bit of it depends on every bit of both. Machines
// of 32 bits have no type for the whole product.
uint64_t fold(uint64_t a, uint64_t b) {
    const uint64_t a_low = static_cast<uint32_t>(a), a_high = a >> 32;
    const uint64_t b_low = static_cast<uint32_t>(b), b_high = b >> 32;
    const uint64_t middle = a_high * b_low + (a_low * b_low >> 32);
    const uint64_t lower = a_low * b_high + static_cast<uint32_t>(middle);
    return (a * b) ^ (a_high * b_high + (middle >> 32) + (lower >> 32));
}

// Two numbers that nobody who writes a file can know.
struct Secret {
    uint64_t seed = 0x243f6a8885a308d3, factor = 0x13198a2e03707344;

    Secret() {
        // Without a source of chance the constants still spread all names that mean no harm.
        static_cast<void>(getentropy(this, sizeof *this));
        factor |= 1;
    }
};

} // namespace

uint64_t seeded_hash(std::string_view name) {
    static const Secret chosen;
    uint64_t hash = chosen.seed ^ name.size();
    uint64_t word = 0;
    for (; name.size() >= sizeof word; name.remove_prefix(sizeof word)) {
        std::memcpy(&word, name.data(), sizeof word);
        hash = fold(hash ^ word, chosen.factor);
    }
    word = 0;
    for (const char c : name) word = word << 8 | static_cast<unsigned char>(c);
    return fold(hash ^ word, chosen.factor);
}

} // namespace ground
