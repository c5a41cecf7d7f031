// SPDX-License-Identifier: MIT
// Scales 4-bit bitmaps into new ones.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "ground/log.h"
#include "kelvane/bitmaps.h"
#include "raster/bitmap.h"

namespace {

using namespace raster;

constexpr int depth = 4, one = 1024; // positions are in 1024ths of a pixel
constexpr int error_level = 2;

// The pixels of a bitmap as one run of nibbles.
struct Nibbles {
    const uint8_t *bytes;
    size_t count;
    // What lies behind the last row is black.
    int at(size_t byte, int i) const {
        byte += static_cast<size_t>(i) / 2;
        if (byte >= count) return 0;
        return i % 2 == 0 ? bytes[byte] >> 4 : bytes[byte] & 15;
    }
};

// Four pixels by their weights. A level stands for the middle of its 16 greys.
int blend(const int (&levels)[4], int fx, int fy) {
    const int weights[] = {(one - fy) * (one - fx), (one - fy) * fx, fy * (one - fx), fy * fx};
    int sum = 0;
    for (int i = 0; i < 4; ++i) sum += (levels[i] * 16 + 7) * weights[i] >> 20;
    return std::min((sum + 8) / 16, 15);
}

// Walks over an area from its top left to its bottom right pixel.
class Walk {
  public:
    Walk(const ibitmap &bm, int sx, int sy, int x_step, int y_step)
        : pixels_{bm.data, pixel_bytes(bm)}, scanline_(bm.scanline), sx_(sx), sy_(sy),
          x_step_(x_step), y_step_(y_step) {}

    void make_row(int y, uint8_t *row, int width) const {
        const int64_t position = int64_t{sy_} * one + int64_t{y} * y_step_;
        // The start of a row moves by whole pixels of a step, as bytes, for each column before it.
        const size_t start = static_cast<size_t>(position / one) * scanline_ +
                             static_cast<size_t>(x_step_ / one) * static_cast<size_t>(sx_);
        const size_t next = start + scanline_;
        const size_t lower = next < pixels_.count ? next : start;
        for (int x = 0; x < width; ++x) {
            const int i = static_cast<int>(int64_t{x} * x_step_ / one);
            const int fx = static_cast<int>(int64_t{x} * x_step_ % one);
            const int levels[] = {pixels_.at(start, i), pixels_.at(start, i + 1),
                                  pixels_.at(lower, i), pixels_.at(lower, i + 1)};
            const int level = blend(levels, fx, static_cast<int>(position % one));
            row[x / 2] |= static_cast<uint8_t>(x % 2 == 0 ? level << 4 : level);
        }
    }

  private:
    Nibbles pixels_;
    size_t scanline_;
    int sx_, sy_, x_step_, y_step_;
};

// Why an area cannot be copied, or null.
const char *find_fault(const ibitmap &bm, int sx, int sy, int sw, int sh) {
    if (depth_of(bm) != depth) return "DEPTH 4 SUPPORTED ONLY!";
    if (sx >= bm.width) return "sx >= bmp->width";
    if (sy >= bm.height) return "sy >= bmp->height";
    if (sw < 1) return "sw < 1";
    if (sh < 1) return "sh < 1";
    return nullptr;
}

ibitmap *fail(const char *reason) {
    tq_print_log2(error_level, "%s\n", reason);
    return nullptr;
}

} // namespace

ibitmap *BitmapStretchCopy(const ibitmap *bm, int sx, int sy, int sw, int sh, int dw, int dh) {
    if (!bm || sx < 0 || sy < 0) return nullptr;
    sw = std::min(sw, bm->width - sx);
    sh = std::min(sh, bm->height - sy);
    if (const char *fault = find_fault(*bm, sx, sy, sw, sh)) return fail(fault);
    BitmapPtr result = dw < 2 || dh < 2 ? nullptr : make_bitmap(dw, dh, depth);
    if (!result) return fail("!result");
    std::fill_n(result->data, pixel_bytes(*result), 0);
    const Walk walk(*bm, sx, sy, (sw - 1) * one / (dw - 1), (sh - 1) * one / (dh - 1));
    for (int y = 0; y < dh; ++y) walk.make_row(y, result->data + y * result->scanline, dw);
    return release_copy(*bm, std::move(result));
}
