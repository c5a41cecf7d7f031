// SPDX-License-Identifier: MIT
// Draws symbols with the fallback font, at the height of the text around them.
#include "text/symbols.h"

#include <array>
#include <cmath>
#include <vector>
#include FT_OUTLINE_H

#include "ground/guard.h"
#include "text/blit.h"
#include "text/current.h"
#include "text/freetype.h"

namespace text {
namespace {

// Shapes are drawn on a square of this side, y upwards.
constexpr int side = 48;

struct Point {
    int x, y;
};

// Closed lines; what lies in an odd number of them is filled.
using Contour = std::vector<Point>;
using Shape = std::vector<Contour>;

// A thick arrow to the right; the others are this one turned.
const Contour right_arrow = {{2, 18}, {2, 30}, {24, 30}, {24, 44}, {46, 24}, {24, 4}, {24, 18}};

template <class Turn>
Shape turned(Turn turn) {
    Contour contour;
    for (const Point &p : right_arrow) contour.push_back(turn(p));
    return {contour};
}

Contour circle(int radius) {
    Contour contour;
    constexpr int corners = 48;
    for (int i = 0; i < corners; ++i) {
        const double angle = 2 * std::acos(-1) * i / corners;
        contour.push_back({side / 2 + static_cast<int>(std::lround(radius * std::cos(angle))),
                           side / 2 + static_cast<int>(std::lround(radius * std::sin(angle)))});
    }
    return contour;
}

Contour bar(int left, int bottom, int right, int top) {
    return {{left, bottom}, {left, top}, {right, top}, {right, bottom}};
}

Shape shape_of(int number) {
    switch (number) {
    case 1: // left
        return turned([](Point p) { return Point{side - p.x, p.y}; });
    case 2: // right
        return turned([](Point p) { return p; });
    case 3: // up
        return turned([](Point p) { return Point{p.y, p.x}; });
    case 4: // down
        return turned([](Point p) { return Point{p.y, side - p.x}; });
    case 5: // OK: a ring around a disc
        return {circle(23), circle(18), circle(11)};
    case 8: // back: an arrow that comes from above
        return {{{2, 16},
                 {20, 30},
                 {20, 21},
                 {37, 21},
                 {37, 44},
                 {46, 44},
                 {46, 11},
                 {20, 11},
                 {20, 2}}};
    case 9: // menu
        return {bar(4, 6, 44, 13), bar(4, 20, 44, 27), bar(4, 34, 44, 41)};
    default:
        return {};
    }
}

// The shape in FreeType's units of 1/64 pixel.
struct Outline {
    std::vector<FT_Vector> points;
    std::vector<char> tags;
    std::vector<short> ends;
    FT_Outline outline{};

    Outline(const Shape &shape, int64_t size) {
        for (const Contour &contour : shape) {
            for (const Point &p : contour)
                points.push_back({static_cast<FT_Pos>(p.x * 64 * size / side),
                                  static_cast<FT_Pos>(p.y * 64 * size / side)});
            ends.push_back(static_cast<short>(points.size() - 1));
        }
        tags.assign(points.size(), FT_CURVE_TAG_ON);
        outline = {static_cast<short>(ends.size()),
                   static_cast<short>(points.size()),
                   points.data(),
                   tags.data(),
                   ends.data(),
                   FT_OUTLINE_EVEN_ODD_FILL};
    }
};

Glyph rasterise(const Shape &shape, int size) {
    Glyph glyph;
    const FT_Library ft = library();
    if (!ft) return glyph;
    std::vector<uint8_t> pixels(static_cast<size_t>(size) * static_cast<size_t>(size));
    FT_Bitmap bitmap{};
    bitmap.rows = bitmap.width = static_cast<unsigned>(size);
    bitmap.pitch = size;
    bitmap.buffer = pixels.data();
    bitmap.num_grays = 256;
    bitmap.pixel_mode = FT_PIXEL_MODE_GRAY;
    Outline outline(shape, size);
    const FT_Error error = FT_Outline_Get_Bitmap(ft, &outline.outline, &bitmap);
    check_freetype_memory();
    if (error != 0) return glyph;
    glyph.top = size;
    copy_coverage(bitmap, glyph);
    return glyph;
}

void make_black_and_white(Glyph &glyph) {
    uint8_t *const coverage = glyph.coverage.get();
    for (size_t i = 0; i < glyph.pixels(); ++i) coverage[i] = coverage[i] < 128 ? 0 : 255;
}

// The picture that was asked for last.
struct Latest {
    int number = 0;
    int64_t size = 0;
    Mode mode = Mode::mono;
    Glyph glyph;
} latest;

} // namespace

int symbol_of_code(uint16_t code) {
    static constexpr std::array numbers = {1, 2, 3, 4, 5, 8, 9};
    return numbers[static_cast<size_t>(code - 17)];
}

const Glyph *symbol_glyph(int number, int64_t size, Mode mode) {
    if (size < 1 || size * size > largest_glyph_area) return nullptr;
    if (latest.number == number && latest.size == size && latest.mode == mode) return &latest.glyph;
    const Shape shape = shape_of(number);
    if (shape.empty()) return nullptr;
    latest = {number, size, mode, rasterise(shape, static_cast<int>(size))};
    if (mode == Mode::mono) make_black_and_white(latest.glyph);
    return &latest.glyph;
}

} // namespace text

void DrawSymbol(int x, int y, int symbol) {
    // Nothing is drawn.
    ground::guarded([&] {
        if (!text::has_face()) return;
        const int64_t baseline = text::current.baseline;
        const text::Glyph *glyph =
            text::symbol_glyph(symbol, text::symbol_size(baseline), text::current.mode);
        if (glyph)
            text::Target(kvstate.current_color, text::Run::across).draw(*glyph, x, y + baseline);
    });
}
