// SPDX-License-Identifier: MIT
// How often a test does the same again: the sanitizers make each time several times longer.
#pragma once

constexpr int repeats([[maybe_unused]] int usual, [[maybe_unused]] int sanitized) {
#ifdef KELVANE_SANITIZED
    return sanitized;
#else
    return usual;
#endif
}
