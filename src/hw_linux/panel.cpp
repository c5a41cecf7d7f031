// SPDX-License-Identifier: MIT
// Turns, shifts and scales grey pixels into what a person sees.
#include "hw_linux/panel.h"

#include <algorithm>
#include <array>
#include <cstring>

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

// Sixteen bytes in the compiler's own terms, from which it makes the instructions of any machine.
using Word [[gnu::vector_size(16)]] = uint8_t;
using Pairs [[gnu::vector_size(16)]] = uint16_t;
using Quads [[gnu::vector_size(16)]] = uint32_t;
constexpr int word = sizeof(Word);

Word load(const uint8_t *from) {
    Word w;
    std::memcpy(&w, from, sizeof w);
    return w;
}

// The bytes of two words in turns: of their first halves, and of their second ones.
Word interleave_low(Word a, Word b) {
    return __builtin_shufflevector(a, b, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23);
}
Word interleave_high(Word a, Word b) {
    return __builtin_shufflevector(a, b, 8, 24, 9, 25, 10, 26, 11, 27, 12, 28, 13, 29, 14, 30, 15,
                                   31);
}
Pairs interleave_low(Pairs a, Pairs b) {
    return __builtin_shufflevector(a, b, 0, 8, 1, 9, 2, 10, 3, 11);
}
Pairs interleave_high(Pairs a, Pairs b) {
    return __builtin_shufflevector(a, b, 4, 12, 5, 13, 6, 14, 7, 15);
}

// In three steps, as there may be no instruction for single bytes: the quads change places, then
// the pairs of each, then the bytes of each.
Word reversed(Word a) {
    auto quads = reinterpret_cast<Quads>(a);
    quads = __builtin_shufflevector(quads, quads, 3, 2, 1, 0);
    const auto pairs = reinterpret_cast<Pairs>(quads << 16 | quads >> 16);
    return reinterpret_cast<Word>(pairs << 8 | pairs >> 8);
}

void store(uint8_t *to, Pairs pairs) {
    std::memcpy(to, &pairs, sizeof pairs);
}

void put_greys(uint8_t *rgba, Word grey) {
    const Word opaque = Word{} + 255;
    const auto gg_low = reinterpret_cast<Pairs>(interleave_low(grey, grey));
    const auto gg_high = reinterpret_cast<Pairs>(interleave_high(grey, grey));
    const auto ga_low = reinterpret_cast<Pairs>(interleave_low(grey, opaque));
    const auto ga_high = reinterpret_cast<Pairs>(interleave_high(grey, opaque));
    store(rgba, interleave_low(gg_low, ga_low));
    store(rgba + word, interleave_high(gg_low, ga_low));
    store(rgba + 2 * word, interleave_low(gg_high, ga_high));
    store(rgba + 3 * word, interleave_high(gg_high, ga_high));
}

void expand_row(const uint8_t *grey, uint8_t *rgba, int count) {
    int i = 0;
    for (; i + word <= count; i += word) put_greys(rgba + 4 * int64_t{i}, load(grey + i));
    for (; i < count; ++i) put_grey(rgba + 4 * int64_t{i}, grey[i]);
}

// The last grey becomes the first pixel.
void expand_row_backwards(const uint8_t *grey, uint8_t *rgba, int count) {
    for (; count >= word; count -= word, rgba += 4 * word)
        put_greys(rgba, reversed(load(grey + count - word)));
    for (; count > 0; --count, rgba += 4) put_grey(rgba, grey[count - 1]);
}

// Upright, or turned by 180 degrees: a row of the canvas is one of the panel.
void paint_rows(const icanvas &canvas, const Cells &columns, const Cells &rows,
                const PixelBuffer &pixels) {
    if (columns.count == 0) return;
    const Cell first = columns.cell[0], last = columns.cell[columns.count - 1];
    const bool forwards = first.offset <= last.offset;
    const auto expand = forwards ? expand_row : expand_row_backwards;
    const int64_t left = std::min(first.offset, last.offset);
    for (const Cell &row : rows)
        expand(canvas.addr + int64_t{row.source} * canvas.scanline + first.source,
               pixels.data + row.offset + left, columns.count);
}

