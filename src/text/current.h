// SPDX-License-Identifier: MIT
// The current font, and what drawing and measuring need of it at once.
#pragma once

#include "internal.h"
#include "text/cjk.h"
#include "text/face.h"
#include "text/text.h"

namespace text {

// Of kvstate.current_font; no cache when that is null or has no face.
struct Current {
    SizeCache *cache = nullptr;
    Mode mode = Mode::antialiased;
    int baseline = 0;
};
extern Current current;

inline bool has_face() {
    return current.cache != nullptr;
}

// OpenFont() that throws bad_alloc, and so tells a lack of memory from that of a font.
ifont *open_font(const char *name, int size, int aa);

// What a code of the text switches to; null when no such font is registered.
ifont *registered_font(int number);

} // namespace text
