// SPDX-License-Identifier: MIT
// Decodes UTF-8, several bytes at a time where text is plain.
#include "ground/utf8.h"

#include <array>
#include <cstring>

#include "ground/vectors.h"

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

constexpr ptrdiff_t block = 16;

bool is_ascii(char byte) {
    return static_cast<uint8_t>(byte) < 0x80;
}

bool is_ascii_block(const char *s) {
    uint64_t halves[2];
    std::memcpy(halves, s, block);
    return ((halves[0] | halves[1]) & 0x8080808080808080U) == 0;
}

bool is_two_byte_letter(const char *s) {
    const unsigned first = static_cast<uint8_t>(s[0]), second = static_cast<uint8_t>(s[1]);
    return (first - 0xC2U < 0x1EU) & ((second & 0xC0U) == 0x80U);
}

// A run of ASCII.
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

#ifdef KELVANE_X86_64
// For each set of characters that begin in eight bytes, given as bits: how many, and the shuffle
// that moves their 16-bit lanes to the front.
struct Packing {
    std::array<std::array<uint8_t, block>, 256> lanes{};
    std::array<uint8_t, 256> counts{};
};

constexpr Packing packing = [] {
    Packing p;
    for (size_t set = 0; set < 256; ++set)
        for (size_t lane = 0; lane < 8; ++lane)
            if ((set >> lane & 1) != 0) {
                const size_t at = 2U * p.counts[set]++;
                p.lanes[set][at] = static_cast<uint8_t>(2 * lane);
                p.lanes[set][at + 1] = static_cast<uint8_t>(2 * lane + 1);
            }
    return p;
}();

// The characters that begin in eight bytes, widened to 16-bit lanes, which the lanes of `next`
// follow.
[[gnu::target("ssse3")]] inline uint16_t *put_eight(__m128i first, __m128i next, unsigned starts,
                                                    uint16_t *out) {
    const __m128i pair = _mm_or_si128(_mm_slli_epi16(_mm_and_si128(first, _mm_set1_epi16(0x1F)), 6),
                                      _mm_and_si128(next, _mm_set1_epi16(0x3F)));
    const __m128i is_ascii = _mm_cmplt_epi16(first, _mm_set1_epi16(0x80));
    const __m128i all =
        _mm_or_si128(_mm_and_si128(is_ascii, first), _mm_andnot_si128(is_ascii, pair));
    const auto *lanes = reinterpret_cast<const __m128i *>(packing.lanes[starts].data());
    _mm_storeu_si128(reinterpret_cast<__m128i *>(out),
                     _mm_shuffle_epi8(all, _mm_loadu_si128(lanes)));
    return out + packing.counts[starts];
}

// Blocks of well-formed characters of one and two bytes. The idea is that of J. Keiser and D.
// Lemire, "Validating UTF-8 in less than one instruction per byte", and of simdutf.
[[gnu::target("ssse3")]] uint16_t *decode_blocks(const char *&s, const char *end, uint16_t *out,
                                                 const uint16_t *out_end) {
    const __m128i zero = _mm_setzero_si128();
    while (end - s > block && out_end - out >= block) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i *>(s));
        const __m128i next = _mm_loadu_si128(reinterpret_cast<const __m128i *>(s + 1));
        const auto below = [&bytes](int limit) {
            const __m128i limits = _mm_set1_epi8(static_cast<char>(limit));
            return static_cast<unsigned>(_mm_movemask_epi8(_mm_cmplt_epi8(bytes, limits)));
        };
        const unsigned continuations = below(0xC0 - 256), beyond_ascii = below(0);
        const unsigned leads = below(0xE0 - 256) & ~below(0xC2 - 256);
        if ((leads | continuations) != beyond_ascii || (leads << 1 & 0xFFFF) != continuations)
            break;
        const unsigned cut = leads >> 15; // the last character goes on behind the block
        const unsigned starts = ~continuations & (0xFFFF >> cut);
        out = put_eight(_mm_unpacklo_epi8(bytes, zero), _mm_unpacklo_epi8(next, zero),
                        starts & 0xFF, out);
        out = put_eight(_mm_unpackhi_epi8(bytes, zero), _mm_unpackhi_epi8(next, zero), starts >> 8,
                        out);
        s += block - cut;
    }
    return out;
}

bool has_blocks() {
    return __builtin_cpu_supports("ssse3");
}
#else
uint16_t *decode_blocks(const char *&, const char *, uint16_t *out, const uint16_t *) {
    return out;
}
bool has_blocks() {
    return false;
}
#endif

} // namespace

size_t decode(const char *&s, const char *end, uint16_t *out, size_t room) {
    const uint16_t *const begin = out, *const out_end = out + room;
    const bool is_fast = has_blocks();
    while (s < end && out < out_end) {
        if (!is_ascii(*s)) {
            uint16_t *const before = out;
            if (is_fast) out = decode_blocks(s, end, out, out_end);
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

std::string encoded(unsigned long c) {
    const auto byte = [](unsigned long value) { return static_cast<char>(value); };
    const auto rest = [&](int shift) { return byte(0x80 | (c >> shift & 0x3F)); };
    if (c == 0 || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) return {};
    if (c < 0x80) return {byte(c)};
    if (c < 0x800) return {byte(0xC0 | c >> 6), rest(0)};
    if (c < 0x10000) return {byte(0xE0 | c >> 12), rest(6), rest(0)};
    return {byte(0xF0 | c >> 18), rest(12), rest(6), rest(0)};
}

} // namespace utf8
