// SPDX-License-Identifier: MIT
// What the kinds of text ask for: their layout, and what may be typed. Nothing here draws.
#pragma once

#include <cstddef>
#include <span>

namespace keyboard {

// Two digits of a template, and what they may be.
struct Field {
    size_t at;
    int least, most;
};

struct Kind {
    const char *layout; // name of its file; null for the user's layouts
    bool has_shift;     // otherwise shift does nothing
    const char *mask;   // the characters of a template that are typed over; null for none
    std::span<const Field> fields; // that are kept in their range
};

// The kind in the low bits of the flags.
const Kind &kind_of(int flags);

} // namespace keyboard
