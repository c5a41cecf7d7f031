// SPDX-License-Identifier: MIT
// Areas of which every step-th pixel of a row is drawn: the dimming checkerboard and the hatch.
#include <algorithm>
#include <array>
#include <cstddef>

#include "internal.h"
#include "raster/areas.h"

using namespace raster;

namespace {

// Diagonals `step` pixels apart: the pixels with x + y - origin divisible by the step.
struct Diagonals {
    int step;
    int64_t origin;
    // How far the nearest pixel on a diagonal lies to the right, and to the left, of (x, y).
    int64_t gap_right(int64_t x, int64_t y) const { return modulo(origin - x - y); }
    int64_t gap_left(int64_t x, int64_t y) const { return modulo(x + y - origin); }

  private:
    int64_t modulo(int64_t v) const { return v % step < 0 ? v % step + step : v % step; }
};

// A row of pixels prepared as bytes to keep and bytes to set, so that dense patterns are drawn by
// whole vectors instead of single pixels. It is a whole number of periods long and goes on for one
// more period, so that it can start at any phase.
class RowMask {
  public:
    static constexpr int max_step = 16;

    RowMask(const icanvas &c, int step, const Ink &ink) : pixel_bytes_(bytes_per_pixel(c)) {
        period_ = static_cast<size_t>(step) * static_cast<size_t>(pixel_bytes_);
        chunk_ = target_chunk / period_ * period_;
        keep_.fill(0xFF);
        for (size_t i = 0; i < chunk_ + period_; i += period_)
            for (size_t k = 0; k < static_cast<size_t>(pixel_bytes_); ++k)
                keep_[i + k] = 0, set_[i + k] = ink.bytes[k];
    }

    // Draws a row whose first inked pixel comes after `gap` others.
    void apply(uint8_t *row, size_t bytes, int64_t gap) const {
        const size_t gap_bytes = static_cast<size_t>(gap * pixel_bytes_);
        const size_t phase = gap_bytes == 0 ? 0 : period_ - gap_bytes;
        for (; bytes > chunk_; bytes -= chunk_, row += chunk_) blend(row, chunk_, phase);
        blend(row, bytes, phase);
    }

  private:
    void blend(uint8_t *row, size_t bytes, size_t phase) const {
        const uint8_t *keep = keep_.data() + phase, *set = set_.data() + phase;
        for (size_t i = 0; i < bytes; ++i)
            row[i] = static_cast<uint8_t>((row[i] & keep[i]) | set[i]);
    }

    static constexpr size_t target_chunk = 512;
    int pixel_bytes_;
    size_t period_, chunk_;
    std::array<uint8_t, target_chunk + max_step * 3> keep_, set_{};
};

void draw_dense(const icanvas &c, const Area &a, const Diagonals &diagonals, const Ink &ink) {
    const RowMask mask(c, diagonals.step, ink);
    const auto bytes = static_cast<size_t>(a.w) * static_cast<size_t>(bytes_per_pixel(c));
    for (int y = a.y; y < a.y + a.h; ++y)
        mask.apply(pixel_address(c, a.x, y), bytes, diagonals.gap_right(a.x, y));
}

void draw_sparse(const icanvas &c, const Area &a, const Diagonals &diagonals, const Ink &ink) {
    for (int y = a.y; y < a.y + a.h; ++y) {
        uint8_t *row = pixel_address(c, a.x, y);
        for (int64_t i = diagonals.gap_right(a.x, y); i < a.w; i += diagonals.step)
            put_pixel(c, row + i * bytes_per_pixel(c), ink);
    }
}

// The rectangle that a hatch reaches, with the column right of it in which some rows begin.
Area hatched_area(const icanvas *c, int x, int y, int w, int h) {
    return w < 1 || h < 1 ? Area{} : clip_area(c, x, y, int64_t{w} + 1, h);
}

} // namespace

void DimArea(int x, int y, int w, int h, int color) {
    const icanvas *c = kvstate.canvas;
    const Area a = clip_area(c, x, y, w, h);
    if (!a.empty()) draw_dense(*c, a, {2, 0}, Ink(*c, color));
}

void DrawDiagonalHatch(int x, int y, int w, int h, int step, int color) {
    const icanvas *c = kvstate.canvas;
    const Area a = hatched_area(c, x, y, w, h);
    if (step < 1 || a.empty()) return;
    const auto draw = step <= RowMask::max_step ? draw_dense : draw_sparse;
    draw(*c, a, {step, int64_t{x} + w}, Ink(*c, color));
}

void DrawDiagonalHatchLimits(int x, int y, int w, int h, int step, int color,
                             int (*check)(int x, int y)) {
    if (!check) return DrawDiagonalHatch(x, y, w, h, step, color);
    const Area a = hatched_area(kvstate.canvas, x, y, w, h);
    if (step < 1 || a.empty()) return;
    const Diagonals diagonals{step, int64_t{x} + w};
    const int last = a.x + a.w - 1;
    for (int yy = a.y; yy < a.y + a.h; ++yy)
        for (int64_t xx = last - diagonals.gap_left(last, yy); xx >= a.x; xx -= step)
            if (check(static_cast<int>(xx), yy) == 0) DrawPixel(static_cast<int>(xx), yy, color);
}
