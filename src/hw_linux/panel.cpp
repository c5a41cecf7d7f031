// SPDX-License-Identifier: MIT
// Turns, shifts and scales grey pixels into what a person sees.
#include "hw_linux/panel.h"

#include <algorithm>
#include <array>
#include <cstring>
#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace hw {
namespace {

// One painted column or row: where it is read, its partner in the blend, and what it adds to the
// address of the pixel in the pixel buffer.
struct Cell {
    int source, neighbour;
    int64_t offset;
};

struct Cells {
    std::array<Cell, longest_side> cell;
    int count = 0;
    const Cell *begin() const { return cell.data(); }
    const Cell *end() const { return cell.data() + count; }
};

struct Span {
    int first, end;
};

Span clip_span(int first, int length, int size) {
    const int64_t end = int64_t{first} + length;
    return {std::max(first, 0), static_cast<int>(std::clamp<int64_t>(end, 0, size))};
}

int zoom_step(Zoom zoom) {
    return zoom == Zoom::half ? 2 : 1;
}

bool is_left_out(Zoom zoom, int source) {
    return zoom == Zoom::two_thirds && source % 3 == 1;
}

int neighbour_of(Zoom zoom, int source, int size) {
    const bool before = zoom == Zoom::two_thirds && source % 3 == 2;
    return before ? source - 1 : std::min(source + 1, size - 1);
}

int64_t zoomed(Zoom zoom, int64_t position) {
    if (position < 0) return position;
    switch (zoom) {
    case Zoom::full:
        return position;
    case Zoom::half:
        return position / 2;
    case Zoom::two_thirds:
        return position * 2 / 3;
    }
    return position;
}

// A turn keeps the axes apart: a column of the canvas decides one panel coordinate and a row the
// other, so each axis gets its own list of cells and the address of a pixel is the sum of both.
enum class Axis { column, row };

Cells make_cells(const PanelView &view, const icanvas &canvas, Span span, Axis axis,
                 const PixelBuffer &pixels) {
    const bool column = axis == Axis::column;
    const bool decides_x = column == (view.turn == 0 || view.turn == 3);
    const int size = column ? canvas.width : canvas.height;
    const int step = zoom_step(view.zoom);
    Cells cells;
    for (int source = span.first - span.first % step; source < span.end; source += step) {
        if (is_left_out(view.zoom, source)) continue;
        const Point panel = to_panel(view, canvas, column ? Point{source, 0} : Point{0, source});
        const int64_t position = zoomed(view.zoom, decides_x ? panel.x : panel.y);
        if (position < 0 || position >= (decides_x ? pixels.width : pixels.height)) continue;
        cells.cell[cells.count++] = {source, neighbour_of(view.zoom, source, size),
                                     position * (decides_x ? 4 : pixels.stride)};
    }
    return cells;
}

void put_grey(uint8_t *pixel, unsigned grey) {
    const auto level = static_cast<uint8_t>(grey);
    const uint8_t rgba[4] = {level, level, level, 255};
    std::memcpy(pixel, rgba, 4);
}

// In bands of rows, so that a turned picture, which is written column by column, fills a cache line
// before it leaves it.
template <typename Blend>
void paint_cells(const icanvas &canvas, const Cells &columns, const Cells &rows,
                 const PixelBuffer &pixels, Blend blend) {
    constexpr int band = 16;
    for (int first = 0; first < rows.count; first += band) {
        const Cell *begin = rows.begin() + first;
        const Cell *end = rows.begin() + std::min(first + band, rows.count);
        for (const Cell &column : columns) {
            uint8_t *target = pixels.data + column.offset;
            for (const Cell *row = begin; row < end; ++row) {
                const uint8_t *line = canvas.addr + int64_t{row->source} * canvas.scanline;
                const uint8_t *next = canvas.addr + int64_t{row->neighbour} * canvas.scanline;
                put_grey(target + row->offset, blend(line, next, column.source, column.neighbour));
            }
        }
    }
}

void expand_row(const uint8_t *grey, uint8_t *rgba, int count) {
    int i = 0;
#ifdef __SSE2__
    const __m128i opaque = _mm_set1_epi8(-1);
    for (; i + 16 <= count; i += 16) {
        const __m128i g = _mm_loadu_si128(reinterpret_cast<const __m128i *>(grey + i));
        const __m128i gg_low = _mm_unpacklo_epi8(g, g), gg_high = _mm_unpackhi_epi8(g, g);
        const __m128i ga_low = _mm_unpacklo_epi8(g, opaque);
        const __m128i ga_high = _mm_unpackhi_epi8(g, opaque);
        auto *out = reinterpret_cast<__m128i *>(rgba + 4 * static_cast<int64_t>(i));
        _mm_storeu_si128(out, _mm_unpacklo_epi16(gg_low, ga_low));
        _mm_storeu_si128(out + 1, _mm_unpackhi_epi16(gg_low, ga_low));
        _mm_storeu_si128(out + 2, _mm_unpacklo_epi16(gg_high, ga_high));
        _mm_storeu_si128(out + 3, _mm_unpackhi_epi16(gg_high, ga_high));
    }
#endif
    for (; i < count; ++i) put_grey(rgba + 4 * static_cast<int64_t>(i), grey[i]);
}

void paint_rows(const icanvas &canvas, Span columns, const Cells &rows, const PixelBuffer &pixels) {
    const int end = std::min(columns.end, pixels.width);
    for (const Cell &row : rows)
        expand_row(canvas.addr + int64_t{row.source} * canvas.scanline + columns.first,
                   pixels.data + row.offset + int64_t{columns.first} * 4, end - columns.first);
}

unsigned blend_half(const uint8_t *line, const uint8_t *next, int x, int neighbour) {
    return (line[x] + line[neighbour] + next[x] + next[neighbour]) / 4u;
}

unsigned blend_two_thirds(const uint8_t *line, const uint8_t *next, int x, int neighbour) {
    return (4u * line[x] + 2u * line[neighbour] + 2u * next[x] + next[neighbour]) / 9u;
}

} // namespace

