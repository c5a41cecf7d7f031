// SPDX-License-Identifier: MIT
// Makes the bytes of a dictionary file from words and articles.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace dict {

// The texts are kept by whoever made it.
struct Entry {
    std::string_view word, article;
    size_t line = 0; // of its source
};

// Why an entry is not in the dictionary.
enum class Reason {
    collates_to_nothing,
    beyond_16_bits, // has characters above U+FFFF
    not_utf8,
    word_too_long,
    too_large, // alone
    no_room,   // with those that collate to the same
    repeated   // word and article are there already
};

struct LeftOut {
    const Entry *entry;
    Reason reason;
};

// What a dictionary has beside its words.
struct Sides {
    std::vector<std::pair<uint16_t, uint16_t>> collation; // from, to
    std::u16string morphology;                            // strings with their NULs
    std::string keyboard;
};

inline constexpr size_t longest_word = 4 << 10; // in bytes

struct Plan {
    size_t container_bytes = 3 << 10; // a container that reaches this ends
    unsigned threads = 0;             // 0: as many as there are processors
    // Told how many of how many containers are packed.
    std::function<void(size_t, size_t)> progress = [](size_t, size_t) {};
};

struct Written {
    std::string bytes; // empty when no word is left
    std::vector<LeftOut> left_out;
    size_t words = 0, containers = 0;
};

// Sorts, packs and lays out; equal input gives equal bytes. What is left out points to `entries`.
// Throws bad_alloc, and std::runtime_error when a part would be larger than what can be opened.
Written write(const std::vector<Entry> &entries, const Sides &sides, const Plan &plan = {});

} // namespace dict
