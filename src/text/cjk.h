// SPDX-License-Identifier: MIT
// The font of Chinese and Japanese characters that the current face lacks.
#pragma once

#include <cstdint>

#include "kelvane/text.h"

namespace text {

// Characters that the font is for.
inline bool is_cjk(uint16_t c) {
    return (c >= 0x4E00 && c <= 0x9FA5) || c == 0x3002 || (c >= 0x3040 && c <= 0x30FF) ||
           (c >= 0x31F0 && c <= 0x31FF);
}

// select_need_font() has put a font aside.
bool cjk_is_used();
// Replaces the font that is put aside, null for none. Returns the former one.
ifont *put_aside_for_cjk(ifont *font);
// A font is about to be closed.
void forget_font(const ifont *font);
// Closes the fonts.
void reset_cjk();

} // namespace text