Point to_panel(const PanelView &view, const icanvas &canvas, Point pixel) {
    const int64_t x = pixel.x, y = pixel.y + view.shift_rows;
    switch (view.turn) {
    case 1:
        return {canvas.height - y, x};
    case 2:
        return {y, canvas.width - x};
    case 3:
        return {canvas.width - x, canvas.height - y};
    default:
        return {x, y};
    }
}

Point from_panel(const PanelView &view, const icanvas &canvas, Point panel) {
    Point pixel = panel;
    switch (view.turn) {
    case 1:
        pixel = {panel.y, canvas.height - panel.x};
        break;
    case 2:
        pixel = {canvas.width - panel.y, panel.x};
        break;
    case 3:
        pixel = {canvas.width - panel.x, canvas.height - panel.y};
        break;
    default:
        break;
    }
    pixel.y -= view.shift_rows;
    return pixel;
}

void eink_waveform(const PanelView &view, const icanvas &canvas, const irect &area,
                   const PixelBuffer &pixels) {
    const Span x = clip_span(area.x, area.w, canvas.width);
    const Span y = clip_span(area.y, area.h, canvas.height);
    if (x.first >= x.end || y.first >= y.end) return;
    const Cells rows = make_cells(view, canvas, y, Axis::row, pixels);
    if (view.zoom == Zoom::full && view.turn == 0) return paint_rows(canvas, x, rows, pixels);
    const Cells columns = make_cells(view, canvas, x, Axis::column, pixels);
    switch (view.zoom) {
    case Zoom::full:
        return paint_cells(canvas, columns, rows, pixels,
                           [](auto *line, auto *, int at, int) { return unsigned{line[at]}; });
    case Zoom::half:
        return paint_cells(canvas, columns, rows, pixels, blend_half);
    case Zoom::two_thirds:
        return paint_cells(canvas, columns, rows, pixels, blend_two_thirds);
    }
}

} // namespace hw
