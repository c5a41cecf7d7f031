// SPDX-License-Identifier: MIT
// Whether a word can be looked up as it is.
#pragma once

#include <string_view>

#include "ground/utf8.h"

namespace dict {

enum class Utf8 { plain, beyond_16_bits, broken };

// The decoder has one answer for both kinds of characters that dictionaries cannot have, which
// differs from theirs.
inline Utf8 check_utf8(std::string_view text) {
    constexpr std::string_view replacement = "\xEF\xBF\xBD";
    Utf8 worst = Utf8::plain;
    for (const char *s = text.data(), *const end = s + text.size(); s < end;) {
        const char *const start = s;
        if (utf8::next(s, end) != utf8::replacement) continue;
        const std::string_view character(start, static_cast<size_t>(s - start));
        if (character == replacement) continue;
        if (character.size() != 4) return Utf8::broken;
        worst = Utf8::beyond_16_bits;
    }
    return worst;
}

} // namespace dict
