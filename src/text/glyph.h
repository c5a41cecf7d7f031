// SPDX-License-Identifier: MIT
// The picture of a glyph: how much ink each pixel gets.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ft2build.h>
#include <memory>
#include FT_FREETYPE_H

namespace text {

enum class Mode : uint8_t { mono, antialiased };

// Larger glyphs than this are not drawn: no screen shows so many pixels.
inline constexpr int64_t largest_glyph_area = 1 << 22;

struct Glyph {
    int left = 0, top = 0; // from the pen to the leftmost column; from the baseline up to row 0
    int w = 0, h = 0;
    // Rows of stride() bytes, 0 none to 255 full; null when empty. Bytes behind the w-th are 0.
    std::unique_ptr<uint8_t[]> coverage;
    uint32_t index = 0;          // in its face
    std::unique_ptr<Glyph> next; // of a chain of the cache

    // Whole blocks, which rows are blended in.
    static constexpr int block = 16;
    int stride() const { return (w + block - 1) / block * block; }
    size_t pixels() const { return static_cast<size_t>(stride()) * static_cast<size_t>(h); }
    size_t bytes() const { return sizeof(Glyph) + pixels(); }
};

// The flags that glyphs are loaded with, for measuring and for drawing.
FT_Int32 load_flags(Mode mode);

// Takes the picture of the glyph in the face's slot; empty when it has none.
void render(FT_Face face, Mode mode, int strength, Glyph &glyph);

// Takes over a bitmap of FreeType's.
void copy_coverage(const FT_Bitmap &bitmap, Glyph &glyph);

} // namespace text
