// SPDX-License-Identifier: MIT
// Glyphs onto the canvas: each pixel goes towards the colour by its coverage.
#pragma once

#include <optional>

#include "raster/pixels.h"
#include "text/glyph.h"

namespace text {

enum class Run { across, upwards };

// Where the glyphs of a line go.
class Target {
  public:
    // The current canvas, if there is one.
    Target(int color, Run run);
    void set_color(int color);
    Run run() const { return run_; }

    // Draws a glyph with its origin, on the baseline, at (x, y).
    void draw(const Glyph &glyph, int64_t x, int64_t y) const {
        if (!canvas_ || !glyph.coverage) return;
        run_ == Run::across ? draw_glyph(glyph, x, y) : draw_glyph_r(glyph, x, y);
    }

  private:
    void draw_glyph(const Glyph &glyph, int64_t x, int64_t y) const;
    // Turned by 90 degrees, so that it runs upwards.
    void draw_glyph_r(const Glyph &glyph, int64_t x, int64_t y) const;
    void blend_row(uint8_t *row, const uint8_t *coverage, ptrdiff_t step, int count) const;

    const icanvas *canvas_;
    raster::Bounds bounds_{0, 0, -1, -1};
    std::optional<raster::Ink> ink_;
    Run run_;
};

} // namespace text