// Interleaving each word with the one that lies half of them further on, and doing so once for
// each bit of a place in a word, exchanges rows and columns.
void transpose(std::array<Word, word> &tile) {
    for (int round = 1; round < word; round *= 2) {
        const std::array<Word, word> from = tile;
        for (int i = 0; i < word / 2; ++i) {
            tile[2 * i] = interleave_low(from[i], from[i + word / 2]);
            tile[2 * i + 1] = interleave_high(from[i], from[i + word / 2]);
        }
    }
}

// Turned by 90 or 270 degrees: paints as many columns and rows as a word has greys.
void paint_tile(const icanvas &canvas, const Cell *columns, const Cell *rows,
                const PixelBuffer &pixels) {
    const bool forwards = rows[0].offset < rows[1].offset;
    std::array<Word, word> tile;
    for (int i = 0; i < word; ++i) {
        const Cell &row = rows[forwards ? i : word - 1 - i];
        tile[i] = load(canvas.addr + int64_t{row.source} * canvas.scanline + columns->source);
    }
    transpose(tile);
    const int64_t left = std::min(rows[0].offset, rows[word - 1].offset);
    for (int i = 0; i < word; ++i) put_greys(pixels.data + columns[i].offset + left, tile[i]);
}

// The last tiles of a row and of a column overlap those before them.
void paint_tiles(const icanvas &canvas, const Cells &columns, const Cells &rows,
                 const PixelBuffer &pixels) {
    for (int x = 0; x < columns.count; x += word)
        for (int y = 0; y < rows.count; y += word)
            paint_tile(canvas, columns.begin() + std::min(x, columns.count - word),
                       rows.begin() + std::min(y, rows.count - word), pixels);
}

// Every pixel of the canvas is one of the panel.
void paint_full(const PanelView &view, const icanvas &canvas, const Cells &columns,
                const Cells &rows, const PixelBuffer &pixels) {
    if (view.turn == 0 || view.turn == 3) return paint_rows(canvas, columns, rows, pixels);
    if (std::min(columns.count, rows.count) >= word)
        return paint_tiles(canvas, columns, rows, pixels);
    paint_cells(canvas, columns, rows, pixels,
                [](auto *line, auto *, int at, int) { return unsigned{line[at]}; });
}

unsigned blend_half(const uint8_t *line, const uint8_t *next, int x, int neighbour) {
    return (line[x] + line[neighbour] + next[x] + next[neighbour]) / 4u;
}

unsigned blend_two_thirds(const uint8_t *line, const uint8_t *next, int x, int neighbour) {
    return (4u * line[x] + 2u * line[neighbour] + 2u * next[x] + next[neighbour]) / 9u;
}

// Rows that lie next to each other on the panel too.
void paint(const PanelView &view, const icanvas &canvas, Span x, Span y,
           const PixelBuffer &pixels) {
    if (x.first >= x.end || y.first >= y.end) return;
    const Cells columns = make_cells(view, canvas, x, Axis::column, pixels);
    const Cells rows = make_cells(view, canvas, y, Axis::row, pixels);
    switch (view.zoom) {
    case Zoom::full:
        return paint_full(view, canvas, columns, rows, pixels);
    case Zoom::half:
        return paint_cells(canvas, columns, rows, pixels, blend_half);
    case Zoom::two_thirds:
        return paint_cells(canvas, columns, rows, pixels, blend_two_thirds);
    }
}

// Rows move up or down; those that leave the canvas at one side come back at the other.
int64_t shifted(int64_t y, int rows, int height) {
    if (y < 0 || y >= height) return y;
    return (y + rows + height) % height;
}

} // namespace

Point to_panel(const PanelView &view, const icanvas &canvas, Point pixel) {
    const int64_t x = pixel.x, y = shifted(pixel.y, view.shift_rows, canvas.height);
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
    pixel.y = shifted(pixel.y, -view.shift_rows, canvas.height);
    return pixel;
}

void eink_waveform(const PanelView &view, const icanvas &canvas, const irect &area,
                   const PixelBuffer &pixels) {
    const Span x = clip_span(area.x, area.w, canvas.width);
    const Span y = clip_span(area.y, area.h, canvas.height);
    const int last = canvas.height - std::clamp(view.shift_rows, 0, canvas.height);
    paint(view, canvas, x, {y.first, std::min(y.end, last)}, pixels);
    paint(view, canvas, x, {std::max(y.first, last), y.end}, pixels);
}

} // namespace hw
