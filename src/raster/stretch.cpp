// SPDX-License-Identifier: MIT
// Scales pixels of any depth into a rectangle of the canvas.
#include "raster/stretch.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "ground/guard.h"
#include "kelvane/bitmaps.h"
#include "kelvane/canvas.h"
#include "raster/bitmap_rows.h"
#include "raster/clip.h"
#include "raster/pixels.h"

namespace {

using namespace raster;

constexpr int most_source_side = 65535;

// The source area: pixels from column x on, and the mask's bits for them when there is a mask.
struct Source {
    const uint8_t *pixels;
    int depth, x;
    ptrdiff_t scanline;
    const uint8_t *mask;
    ptrdiff_t mask_scanline;
    const uint8_t *row(int y) const { return pixels + y * scanline; }
    const uint8_t *mask_row(int y) const { return mask + y * mask_scanline; }
};

// What is scaled. Of a source with a mask only what the mask shows may count, so its greys are
// scaled with 0 for what is hidden, and divided by the scaled mask.
enum class Kind { greys, shown_greys, shown };

// One kind of values of the source, scaled row by row from the top down.
class Plane {
  public:
    Plane(const Source &source, Kind kind, const StretchAxis &rows, const StretchAxis &columns,
          RowPass pass)
        : source_(source), kind_(kind), rows_(rows), columns_(columns), pass_(pass),
          width_(static_cast<size_t>(columns.end - columns.begin)),
          blended_(width_ + static_cast<size_t>(columns.taps)),
          sums_(pass == RowPass::many_rows ? width_ : 0) {}

    void make_row(size_t i, int16_t *out) {
        const int first = rows_.begin + rows_.first[i];
        const uint16_t *weights = &rows_.weights[i * static_cast<size_t>(rows_.taps)];
        if (pass_ == RowPass::few_rows)
            blend_few(first, weights);
        else
            blend_many(first, weights);
        blend_columns(columns_, blended_.data(), out);
    }

  private:
    void blend_few(int first, const uint16_t *weights) {
        const uint8_t *rows[most_few_rows];
        uint16_t used[most_few_rows];
        int taps = 0;
        for (int k = 0; k < rows_.taps; ++k) {
            if (weights[k] == 0) continue;
            used[taps] = weights[k];
            rows[taps++] = row(first + k);
        }
        blend_few_rows(rows, used, taps, width_, blended_.data());
    }

    void blend_many(int first, const uint16_t *weights) {
        std::fill(sums_.begin(), sums_.end(), 0);
        for (int k = 0; k < rows_.taps; ++k)
            if (weights[k] != 0) add_row(row(first + k), weights[k], width_, sums_.data());
        finish_rows(sums_.data(), width_, blended_.data());
    }

    // The values of a source row. Neighbouring target rows share some: the last few are kept.
    const uint8_t *row(int y) {
        const size_t x = static_cast<size_t>(source_.x) + static_cast<size_t>(columns_.begin);
        if (kind_ == Kind::greys && source_.depth == 8) return source_.row(y) + x;
        Kept &kept = kept_[static_cast<size_t>(y) % kept_.size()];
        if (kept.y != y) {
            kept.y = y;
            kept.values.resize(width_);
            expand(y, x, kept.values.data());
        }
        return kept.values.data();
    }

    void expand(int y, size_t x, uint8_t *values) const {
        if (kind_ == Kind::shown)
            row_to_grey(source_.mask_row(y), 1, x, width_, values);
        else
            row_to_grey(source_.row(y), source_.depth, x, width_, values);
        if (kind_ == Kind::shown_greys) {
            const BitRow mask(source_.mask_row(y), x);
            for (size_t i = 0; i < width_; ++i) values[i] = mask.bit(i) ? values[i] : 0;
        }
    }

    struct Kept {
        int y = -1;
        std::vector<uint8_t> values;
    };

