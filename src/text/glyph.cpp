// SPDX-License-Identifier: MIT
// Copies what FreeType rendered.
#include "text/glyph.h"

#include <cstring>
#include FT_BITMAP_H
#include FT_OUTLINE_H

namespace text {
namespace {

// A pixel grows by the strength on every side; half of the growth goes below the baseline.
void embolden(FT_GlyphSlot slot, int strength) {
    const FT_Pos growth = 2 * strength;
    if (slot->format == FT_GLYPH_FORMAT_OUTLINE) {
        FT_Outline_Embolden(&slot->outline, growth);
        FT_Outline_Translate(&slot->outline, 0, -strength);
    } else if (slot->format == FT_GLYPH_FORMAT_BITMAP && growth >= 64) {
        if (FT_GlyphSlot_Own_Bitmap(slot) == 0)
            FT_Bitmap_Embolden(slot->library, &slot->bitmap, growth & ~63, growth & ~63);
    }
}

bool is_drawable_size(int64_t w, int64_t h) {
    return w > 0 && h > 0 && w <= largest_glyph_area && h <= largest_glyph_area &&
           w * h <= largest_glyph_area;
}

bool outline_is_drawable(FT_Outline &outline) {
    FT_BBox box;
    FT_Outline_Get_CBox(&outline, &box);
    return is_drawable_size(((box.xMax - box.xMin) >> 6) + 2, ((box.yMax - box.yMin) >> 6) + 2);
}

void copy_mono_row(const uint8_t *from, uint8_t *to, int w) {
    for (int i = 0; i < w; ++i) to[i] = (from[i >> 3] >> (7 - (i & 7)) & 1) != 0 ? 255 : 0;
}

void copy_grey_row(const uint8_t *from, uint8_t *to, int w, int levels) {
    if (levels == 256) {
        std::memcpy(to, from, static_cast<size_t>(w));
        return;
    }
    for (int i = 0; i < w; ++i)
        to[i] = static_cast<uint8_t>(from[i] >= levels ? 255 : from[i] * 255 / (levels - 1));
}

} // namespace

FT_Int32 load_flags(Mode mode) {
    return mode == Mode::mono ? FT_LOAD_TARGET_MONO : FT_LOAD_DEFAULT;
}

void copy_coverage(const FT_Bitmap &bitmap, Glyph &glyph) {
    const int w = static_cast<int>(bitmap.width), h = static_cast<int>(bitmap.rows);
    const bool mono = bitmap.pixel_mode == FT_PIXEL_MODE_MONO;
    if (!is_drawable_size(w, h)) return;
    if (!mono && (bitmap.pixel_mode != FT_PIXEL_MODE_GRAY || bitmap.num_grays < 2)) return;
    glyph.w = w;
    glyph.h = h;
    glyph.coverage = std::make_unique<uint8_t[]>(glyph.pixels());
    // With a negative pitch the buffer starts with the lowest row.
    const uint8_t *from = bitmap.buffer;
    if (bitmap.pitch < 0) from -= static_cast<ptrdiff_t>(bitmap.pitch) * (h - 1);
    uint8_t *to = glyph.coverage.get();
    for (int row = 0; row < h; ++row, from += bitmap.pitch, to += glyph.stride()) {
        if (mono)
            copy_mono_row(from, to, w);
        else
            copy_grey_row(from, to, w, bitmap.num_grays);
    }
}

void render(FT_Face face, Mode mode, int strength, Glyph &glyph) {
    const FT_GlyphSlot slot = face->glyph;
    if (strength > 0) embolden(slot, strength);
    if (slot->format == FT_GLYPH_FORMAT_OUTLINE && !outline_is_drawable(slot->outline)) return;
    const FT_Render_Mode how = mode == Mode::mono ? FT_RENDER_MODE_MONO : FT_RENDER_MODE_NORMAL;
    if (FT_Render_Glyph(slot, how) != 0) return;
    glyph.left = slot->bitmap_left;
    glyph.top = slot->bitmap_top;
    copy_coverage(slot->bitmap, glyph);
}

} // namespace text
