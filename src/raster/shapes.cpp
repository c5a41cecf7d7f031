// SPDX-License-Identifier: MIT
// Outlines of rectangles and filled discs.
#include <algorithm>
#include <cmath>
#include <cstdint>

#include "internal.h"
#include "raster/areas.h"

using namespace raster;

namespace {

void outline(int64_t x, int64_t y, int64_t w, int64_t h, int color) {
    if (w < 1 || h < 1) return;
    const icanvas *c = kvstate.canvas;
    fill_clipped(c, x, y, w, 1, color);
    fill_clipped(c, x, y, 1, h, color);
    fill_clipped(c, x, y + h - 1, w, 1, color);
    fill_clipped(c, x + w - 1, y, 1, h, color);
}

int64_t integer_root(int64_t v) {
    auto root = static_cast<int64_t>(std::sqrt(static_cast<double>(v)));
    while (root * root > v) --root;
    while ((root + 1) * (root + 1) <= v) ++root;
    return root;
}

// How far the rows of a disc reach to either side.
//
// The outline is that of an error walk which starts at the top, (dx, dy) = (0, r) with e = 1 - 2 r,
// and goes right, down or diagonally:
//   right     while e <= -dy:  dx += 1, e += 2 dx + 1
//   down      while e > dx:    dy -= 1, e += 1 - 2 dy
//   diagonal  otherwise:       dx += 1, e += 2 (dx - dy), dy -= 1
// With d diagonal steps behind it, e = (dx + 1)^2 + (dy - 1)^2 - r^2 - 1 - 4 d. Down to the first
// row with dx >= dy, the turn, there are only steps to the right and diagonal ones, so d = r - dy;
// from there on only diagonal ones and steps down, so d grows with dx. Either way e is known from
// (dx, dy) alone and each row is solved by itself, whatever the radius.
class Disc {
  public:
    explicit Disc(int64_t radius) : r_(radius) {
        turn_ = std::min(r_, static_cast<int64_t>(static_cast<double>(r_) * M_SQRT1_2) + 4);
        while (turn_ > 0 && upper_half_width(turn_) < turn_) --turn_;
        turn_half_width_ = upper_half_width(turn_);
    }

    // For rows 0 to r above or below the centre.
    int64_t half_width(int64_t dy) const {
        return dy >= turn_ ? upper_half_width(dy) : lower_half_width(dy);
    }

  private:
    // Where the steps to the right end: the smallest dx with e > -dy.
    int64_t upper_half_width(int64_t dy) const {
        return integer_root(r_ * r_ + 1 + 4 * (r_ - dy) - (dy - 1) * (dy - 1) - dy);
    }

    // Where the diagonal steps end: the smallest dx with e > dx one row higher, which is
    // dx (dx - 3) > limit; but no more than one step was made in each row since the turn.
    int64_t lower_half_width(int64_t dy) const {
        const int64_t limit = r_ * r_ + 4 * (r_ - turn_ - turn_half_width_) - dy * dy;
        int64_t dx = integer_root(std::max<int64_t>(limit, 0)) + 1;
        while (dx * (dx - 3) <= limit) ++dx;
        while (dx > 2 && (dx - 1) * (dx - 4) > limit) --dx;
        return std::clamp(dx, turn_half_width_, turn_half_width_ + turn_ - dy);
    }

    int64_t r_, turn_, turn_half_width_;
};

} // namespace

void DrawRect(int x, int y, int w, int h, int color) {
    outline(x, y, w, h, color);
}

void DrawSelection(int x, int y, int w, int h, int color) {
    if (w < 1 || h < 1) return;
    const int64_t left = x, top = y, width = w, height = h;
    outline(left, top + 2, width, height - 4, color);
    outline(left + 1, top + 1, width - 2, height - 2, color);
    outline(left + 2, top, width - 4, height, color);
    for (const int64_t corner_x : {left + 3, left + width - 4})
        for (const int64_t corner_y : {top + 3, top + height - 4})
            fill_clipped(kvstate.canvas, corner_x, corner_y, 1, 1, color);
}

void DrawCircle(int x0, int y0, int r, int color) {
    const icanvas *c = kvstate.canvas;
    const int64_t size = 2 * int64_t{r} + 1;
    // The walk reaches a few pixels beyond the radius to the sides, never above or below.
    const Area rows = clip_area(c, INT32_MIN, int64_t{y0} - r, int64_t{1} << 32, size);
    if (rows.empty()) return;
    const Disc disc(r);
    const Ink ink(*c, color);
    for (int y = rows.y; y < rows.y + rows.h; ++y) {
        const int64_t half = disc.half_width(std::abs(int64_t{y} - y0));
        const Area span = clip_area(c, x0 - half, y, 2 * half + 1, 1);
        if (!span.empty()) put_run(*c, pixel_address(*c, span.x, y), span.w, ink);
    }
}
