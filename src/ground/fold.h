// SPDX-License-Identifier: MIT
// Comparison without regard to the case of ASCII letters, whatever the locale says.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace ground {

constexpr int fold_case(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 'A' && byte <= 'Z' ? byte + ('a' - 'A') : byte;
}

// Letters of ASCII, whatever the locale.
constexpr bool is_letter(char c) {
    const int small = fold_case(c);
    return small >= 'a' && small <= 'z';
}

// Compares at most `n` bytes of two strings: below 0, 0 or above 0.
constexpr int compare_folded(const char *a, const char *b, std::size_t n = SIZE_MAX) {
    for (; n; ++a, ++b, --n) {
        const int difference = fold_case(*a) - fold_case(*b);
        if (difference || !*a) return difference;
    }
    return 0;
}

constexpr bool equal_folded(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (fold_case(a[i]) != fold_case(b[i])) return false;
    return true;
}

// The text with small letters.
inline std::string folded(std::string_view text) {
    std::string small(text);
    for (char &c : small) c = static_cast<char>(fold_case(c));
    return small;
}

} // namespace ground
