// SPDX-License-Identifier: MIT
// Texts by name, from files that anybody may have written: whatever the names, each is found in the
// same short time.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "ground/seeded_hash.h"

namespace ground {

struct SeededHash {
    using is_transparent = void;
    size_t operator()(std::string_view name) const { return seeded_hash(name); }
};

// A text stays where it is until it is replaced or the table is cleared.
using TextTable = std::unordered_map<std::string, std::string, SeededHash, std::equal_to<>>;

// Null when the table has none of that name.
inline const char *find_text(const TextTable &table, std::string_view name) {
    const auto found = table.find(name);
    return found != table.end() ? found->second.c_str() : nullptr;
}

// Adds a text or replaces it, and leaves it alone when it is the same. Name and text may lie in the
// table. Throws bad_alloc; then nothing has changed.
inline void set_text(TextTable &table, std::string_view name, std::string_view text) {
    const auto found = table.find(name);
    if (found == table.end())
        table.emplace(name, text);
    else if (found->second != text)
        found->second = std::string(text);
}

} // namespace ground
