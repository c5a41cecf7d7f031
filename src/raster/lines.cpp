// SPDX-License-Identifier: MIT
// Straight lines: solid, stepped and dashed.
//
// A line is a sequence of pixels along its longer axis. Pixel i lies i pixels along that axis and
// floor(i * rise / length) pixels along the other, with length and rise the pixels that the line
// covers on each. This closed form lets a line start at the first pixel that the clip shows, so
// that a line across the whole range of int costs no more than its visible part.
#include <algorithm>
#include <cstdint>

#include "internal.h"
#include "raster/areas.h"
#include "raster/pixels.h"

// A programming error stops the program in every build.
#undef NDEBUG
#include <cassert>

using namespace raster;

namespace {

// Pixels first to last of a line; empty when last < first.
struct Range {
    int64_t first, last;
    bool empty() const { return last < first; }
};

Range operator&(const Range &a, const Range &b) {
    return {std::max(a.first, b.first), std::min(a.last, b.last)};
}

struct Axis {
    int64_t start, length; // length in pixels, both ends included
    int direction;         // -1, 0 or 1

    Axis(int from, int to)
        : start(from), length(std::abs(int64_t{to} - from) + 1),
          direction((to > from) - (to < from)) {}

    // Which steps from the start lie between two bounds.
    Range steps_between(int low, int high) const {
        if (direction == 0) return start >= low && start <= high ? Range{0, 0} : Range{0, -1};
        const Range steps =
            direction > 0 ? Range{low - start, high - start} : Range{start - high, start - low};
        return steps & Range{0, length - 1};
    }
    int64_t at(int64_t step) const { return start + direction * step; }
};

// A distance along the shorter axis: whole pixels above, 64 bits of fraction below.
__extension__ using Fixed = unsigned __int128;

uint64_t whole(Fixed v) {
    return static_cast<uint64_t>(v >> 64);
}
uint64_t fraction(Fixed v) {
    return static_cast<uint64_t>(v);
}

class Line {
  public:
    Line(const icanvas &canvas, int x1, int y1, int x2, int y2, int color)
        : canvas_(canvas), ink_(canvas, color), x_(x1, x2), y_(y1, y2),
          steep_(x_.length <= y_.length), length_(static_cast<uint64_t>(major().length)),
          rise_(static_cast<uint64_t>(minor().length)),
          slope_(((Fixed{rise_} << 64) + length_ - 1) / length_), visible_(visible_pixels()) {}

    // The pixels inside the clip: one range, since no axis ever turns back.
    const Range &visible() const { return visible_; }
    int64_t last() const { return major().length - 1; }

    // Draws the visible pixels of a range that are a multiple of `stride` away from the first.
    void draw(const Range &range, int64_t stride = 1) const;

  private:
    const Axis &major() const { return steep_ ? y_ : x_; }
    const Axis &minor() const { return steep_ ? x_ : y_; }
    Range visible_pixels() const;
    int64_t first_pixel_at(int64_t minor_step) const;

    const icanvas &canvas_;
    Ink ink_;
    Axis x_, y_;
    bool steep_;
    uint64_t length_, rise_; // up to 2^32
    Fixed slope_;            // rounded up: i * slope_ is exact in its whole part for i < length_
    Range visible_;
};

// The first pixel of the line that is at least `minor_step` along the shorter axis.
int64_t Line::first_pixel_at(int64_t minor_step) const {
    const auto step = static_cast<uint64_t>(minor_step);
    return static_cast<int64_t>(step >= rise_ ? length_ : (step * length_ + rise_ - 1) / rise_);
}

Range Line::visible_pixels() const {
    const Bounds b = writable_bounds(canvas_);
    const Range columns = x_.steps_between(b.x1, b.x2), rows = y_.steps_between(b.y1, b.y2);
    const Range &along = steep_ ? rows : columns, &across = steep_ ? columns : rows;
    if (along.empty() || across.empty()) return {0, -1};
    if (across.first == 0 && across.last == minor().length - 1) return along;
    return along & Range{first_pixel_at(across.first), first_pixel_at(across.last + 1) - 1};
}

// A walk in memory: every pixel is `step` bytes on, and `carry` more whenever the fraction wraps.
struct Walk {
    uint8_t *origin;
    ptrdiff_t step, carry;
    uint64_t fraction, slope;

    // Works on copies, since for all the compiler knows a pixel is written over these fields; count
    // is at least 1.
    template <int pixel_bytes>
    void draw(int64_t count, const Ink ink) const {
        uint8_t *pixel = origin;
        const ptrdiff_t straight = step, aside = step + carry;
        const uint64_t rise = slope;
        for (uint64_t f = fraction;;) {
            put_pixel<pixel_bytes>(pixel, ink);
            if (--count == 0) return;
            f += rise;
            pixel += f < rise ? aside : straight;
        }
    }
};

void Line::draw(const Range &range, int64_t stride) const {
    if (range.empty()) return;
    const ptrdiff_t x_bytes = x_.direction * bytes_per_pixel(canvas_);
    const ptrdiff_t y_bytes = y_.direction * ptrdiff_t{canvas_.scanline};
    const ptrdiff_t major_bytes = steep_ ? y_bytes : x_bytes;
    const ptrdiff_t minor_bytes = steep_ ? x_bytes : y_bytes;
    const Fixed start = static_cast<uint64_t>(range.first) * slope_;
    const Fixed advance = static_cast<uint64_t>(stride) * slope_;
    const auto across = static_cast<int64_t>(whole(start));
    const int64_t x = x_.at(steep_ ? across : range.first);
    const int64_t y = y_.at(steep_ ? range.first : across);
    const Walk walk{pixel_address(canvas_, static_cast<int>(x), static_cast<int>(y)),
                    stride * major_bytes + static_cast<ptrdiff_t>(whole(advance)) * minor_bytes,
                    minor_bytes, fraction(start), fraction(advance)};
    const int64_t count = (range.last - range.first) / stride + 1;
    canvas_.depth == 8 ? walk.draw<1>(count, ink_) : walk.draw<3>(count, ink_);
}

} // namespace

void DrawLine(int x1, int y1, int x2, int y2, int color) {
    const icanvas *c = kvstate.canvas;
    if (!c) return;
    if (y1 == y2) {
        const int left = std::min(x1, x2), right = std::max(x1, x2);
        return fill_clipped(c, left, y1, int64_t{right} - left + 1, 1, color);
    }
    const Line line(*c, x1, y1, x2, y2, color);
    line.draw(line.visible());
}

void DrawLineEx(int x1, int y1, int x2, int y2, int color, int step) {
    assert(step > 0);
    const icanvas *c = kvstate.canvas;
    if (!c) return;
    const Line line(*c, x1, y1, x2, y2, color);
    const Range visible = line.visible();
    line.draw({(visible.first + step - 1) / step * step, visible.last}, step);
}

void DrawDashLine(int x1, int y1, int x2, int y2, int color, int fill, int space) {
    const icanvas *c = kvstate.canvas;
    if (!c) return;
    const Line line(*c, x1, y1, x2, y2, color);
    const Range visible = line.visible();
    // A counter that starts below 1 lasts for one pixel.
    const int64_t dash = std::max(fill, 1), period = dash + std::max(space, 1);
    for (int64_t i = visible.first / period * period; i <= visible.last; i += period)
        line.draw(visible & Range{i, i + dash - 1});
    line.draw(visible & Range{line.last(), line.last()});
}
