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

constexpr ptrdiff_t block = 8;

bool is_ascii(char byte) {
    return static_cast<uint8_t>(byte) < 0x80;
}

bool is_ascii_block(const char *s) {
    uint64_t bytes;
    std::memcpy(&bytes, s, block);
    return (bytes & 0x8080808080808080U) == 0;
}

bool is_two_byte_letter(const char *s) {
    const unsigned first = static_cast<uint8_t>(s[0]), second = static_cast<uint8_t>(s[1]);
    return (first - 0xC2U < 0x1EU) & ((second & 0xC0U) == 0x80U);
}

// A run of ASCII, eight bytes at a time.
uint16_t *decode_ascii(const char *&s, const char *end, uint16_t *out, const uint16_t *out_end) {
    for (; end - s >= block && out_end - out >= block && is_ascii_block(s); s += block)
        for (int i = 0; i < block; ++i) *out++ = static_cast<uint8_t>(s[i]);
    while (s < end && out < out_end && is_ascii(*s)) *out++ = static_cast<uint8_t>(*s++);
    return out;
}

// A run of words of two-byte letters with single spaces, or the like, between them: a loop of its
// own, as that is what the branches then expect.
uint16_t *decode_pairs(const char *&s, const char *end, uint16_t *out, const uint16_t *out_end) {
    while (end - s >= 3 && out_end - out >= 2) {
        if (!is_two_byte_letter(s)) {
            if (!is_ascii(s[0]) || !is_two_byte_letter(s + 1)) break;
            *out++ = static_cast<uint8_t>(*s++);
        }
        *out++ = static_cast<uint16_t>((s[0] & 0x1F) << 6 | (s[1] & 0x3F));
        s += 2;
    }
    return out;
}

} // namespace

size_t decode(const char *&s, const char *end, uint16_t *out, size_t room) {
    const uint16_t *const begin = out, *const out_end = out + room;
    while (s < end && out < out_end) {
        if (!is_ascii(*s)) {
            uint16_t *const before = out;
            out = decode_pairs(s, end, out, out_end);
            if (out == before) *out++ = next(s, end);
        } else {
            out = decode_ascii(s, end, out, out_end);
        }
    }
    return static_cast<size_t>(out - begin);
}

const char *skip(const char *s, const char *end, size_t count) {
    for (; count > 0 && s < end; --count) next(s, end);
    return s;
}

} // namespace utf8
