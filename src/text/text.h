// SPDX-License-Identifier: MIT
// What other areas need of fonts and text beyond the public names.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "ground/heap.h"
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

// Whether a font, with the one that it falls back to, has all letters of a text; those of Chinese
// and Japanese come from a font of their own. True for a font without a face. Throws bad_alloc.
bool has_letters(const ifont &font, const char *utf8);

// A font file in memory.
struct FontBytes {
    ground::HeapPtr<uint8_t> bytes;
    size_t size = 0;
};

// What this area asks of upper ones. `is_rtl` tells whether the interface runs right to left,
// `font_bytes` has the fonts that lie in no file, by name, and nothing for all others.
struct Hooks {
    int (*is_rtl)() = [] { return 0; };
    FontBytes (*font_bytes)(const std::string &name) = [](const std::string &) {
        return FontBytes();
    };
};
extern Hooks hooks;

// Closes what the library itself opened and forgets everything, once the screen is closed. While
// applications still hold fonts, all faces stay.
void reset();

} // namespace text
