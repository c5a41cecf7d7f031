// SPDX-License-Identifier: MIT
// How words are compared unless a file says otherwise.
#pragma once

#include <cstdint>
#include <map>
#include <string_view>
#include <utility>
#include <vector>

namespace dict {

// What each character that is not itself is compared as; 0 drops it.
using Letters = std::map<uint16_t, uint16_t>;

// Small letters without accents; punctuation is dropped, all kinds of blanks are one. Letters that
// are a language's own stay: "å" in Swedish is no "a".
// @param language a code such as "sv"; an unknown one, or an empty one, has no letters of its own
Letters default_letters(std::string_view language);

// Whether a language has letters of its own.
bool has_own_letters(std::string_view language);

// Those of them that change anything.
std::vector<std::pair<uint16_t, uint16_t>> pairs_of(const Letters &letters);

} // namespace dict
