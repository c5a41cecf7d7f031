// SPDX-License-Identifier: MIT
// What other areas need of fonts and text beyond the public names.
#pragma once

#include <string>

#include "kelvane/text.h"

namespace text {

// The library's own fonts; "default", "defaultb", "defaulti" and "defaultbi" stand for them where
// the settings name no others.
inline constexpr const char *regular_font = "DejaVuSans";
inline constexpr const char *bold_font = "DejaVuSans-Bold";
inline constexpr const char *italic_font = "DejaVuSans-Oblique";
inline constexpr const char *bold_italic_font = "DejaVuSans-BoldOblique";

// Makes what GetFont() answered current again, in a colour; null: no font is current.
void restore_font(ifont *f, int color);

// What this area asks of upper ones. `is_rtl` tells whether the interface runs right to left.
struct Hooks {
    int (*is_rtl)() = [] { return 0; };
};
extern Hooks hooks;

// The files whose names begin so have been deleted: what is open stays, and what is opened from now
// on is read anew. Throws bad_alloc.
void forget_faces_in(const std::string &directory);

// Closes what the library itself opened and forgets everything, once the screen is closed. While
// applications still hold fonts, all faces stay.
void reset();

} // namespace text
