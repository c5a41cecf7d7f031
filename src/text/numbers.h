// SPDX-License-Identifier: MIT
// Numbers in a text, such as "4,312", "-5" and "10/12", which lines may keep whole.
#pragma once

#include <cstdint>

namespace text {

constexpr bool is_digit(uint16_t c) {
    return (c >= '0' && c <= '9') || (c >= 0x660 && c <= 0x669) || (c >= 0x6F0 && c <= 0x6F9) ||
           (c >= 0xFF10 && c <= 0xFF19);
}

// What stands within numbers or before them: signs of ASCII but spaces and brackets, those of
// Arabic numbers, the minus sign, and the apostrophe and the spaces that part thousands.
constexpr bool is_number_sign(uint16_t c) {
    return (c > ' ' && c < '0' && c != '(' && c != ')' && c != '"') || c == ':' ||
           (c >= 0x66A && c <= 0x66C) || c == 0x2212 || c == 0x2019 || c == 0xA0 || c == 0x202F;
}

// Whether the place before text[at] is within a number. Characters from `begin` to `at` are looked
// at, and `next`, the one behind text[at]; 0 where there is none.
constexpr bool is_within_number(const uint16_t *text, int begin, int at, uint16_t next) {
    if (at <= begin) return false;
    const uint16_t before = text[at - 1], c = text[at];
    if (is_digit(before)) return is_digit(c) || (is_number_sign(c) && is_digit(next));
    if (!is_digit(c) || !is_number_sign(before)) return false;
    // A sign between a word and digits, as the hyphen of "MP-3", is the word's.
    const uint16_t first = at - 1 > begin ? text[at - 2] : uint16_t{' '};
    return is_digit(first) || first <= ' ' || is_number_sign(first);
}

} // namespace text
