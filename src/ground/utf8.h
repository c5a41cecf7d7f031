// SPDX-License-Identifier: MIT
// UTF-8 as 16-bit characters, the way all text is read here.
//
// Every ill-formed sequence (a stray or missing continuation byte, an overlong form, a surrogate)
// and every character beyond U+FFFF becomes one U+FFFD. An ill-formed sequence ends before the
// first byte that cannot continue it, so that the character after it is not lost.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace utf8 {

inline constexpr uint16_t replacement = 0xFFFD;

// Decodes the character at s, which lies before end, and moves s past it.
uint16_t next(const char *&s, const char *end);

// Decodes up to `room` characters into out. Returns their number; s is moved past them.
size_t decode(const char *&s, const char *end, uint16_t *out, size_t room);

// The address of the character `count` characters behind s, or end.
const char *skip(const char *s, const char *end, size_t count);

// The character of a number; empty for numbers that are no characters, and for 0.
std::string encoded(unsigned long character);

} // namespace utf8
