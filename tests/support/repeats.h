// SPDX-License-Identifier: MIT
// How often a test does the same again: the sanitizers make each time several times longer.
#pragma once

#include <cstdlib>

constexpr int repeats([[maybe_unused]] int usual, [[maybe_unused]] int sanitized) {
#ifdef KELVANE_SANITIZED
    return sanitized;
#else
    return usual;
#endif
}

// The long form runs when KELVANE_CAMPAIGN is set.
inline int times(int few, int many) {
    return std::getenv("KELVANE_CAMPAIGN") ? many : few;
}
