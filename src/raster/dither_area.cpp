// SPDX-License-Identifier: MIT
// Brings areas of the canvas to a few greys.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "ground/guard.h"
#include "kelvane/bitmaps.h"
#include "kelvane/canvas.h"
#include "raster/clip.h"
#include "raster/dither.h"
#include "raster/pixels.h"

namespace {

using namespace raster;

using GreyTable = std::array<uint8_t, 256>;

int limited(int levels) {
    return std::clamp(levels, min_dither_levels, max_dither_levels);
}

// Level i of n, evenly from black to white.
uint8_t grey_of_level(int i, int n) {
    return static_cast<uint8_t>(i * 255 / (n - 1));
}

void read_greys(const icanvas &c, const Area &area, int row, uint8_t *greys) {
    const uint8_t *pixels = pixel_address(c, area.x, area.y + row);
    const size_t step = static_cast<size_t>(bytes_per_pixel(c));
    for (size_t i = 0; i < static_cast<size_t>(area.w); ++i, pixels += step)
        greys[i] = step == 1 ? pixels[0] : grey_of(pixels[0], pixels[1], pixels[2]);
}

void write_greys(const icanvas &c, const Area &area, int row, const uint8_t *greys) {
    uint8_t *pixels = pixel_address(c, area.x, area.y + row);
    const size_t step = static_cast<size_t>(bytes_per_pixel(c));
    for (size_t i = 0; i < static_cast<size_t>(area.w); ++i, pixels += step)
        std::fill_n(pixels, step, greys[i]);
}

// An ordered pattern of side 2^bits. The threshold of a pixel comes from the bits of its place, the
// finest ones first, so that neighbours differ most.
class Pattern {
  public:
    Pattern(unsigned bits, int levels) : side_(1u << bits), tables_(side_ * side_) {
        const int places = static_cast<int>(side_ * side_);
        for (unsigned y = 0; y < side_; ++y)
            for (unsigned x = 0; x < side_; ++x) fill(at(x, y), rank(x, y, bits), places, levels);
    }
    void row(size_t x, size_t y, uint8_t *greys, size_t count) const {
        for (size_t i = 0; i < count; ++i) greys[i] = at(x + i, y)[greys[i]];
    }

  private:
    static int rank(unsigned x, unsigned y, unsigned bits) {
        unsigned value = 0;
        for (unsigned bit = 0; bit < bits; ++bit)
            value = value << 2 | (((x ^ y) >> bit & 1) << 1 | (y >> bit & 1));
        return static_cast<int>(value);
    }
    // A grey between two levels becomes the upper one where its part of the way exceeds the rank.
    static void fill(GreyTable &table, int rank, int places, int levels) {
        for (int grey = 0; grey < 256; ++grey) {
            const int way = 2 * places * (levels - 1) * grey + (2 * rank + 1) * 255;
            table[static_cast<size_t>(grey)] = grey_of_level(way / (2 * places * 255), levels);
        }
    }
    const GreyTable &at(size_t x, size_t y) const { return tables_[y % side_ * side_ + x % side_]; }
    GreyTable &at(size_t x, size_t y) { return tables_[y % side_ * side_ + x % side_]; }

    size_t side_;
    std::vector<GreyTable> tables_;
};

// A pattern of one place rounds to the nearest level.
void apply_pattern(int x, int y, int w, int h, unsigned bits, int levels) {
    ground::guarded([&] {
        const icanvas *c = GetCanvas();
        const Area area = clip_area(c, x, y, w, h);
        if (area.empty()) return;
        const Pattern pattern(bits, limited(levels));
        std::vector<uint8_t> greys(static_cast<size_t>(area.w));
        for (int i = 0; i < area.h; ++i) {
            read_greys(*c, area, i, greys.data());
            pattern.row(static_cast<size_t>(area.x),
                        static_cast<size_t>(area.y) + static_cast<size_t>(i), greys.data(),
                        greys.size());
            write_greys(*c, area, i, greys.data());
        }
    });
}

// The diffusion works with levels in the middle of equal parts of the grey range: greys are brought
// between the first and the last of them before, and the levels spread to black and white after.
class SpreadDiffusion {
  public:
    explicit SpreadDiffusion(int levels) : dither_(levels) {
        const int low = 256 / (2 * levels), range = 256 * (levels - 1) / levels;
        for (int grey = 0; grey < 256; ++grey) {
            before_[static_cast<size_t>(grey)] =
                static_cast<uint8_t>(low + (grey * range + 127) / 255);
            after_[static_cast<size_t>(grey)] = grey_of_level(grey * levels >> 8, levels);
        }
    }
    void prepare(std::vector<uint8_t> &row) const { replace(row, before_); }
    void finish(std::vector<uint8_t> &row, std::vector<uint8_t> *next) const {
        dither_.row(row.data(), next ? next->data() : nullptr, row.size());
        replace(row, after_);
    }

  private:
    static void replace(std::vector<uint8_t> &row, const GreyTable &table) {
        for (uint8_t &grey : row) grey = table[grey];
    }

    Dither dither_;
    GreyTable before_{}, after_{};
};

void diffuse(int x, int y, int w, int h, int levels) {
    ground::guarded([&] {
        const icanvas *c = GetCanvas();
        const Area area = clip_area(c, x, y, w, h);
        if (area.empty()) return;
        const SpreadDiffusion diffusion(limited(levels));
        std::vector<uint8_t> row(static_cast<size_t>(area.w)), next(row.size());
        read_greys(*c, area, 0, row.data());
        diffusion.prepare(row);
        for (int i = 0; i < area.h; ++i) {
            const bool last = i + 1 == area.h;
            if (!last) {
                read_greys(*c, area, i + 1, next.data());
                diffusion.prepare(next);
            }
            diffusion.finish(row, last ? nullptr : &next);
            write_greys(*c, area, i, row.data());
            std::swap(row, next);
        }
    });
}

} // namespace

void DitherArea(int x, int y, int w, int h, int levels, int method) {
    switch (method) {
    case DITHER_THRESHOLD:
        return apply_pattern(x, y, w, h, 0, levels);
    case DITHER_PATTERN:
        return apply_pattern(x, y, w, h, 3, levels);
    case DITHER_DIFFUSION:
        return diffuse(x, y, w, h, levels);
    }
}

void QuickFloyd16Dither(int x, int y, int w, int h) {
    diffuse(x, y, w, h, 16);
}

void DitherAreaPattern4x4(int x, int y, int w, int h) {
    apply_pattern(x, y, w, h, 2, 2);
}

void DitherAreaPattern8x8(int x, int y, int w, int h) {
    apply_pattern(x, y, w, h, 3, 2);
}
