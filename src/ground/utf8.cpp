// SPDX-License-Identifier: MIT
#include "ground/utf8.h"

#include <cstring>

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

namespace {

// Text is mostly runs of ASCII or of two-byte letters: eight bytes at a time while it is ASCII.
size_t decode_ascii(const char *&s, const char *end, uint16_t *out, size_t room) {
    size_t count = 0;
    while (room - count >= 8 && end - s >= 8) {
        uint64_t bytes;
        std::memcpy(&bytes, s, 8);
        if ((bytes & 0x8080808080808080U) != 0) break;
        for (int i = 0; i < 8; ++i) out[count + i] = static_cast<uint8_t>(s[i]);
        s += 8;
        count += 8;
    }
    return count;
}

bool is_two_byte_letter(uint8_t first, uint8_t second) {
    return first >= 0xC2 && first < 0xE0 && (second & 0xC0) == 0x80;
}

} // namespace

size_t decode(const char *&s, const char *end, uint16_t *out, size_t room) {
    size_t count = 0;
    while (count < room && s < end) {
        const auto first = static_cast<uint8_t>(*s);
        if (first < 0x80) {
            count += decode_ascii(s, end, out + count, room - count);
            while (count < room && s < end && static_cast<uint8_t>(*s) < 0x80)
                out[count++] = static_cast<uint8_t>(*s++);
        } else if (end - s >= 2 && is_two_byte_letter(first, static_cast<uint8_t>(s[1]))) {
            out[count++] = static_cast<uint16_t>((first & 0x1F) << 6 | (s[1] & 0x3F));
            s += 2;
        } else {
            out[count++] = next(s, end);
        }
    }
    return count;
}

const char *skip(const char *s, const char *end, size_t count) {
    for (; count > 0 && s < end; --count) next(s, end);
    return s;
}

} // namespace utf8
