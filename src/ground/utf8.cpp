// SPDX-License-Identifier: MIT
#include "ground/utf8.h"

namespace utf8 {
namespace {

// What may follow a first byte.
struct Lead {
    int continuations;       // 0: cannot begin a character
    uint8_t lowest, highest; // of the second byte: keeps out overlong forms and surrogates
};

Lead lead_of(uint8_t byte) {
    if (byte < 0xC2 || byte > 0xF4) return {0, 0, 0};
    if (byte < 0xE0) return {1, 0x80, 0xBF};
    if (byte < 0xF0)
        return {2, uint8_t(byte == 0xE0 ? 0xA0 : 0x80), uint8_t(byte == 0xED ? 0x9F : 0xBF)};
    return {3, uint8_t(byte == 0xF0 ? 0x90 : 0x80), uint8_t(byte == 0xF4 ? 0x8F : 0xBF)};
}

uint16_t next_beyond_ascii(const char *&s, const char *end) {
    const uint8_t first = static_cast<uint8_t>(*s++);
    Lead lead = lead_of(first);
    if (lead.continuations == 0) return replacement;
    const bool beyond_16_bits = lead.continuations == 3;
    unsigned code = first & (0x3FU >> lead.continuations);
    for (; lead.continuations > 0; --lead.continuations, lead.lowest = 0x80, lead.highest = 0xBF) {
        const uint8_t byte = s < end ? static_cast<uint8_t>(*s) : 0;
        if (byte < lead.lowest || byte > lead.highest) return replacement;
        code = code << 6 | (byte & 0x3FU);
        ++s;
    }
    return beyond_16_bits ? replacement : static_cast<uint16_t>(code);
}

} // namespace

uint16_t next(const char *&s, const char *end) {
    const uint8_t byte = static_cast<uint8_t>(*s);
    if (byte >= 0x80) return next_beyond_ascii(s, end);
    ++s;
    return byte;
}

size_t decode(const char *&s, const char *end, uint16_t *out, size_t room) {
    size_t count = 0;
    while (count < room && s < end) out[count++] = next(s, end);
    return count;
}

const char *skip(const char *s, const char *end, size_t count) {
    for (; count > 0 && s < end; --count) next(s, end);
    return s;
}

} // namespace utf8
