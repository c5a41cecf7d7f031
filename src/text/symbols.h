// SPDX-License-Identifier: MIT
// The symbols of DrawSymbol() and of the codes 17 to 23.
#pragma once

#include <cstdint>

#include "text/glyph.h"

namespace text {

// The number of the symbol that a code draws.
int symbol_of_code(uint16_t code);

// The width and height of a symbol in a font; it stands on the baseline.
inline int64_t symbol_size(int64_t baseline) {
    return baseline * 2 / 3;
}

// Its picture; null for a number that has none. Stays until the next call.
const Glyph *symbol_glyph(int number, int64_t size, Mode mode);

} // namespace text
