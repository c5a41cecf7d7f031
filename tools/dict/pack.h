// SPDX-License-Identifier: MIT
// Distributes sorted words to containers and packs those.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "dictionary/collation.h"
#include "writer.h"

namespace dict {

// An entry and what its word collates to.
struct Sorted {
    const Entry *entry;
    uint32_t key, key_size; // of Words::keys
};

struct Words {
    std::vector<Sorted> sorted;
    dictionary::Word keys;

    dictionary::WordView key(const Sorted &s) const {
        return dictionary::WordView(keys).subspan(s.key, s.key_size);
    }
};

struct PackedContainer {
    const Entry *first = nullptr; // null: nothing of it fits
    std::string bytes;
    size_t words = 0, unpacked = 0;
    std::vector<LeftOut> left_out;
};

// Bytes of an entry in a container.
size_t record_size(const Entry &e);

std::vector<PackedContainer> pack(const Words &words, const Plan &plan);

// All of a text, packed for a section.
std::string deflated(std::string text);

} // namespace dict
