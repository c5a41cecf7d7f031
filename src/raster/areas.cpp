// SPDX-License-Identifier: MIT
// Single pixels and filled, complemented or substituted areas.
#include "raster/areas.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>

#include "ground/vectors.h"
#include "hw.h"
#include "internal.h"

using namespace raster;

namespace {

void complement(uint8_t *bytes, size_t count) {
    for (size_t i = 0; i < count; ++i) bytes[i] = static_cast<uint8_t>(~bytes[i]);
}

// The first and the last level of the panel, told apart in byte arithmetic: grey + t wraps around,
// so that the t darkest and the t brightest greys alike end up below 2 t.
class ExtremeLevels {
  public:
    explicit ExtremeLevels(int panel_bits) {
        const int t = 1 << (8 - std::clamp(panel_bits, 0, 8));
        shift_ = static_cast<uint8_t>(t);
        last_ = static_cast<uint8_t>(2 * t - 1);
    }
    bool contains(uint8_t grey) const { return static_cast<uint8_t>(grey + shift_) <= last_; }

  private:
    uint8_t shift_, last_;
};

void complement_extremes(const ExtremeLevels extremes, uint8_t *bytes, size_t count) {
    for (size_t i = 0; i < count; ++i)
        bytes[i] = static_cast<uint8_t>(bytes[i] ^ (extremes.contains(bytes[i]) ? 0xFF : 0));
}

void complement_extremes_rgb(const ExtremeLevels extremes, uint8_t *bytes, size_t count) {
    for (uint8_t *pixel = bytes; pixel < bytes + count; pixel += 3) {
        const uint8_t grey = grey_of(pixel[0], pixel[1], pixel[2]);
        if (extremes.contains(grey)) std::memset(pixel, static_cast<uint8_t>(~grey), 3);
    }
}

bool is_empty(const icolor_map *map) {
    return !map || map->size < 1 || !map->from_color || !map->to_color;
}

void substitute(const icolor_map &map, uint8_t *pixel) {
    const int color = pixel[0] << 16 | pixel[1] << 8 | pixel[2];
    const int *begin = map.from_color, *end = begin + map.size;
    const int *match =
        std::find_if(begin, end, [color](int from) { return (from & 0xFFFFFF) == color; });
    if (match == end) return complement(pixel, 3);
    const int to = map.to_color[match - begin];
    pixel[0] = red(to), pixel[1] = green(to), pixel[2] = blue(to);
}

template <size_t size>
using Word [[gnu::vector_size(size)]] = uint8_t;

// Rows that are filled faster by words in line than by a call of memset for each.
bool is_short_row(size_t bytes) {
    return bytes >= 32 && bytes <= 256;
}

// An unaligned word at both ends of each row, which may overlap others, and aligned ones between.
template <size_t size>
[[gnu::always_inline]] inline void fill_rows(uint8_t *row, size_t count, int rows,
                                             ptrdiff_t scanline, uint8_t value) {
    const Word<size> word = Word<size>{} + value;
    for (; rows > 0; --rows, row += scanline) {
        uint8_t *const last = row + count - size;
        std::memcpy(row, &word, size);
        uint8_t *at = row + size - reinterpret_cast<uintptr_t>(row) % size;
        for (; at < last; at += size) std::memcpy(at, &word, size);
        std::memcpy(last, &word, size);
    }
}

#ifdef KELVANE_X86_64
[[gnu::target("avx2")]] void fill_rows_widely(uint8_t *row, size_t count, int rows,
                                              ptrdiff_t scanline, uint8_t value) {
    fill_rows<32>(row, count, rows, scanline, value);
}

void fill_short_rows(uint8_t *row, size_t count, int rows, ptrdiff_t scanline, uint8_t value) {
    const auto fill = __builtin_cpu_supports("avx2") ? fill_rows_widely : fill_rows<16>;
    fill(row, count, rows, scanline, value);
}
#else
void fill_short_rows(uint8_t *row, size_t count, int rows, ptrdiff_t scanline, uint8_t value) {
    fill_rows<16>(row, count, rows, scanline, value);
}
#endif

} // namespace

void raster::fill(const icanvas &c, const Area &a, const Ink &ink) {
    const size_t row_bytes = static_cast<size_t>(a.w) * static_cast<size_t>(bytes_per_pixel(c));
    if (ink.is_grey(c)) {
        if (is_short_row(row_bytes))
            return fill_short_rows(pixel_address(c, a.x, a.y), row_bytes, a.h, c.scanline,
                                   ink.bytes[0]);
        for_each_row(c, a, [value = ink.bytes[0]](uint8_t *bytes, size_t count) {
            std::memset(bytes, value, count);
        });
        return;
    }
    const uint8_t *first = pixel_address(c, a.x, a.y);
    put_run(c, pixel_address(c, a.x, a.y), a.w, ink);
    for (int y = a.y + 1; y < a.y + a.h; ++y)
        std::memcpy(pixel_address(c, a.x, y), first, row_bytes);
}

void raster::fill_clipped(const icanvas *c, int64_t x, int64_t y, int64_t w, int64_t h, int color) {
    const Area a = clip_area(c, x, y, w, h);
    if (!a.empty()) fill(*c, a, Ink(*c, color));
}

void DrawPixel(int x, int y, int color) {
    const icanvas *c = kvstate.canvas;
    if (!c || !writable_bounds(*c).contains(x, y)) return;
    put_pixel(*c, pixel_address(*c, x, y), Ink(*c, color));
}

void FillArea(int x, int y, int w, int h, int color) {
    fill_clipped(kvstate.canvas, x, y, w, h, color);
}

void FillAreaRect(const irect *r, int color) {
    if (r) FillArea(r->x, r->y, r->w, r->h, color);
}

void InvertArea(int x, int y, int w, int h) {
    const icanvas *c = kvstate.canvas;
    const Area a = clip_area(c, x, y, w, h);
    if (!a.empty()) for_each_row(*c, a, complement);
}

void InvertAreaBW(int x, int y, int w, int h) {
    const icanvas *c = kvstate.canvas;
    const Area a = clip_area(c, x, y, w, h);
    if (a.empty()) return;
    const auto visit = c->depth == 8 ? complement_extremes : complement_extremes_rgb;
    for_each_row(*c, a, [extremes = ExtremeLevels(hw_depth()), visit](uint8_t *bytes, size_t n) {
        visit(extremes, bytes, n);
    });
}

icolor_map *ColorMapCreate(int size) {
    if (size < 1) return nullptr;
    const auto count = static_cast<size_t>(size);
    std::unique_ptr<int[]> from(new (std::nothrow) int[count]), to(new (std::nothrow) int[count]);
    auto *map = new (std::nothrow) icolor_map;
    if (!from || !to || !map) {
        delete map;
        return nullptr;
    }
    std::fill_n(from.get(), count, -1);
    std::fill_n(to.get(), count, -1);
    *map = {from.release(), to.release(), size};
    return map;
}

void ColorMapDestroy(icolor_map **m) {
    if (!m || !*m) return;
    delete[](*m)->from_color;
    delete[](*m)->to_color;
    delete *m;
    *m = nullptr;
}

void InvertAreaMap(int x, int y, int w, int h, const icolor_map *map) {
    const icanvas *c = kvstate.canvas;
    const Area a = clip_area(c, x, y, w, h);
    if (a.empty()) return;
    if (c->depth == 8 || is_empty(map)) return for_each_row(*c, a, complement);
    for_each_row(*c, a, [map](uint8_t *bytes, size_t count) {
        for (uint8_t *pixel = bytes; pixel < bytes + count; pixel += 3) substitute(*map, pixel);
    });
}
