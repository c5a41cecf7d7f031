// SPDX-License-Identifier: MIT
// Blends the rows of a glyph into the canvas.
#include "text/blit.h"

#include "internal.h"

namespace text {
namespace {

// paper + (ink - paper) * coverage / 255, rounded; all of it fits 16 bits.
inline uint8_t blend(uint8_t paper, uint8_t ink, uint8_t coverage) {
    const auto against = static_cast<uint16_t>(255 - coverage);
    const auto t = static_cast<uint16_t>(paper * against + ink * coverage + 128);
    return static_cast<uint8_t>(static_cast<uint16_t>(t + (t >> 8)) >> 8);
}

void blend_grey(uint8_t *row, const uint8_t *coverage, int count, uint8_t ink) {
    for (int i = 0; i < count; ++i) row[i] = blend(row[i], ink, coverage[i]);
}

// The same for whole blocks, each of which is one vector. Pixels without coverage stay as they are.
void blend_blocks(uint8_t *__restrict row, const uint8_t *__restrict coverage, int blocks,
                  uint8_t ink) {
    for (int i = 0; i < blocks * Glyph::block; ++i) row[i] = blend(row[i], ink, coverage[i]);
}

void blend_grey(uint8_t *row, const uint8_t *coverage, ptrdiff_t step, int count, uint8_t ink) {
    for (; count > 0; --count, ++row, coverage += step) *row = blend(*row, ink, *coverage);
}

void blend_rgb(uint8_t *row, const uint8_t *coverage, ptrdiff_t step, int count,
               const raster::Ink &ink) {
    for (; count > 0; --count, row += 3, coverage += step)
        for (int i = 0; i < 3; ++i) row[i] = blend(row[i], ink.bytes[i], *coverage);
}

} // namespace

Target::Target(int color, Run run) : canvas_(kvstate.canvas), run_(run) {
    if (!canvas_) return;
    bounds_ = raster::writable_bounds(*canvas_);
    if (bounds_.empty()) canvas_ = nullptr;
    set_color(color);
}

void Target::set_color(int color) {
    if (canvas_) ink_.emplace(*canvas_, color);
}

inline void Target::blend_row(uint8_t *row, const uint8_t *coverage, ptrdiff_t step,
                              int count) const {
    if (canvas_->depth != 8)
        blend_rgb(row, coverage, step, count, *ink_);
    else if (step == 1)
        blend_grey(row, coverage, count, ink_->bytes[0]);
    else
        blend_grey(row, coverage, step, count, ink_->bytes[0]);
}

void Target::draw_glyph(const Glyph &glyph, int64_t x, int64_t y) const {
    const int64_t left = x + glyph.left, top = y - glyph.top;
    const raster::Area a = raster::clip_area(bounds_, left, top, glyph.w, glyph.h);
    if (a.empty()) return;
    const int stride = glyph.stride();
    const uint8_t *coverage = glyph.coverage.get() + (a.y - top) * stride + (a.x - left);
    uint8_t *row = raster::pixel_address(*canvas_, a.x, a.y);
    const bool in_blocks = canvas_->depth == 8 && a.w == glyph.w && a.x + stride <= bounds_.x2 + 1;
    for (int i = 0; i < a.h; ++i, row += canvas_->scanline, coverage += stride) {
        if (in_blocks)
            blend_blocks(row, coverage, stride / Glyph::block, ink_->bytes[0]);
        else
            blend_row(row, coverage, 1, a.w);
    }
}

void Target::draw_glyph_r(const Glyph &glyph, int64_t x, int64_t y) const {
    // Columns become rows: column 0 is the lowest one, row 0 of the glyph is at the left.
    const int64_t left = x - glyph.top, bottom = y - glyph.left;
    const raster::Area a = raster::clip_area(bounds_, left, bottom - glyph.w + 1, glyph.h, glyph.w);
    if (a.empty()) return;
    const int stride = glyph.stride();
    const uint8_t *coverage = glyph.coverage.get() + (a.x - left) * stride + (bottom - a.y);
    uint8_t *row = raster::pixel_address(*canvas_, a.x, a.y);
    for (int i = 0; i < a.h; ++i, row += canvas_->scanline, --coverage)
        blend_row(row, coverage, stride, a.w);
}

} // namespace text
