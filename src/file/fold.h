// SPDX-License-Identifier: MIT
// Comparison without regard to the case of ASCII letters, whatever the locale says.
#pragma once

#include <cstddef>

constexpr int fold_case(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 'A' && byte <= 'Z' ? byte + ('a' - 'A') : byte;
}

// Compares at most `n` bytes of two strings: below 0, 0 or above 0.
constexpr int compare_folded(const char *a, const char *b, std::size_t n) {
    for (; n; ++a, ++b, --n) {
        const int difference = fold_case(*a) - fold_case(*b);
        if (difference || !*a) return difference;
    }
    return 0;
}