    Source source_;
    Kind kind_;
    const StretchAxis &rows_, &columns_;
    RowPass pass_;
    size_t width_;
    std::vector<int16_t> blended_;
    std::vector<uint32_t> sums_;
    std::array<Kept, most_few_rows> kept_;
};

uint8_t nearest_grey(int16_t value) {
    return static_cast<uint8_t>((grey_times_256(value) + 128) >> 8);
}

// The grey of what is shown of a pixel.
uint8_t shown_grey(int16_t greys, int16_t shown) {
    const int part = grey_times_256(shown);
    return static_cast<uint8_t>(std::min((grey_times_256(greys) * 255 + part / 2) / part, 255));
}

// At least half of the pixel is shown.
bool is_shown(int16_t shown) {
    return 2 * grey_times_256(shown) >= 255 * 256;
}

void put_greys(const icanvas &c, uint8_t *pixels, const uint8_t *greys, size_t count) {
    if (c.depth == 8)
        std::memcpy(pixels, greys, count);
    else
        for (size_t i = 0; i < count; ++i) std::memset(pixels + 3 * i, greys[i], 3);
}

void draw_whole(const icanvas &c, const Area &to, Plane &greys) {
    const size_t count = static_cast<size_t>(to.w);
    std::vector<int16_t> values(count + 3);
    std::vector<uint8_t> row(count);
    for (int i = 0; i < to.h; ++i) {
        greys.make_row(static_cast<size_t>(i), values.data());
        for (size_t x = 0; x < count; ++x) row[x] = nearest_grey(values[x]);
        put_greys(c, pixel_address(c, to.x, to.y + i), row.data(), count);
    }
}

void draw_shown(const icanvas &c, const Area &to, Plane &greys, Plane &shown) {
    const size_t count = static_cast<size_t>(to.w), pixel = static_cast<size_t>(bytes_per_pixel(c));
    std::vector<int16_t> values(count + 3), parts(count + 3);
    for (int i = 0; i < to.h; ++i) {
        greys.make_row(static_cast<size_t>(i), values.data());
        shown.make_row(static_cast<size_t>(i), parts.data());
        uint8_t *pixels = pixel_address(c, to.x, to.y + i);
        for (size_t x = 0; x < count; ++x)
            if (is_shown(parts[x]))
                std::memset(pixels + x * pixel, shown_grey(values[x], parts[x]), pixel);
    }
}

bool is_possible(const uint8_t *pixels, int depth, int w, int h) {
    return pixels && is_known_depth(depth) && w >= 1 && h >= 1 && w <= most_source_side &&
           h <= most_source_side;
}

} // namespace

void kv_stretch(const unsigned char *src, int depth, int sx, int sy, int sw, int sh, int scanline,
                int dx, int dy, int dw, int dh, int, const unsigned char *mask, int mask_scanline) {
    ground::guarded([&] {
        const icanvas *c = GetCanvas();
        const Area to = clip_area(c, dx, dy, dw, dh);
        if (to.empty() || sx < 0 || sy < 0 || !is_possible(src, depth, sw, sh)) return;
        const ptrdiff_t top = sy;
        if (mask) mask += top * mask_scanline;
        const Source source{src + top * scanline, depth, sx, scanline, mask, mask_scanline};
        const int skipped_x = static_cast<int>(int64_t{to.x} - dx);
        const int skipped_y = static_cast<int>(int64_t{to.y} - dy);
        const StretchAxis rows = make_row_axis(sh, dh, skipped_y, to.h);
        const StretchAxis columns = make_column_axis(sw, dw, skipped_x, to.w);
        const RowPass pass = row_pass_of(sh, dh);
        Plane greys(source, !mask ? Kind::greys : Kind::shown_greys, rows, columns, pass);
        if (!mask) return draw_whole(*c, to, greys);
        Plane shown(source, Kind::shown, rows, columns, pass);
        draw_shown(*c, to, greys, shown);
    });
}
