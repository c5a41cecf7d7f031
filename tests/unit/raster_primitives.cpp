// SPDX-License-Identifier: MIT
// Every primitive against its plain definition, pixel by pixel, on random canvases and clips.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "hw.h"
#include "raster_support.h"

namespace {

struct Args {
    int x, y, w, h, color, a, b;
};

// The definitions word for word.
struct Plain {
    icanvas &c;

    bool shows(int64_t x, int64_t y) const {
        return x >= c.clipx1 && x <= c.clipx2 && y >= c.clipy1 && y <= c.clipy2 && x >= 0 &&
               y >= 0 && x < c.width && y < c.height;
    }
    uint8_t *at(int64_t x, int64_t y) const { return c.addr + y * c.scanline + x * (c.depth >> 3); }
    void pixel(int64_t x, int64_t y, int color) const {
        if (!shows(x, y)) return;
        const int r = color >> 16 & 255, g = color >> 8 & 255, b = color & 255;
        uint8_t *p = at(x, y);
        if (c.depth == 8) *p = static_cast<uint8_t>((r * 77 + g * 151 + b * 28) >> 8);
        if (c.depth == 24)
            p[0] = static_cast<uint8_t>(r), p[1] = static_cast<uint8_t>(g),
            p[2] = static_cast<uint8_t>(b);
    }
    // Visits the shown pixels of an area.
    template <class Visit>
    void area(const Args &a, Visit visit) const {
        for (int y = a.y; y < a.y + a.h; ++y)
            for (int x = a.x; x < a.x + a.w; ++x)
                if (shows(x, y)) visit(x, y, at(x, y));
    }
    void invert(uint8_t *p) const {
        for (int i = 0; i < c.depth / 8; ++i) p[i] = static_cast<uint8_t>(~p[i]);
    }
    void invert_extremes(uint8_t *p) const {
        const int t = 1 << (8 - hw_depth());
        const int grey = c.depth == 8 ? *p : (p[0] * 77 + p[1] * 151 + p[2] * 28) >> 8;
        if (grey < t || grey >= 256 - t) std::memset(p, ~grey, static_cast<size_t>(c.depth / 8));
    }
    void invert_map(uint8_t *p, const icolor_map &map) const {
        for (int i = 0; i < map.size && c.depth == 24; ++i)
            if ((map.from_color[i] & 0xFFFFFF) == (p[0] << 16 | p[1] << 8 | p[2])) {
                for (int k = 0; k < 3; ++k)
                    p[k] = static_cast<uint8_t>(map.to_color[i] >> (16 - 8 * k));
                return;
            }
        invert(p);
    }
    // Walks a line; ink(n, end) decides about the nth pixel.
    template <class Decide>
    void line(int x1, int y1, int x2, int y2, int color, Decide inks) const {
        const int64_t dx = std::abs(int64_t{x2} - x1) + 1, dy = std::abs(int64_t{y2} - y1) + 1;
        const int sx = (x2 > x1) - (x2 < x1), sy = (y2 > y1) - (y2 < y1);
        int64_t e = 0, x = x1, y = y1, n = 0;
        do {
            if (inks(n++, false)) pixel(x, y, color);
            if (dx <= dy) {
                y += sy, e += dx;
                if (e >= dy) e -= dy, x += sx;
            } else {
                x += sx, e += dy;
                if (e >= dx) e -= dx, y += sy;
            }
        } while (dx <= dy ? y != y2 : x != x2);
        if (inks(n, true)) pixel(x2, y2, color);
    }
    void line(int x1, int y1, int x2, int y2, int color) const {
        line(x1, y1, x2, y2, color, [](int64_t, bool) { return true; });
    }
    void rect(int x, int y, int w, int h, int color) const {
        if (w < 1 || h < 1) return;
        line(x, y, x + w - 1, y, color);
        line(x, y, x, y + h - 1, color);
        line(x, y + h - 1, x + w - 1, y + h - 1, color);
        line(x + w - 1, y, x + w - 1, y + h - 1, color);
    }
    void selection(const Args &a) const {
        if (a.w < 1 || a.h < 1) return;
        rect(a.x, a.y + 2, a.w, a.h - 4, a.color);
        rect(a.x + 1, a.y + 1, a.w - 2, a.h - 2, a.color);
        rect(a.x + 2, a.y, a.w - 4, a.h, a.color);
        for (int y : {a.y + 3, a.y + a.h - 4})
            for (int x : {a.x + 3, a.x + a.w - 4}) pixel(x, y, a.color);
    }
    void circle(int64_t x0, int64_t y0, int64_t r, int color) const {
        int64_t dy = r, dx = 0, e = 1 - 2 * r;
        while (dy >= 0) {
            for (int64_t y : {y0 + dy, y0 - dy})
                if (y >= 0 && y < c.height)
                    for (int64_t x = std::max<int64_t>(x0 - dx, 0);
                         x <= std::min<int64_t>(x0 + dx, c.width); ++x)
                        pixel(x, y, color);
            if (e < 0 && 2 * (e + dy) - 1 <= 0) {
                dx += 1, e += 2 * dx + 1;
            } else if (e > 0 && 2 * (e - dx) - 1 > 0) {
                dy -= 1, e += 1 - 2 * dy;
            } else {
                dx += 1, e += 2 * (dx - dy), dy -= 1;
            }
        }
    }
    void hatch(const Args &a, int (*check)(int, int)) const {
        if (a.a < 1 || a.w < 1) return;
        for (int y = a.y; y < a.y + a.h; ++y)
            for (int x = a.x + a.w - (y % a.a + a.a) % a.a; x >= a.x; x -= a.a)
                if (check(x, y) == 0) pixel(x, y, a.color);
    }
};

// A dash pattern, counted as the walk counts it.
struct Dashes {
    int fill, space, counter = fill;
    bool drawing = true;
    bool operator()(int64_t, bool end) {
        const bool inks = drawing || end;
        if (--counter < 1) counter = drawing ? space : fill, drawing = !drawing;
        return inks;
    }
};

int odd_thirds(int x, int y) {
    return (x * 7 + y * 3) % 3 != 0;
}
int nothing(int, int) {
    return 0;
}

const int colors[] = {BLACK, WHITE, LGRAY, 0x123456, 0xFF0000, 0x00FF01, -1, INT_MIN};
int map_from[] = {0x000000, 0x123456, 0x123456, -1}, map_to[] = {0x010203, -1, 7, 0xFEDCBA};
const icolor_map map{map_from, map_to, 4}, no_map{};

using A = const Args &;
using P = const Plain &;
struct Primitive {
    const char *name;
    void (*draw)(A);
    void (*define)(P, A);
};

const Primitive circle = {"DrawCircle", [](A a) { DrawCircle(a.x, a.y, a.w, a.color); },
                          [](P p, A a) { p.circle(a.x, a.y, a.w, a.color); }};

const Primitive primitives[] = {
    {"DrawPixel", [](A a) { DrawPixel(a.x, a.y, a.color); },
     [](P p, A a) { p.pixel(a.x, a.y, a.color); }},
    {"FillArea", [](A a) { FillArea(a.x, a.y, a.w, a.h, a.color); },
     [](P p, A a) { p.area(a, [&](int x, int y, uint8_t *) { p.pixel(x, y, a.color); }); }},
    {"FillAreaRect",
     [](A a) {
         const irect r = iRect(a.x, a.y, a.w, a.h, -1);
         FillAreaRect(&r, a.color);
     },
     [](P p, A a) { p.area(a, [&](int x, int y, uint8_t *) { p.pixel(x, y, a.color); }); }},
    {"InvertArea", [](A a) { InvertArea(a.x, a.y, a.w, a.h); },
     [](P p, A a) { p.area(a, [&](int, int, uint8_t *at) { p.invert(at); }); }},
    {"InvertAreaBW", [](A a) { InvertAreaBW(a.x, a.y, a.w, a.h); },
     [](P p, A a) { p.area(a, [&](int, int, uint8_t *at) { p.invert_extremes(at); }); }},
    {"InvertAreaMap", [](A a) { InvertAreaMap(a.x, a.y, a.w, a.h, &map); },
     [](P p, A a) { p.area(a, [&](int, int, uint8_t *at) { p.invert_map(at, map); }); }},
    {"InvertAreaMap, empty",
     [](A a) { InvertAreaMap(a.x, a.y, a.w, a.h, a.a > 0 ? &no_map : nullptr); },
     [](P p, A a) { p.area(a, [&](int, int, uint8_t *at) { p.invert(at); }); }},
    {"DimArea", [](A a) { DimArea(a.x, a.y, a.w, a.h, a.color); },
     [](P p, A a) {
         p.area(a, [&](int x, int y, uint8_t *) {
             if ((x + y) % 2 == 0) p.pixel(x, y, a.color);
         });
     }},
    {"DrawLine", [](A a) { DrawLine(a.x, a.y, a.w, a.h, a.color); },
     [](P p, A a) { p.line(a.x, a.y, a.w, a.h, a.color); }},
    {"DrawLineEx", [](A a) { DrawLineEx(a.x, a.y, a.w, a.h, a.color, std::max(a.a, 1)); },
     [](P p, A a) {
         p.line(a.x, a.y, a.w, a.h, a.color,
                [&](int64_t n, bool) { return n % std::max(a.a, 1) == 0; });
     }},
    {"DrawDashLine", [](A a) { DrawDashLine(a.x, a.y, a.w, a.h, a.color, a.a, a.b); },
     [](P p, A a) {
         p.line(a.x, a.y, a.w, a.h, a.color, Dashes{a.a, a.b});
     }},
    {"DrawRect", [](A a) { DrawRect(a.x, a.y, a.w, a.h, a.color); },
     [](P p, A a) { p.rect(a.x, a.y, a.w, a.h, a.color); }},
    {"DrawSelection", [](A a) { DrawSelection(a.x, a.y, a.w, a.h, a.color); },
     [](P p, A a) { p.selection(a); }},
    circle,
    {"DrawDiagonalHatch", [](A a) { DrawDiagonalHatch(a.x, a.y, a.w, a.h, a.a, a.color); },
     [](P p, A a) { p.hatch(a, nothing); }},
    {"DrawDiagonalHatchLimits",
     [](A a) { DrawDiagonalHatchLimits(a.x, a.y, a.w, a.h, a.a, a.color, odd_thirds); },
     [](P p, A a) { p.hatch(a, odd_thirds); }},
};

// One primitive drawn twice on equal random canvases; all memory must agree, guards included.
class Comparison {
  public:
    Comparison(Random &random, int max_w, int max_h)
        : fast_(random(1, max_w), random(1, max_h), random(0, 1) ? 24 : 8,
                random(0, 2) ? random(0, 9) : 0) {
        for (uint8_t &byte : fast_.memory) byte = static_cast<uint8_t>(random(0, 255));
        // Inverted colours and neighbours of the extreme levels come up often enough.
        for (int i = 0; i < fast_.scanline * fast_.height / 2; ++i)
            fast_.addr[random(0, fast_.scanline * fast_.height - 1)] = static_cast<uint8_t>(
                random.of({0, 15, 16, 63, 64, 191, 192, 239, 240, 255, 0x12, 0x34, 0x56}));
        if (random(0, 2) != 0)
            SetClip(random(-9, max_w), random(-9, max_h), random(-9, max_w), random(-9, max_h));
    }

    void run(const Primitive &primitive, A a) {
        std::vector<uint8_t> expected = fast_.memory;
        icanvas plain = fast_;
        plain.addr = expected.data() + (fast_.addr - fast_.memory.data());
        primitive.define({plain}, a);
        primitive.draw(a);
        ASSERT_EQ(fast_.memory, expected)
            << primitive.name << '(' << a.x << ", " << a.y << ", " << a.w << ", " << a.h
            << ") color " << a.color << " a " << a.a << " b " << a.b << " on " << fast_.width << 'x'
            << fast_.height << " depth " << fast_.depth << " clip " << fast_.clipx1 << ".."
            << fast_.clipx2 << ' ' << fast_.clipy1 << ".." << fast_.clipy2;
    }

  private:
    TestCanvas fast_;
};

class RasterPrimitive : public testing::TestWithParam<Primitive> {};

TEST_P(RasterPrimitive, GivesTheBytesOfItsDefinition) {
    Random random{};
    for (int i = 0; i < 3000 && !HasFatalFailure(); ++i) {
        if (i == 2000) loadHwConfigEmulator("0x0010111101013021"); // a panel of four greys
        // Now and then wide enough for rows of several vectors and chunks, or far away.
        const bool wide = i % 10 == 0;
        const int far = i % 25 == 0 ? 3000 : 0;
        Comparison comparison(random, wide ? 900 : 40, wide ? 5 : 30);
        const auto at = [&] { return random(-50 - far, 80 + far); };
        comparison.run(GetParam(), {at(), at(), at() + (wide ? 300 : 0), at(), random.of(colors),
                                    random(-2, 20), random(-2, 9)});
    }
}

INSTANTIATE_TEST_SUITE_P(All, RasterPrimitive, testing::ValuesIn(primitives),
                         [](const auto &primitive) {
                             std::string name = primitive.param.name;
                             std::erase_if(name, [](char c) { return !std::isalnum(c); });
                             return name;
                         });

// Discs whose outline bends in the rows after the turn, and ones far larger than the canvas.
TEST(RasterShapes, DiscsOfEveryRadiusKeepTheirOutline) {
    Random random{};
    for (int radius = 0; radius < 210; ++radius) {
        Comparison comparison(random, 200, 200);
        comparison.run(circle, {random(0, 100), random(0, 100), radius, 0, LGRAY, 0, 0});
    }
    for (const int radius : {371, 779, 2172, 30011, 1000003})
        for (const double angle : {0.0, 0.3, 0.78, 0.7854, 0.79, 1.2, 1.57}) {
            Comparison comparison(random, 60, 60);
            comparison.run(circle, {20 - static_cast<int>(radius * std::cos(angle)),
                                    20 + static_cast<int>(radius * std::sin(angle)), radius, 0,
                                    LGRAY, 0, 0});
        }
}

const int extremes[] = {INT_MIN, INT_MIN + 1, INT_MIN / 2, -1,          0,
                        1,       5,           INT_MAX / 2, INT_MAX - 1, INT_MAX};

TEST(RasterShapes, LinesAcrossAllOfIntCrossTheCanvasInTheRightPixels) {
    Random random{};
    for (int i = 0; i < 3000; ++i) {
        TestCanvas canvas(23, 17);
        const int64_t x1 = random.of(extremes), x2 = random.of(extremes);
        const int64_t y1 = random.of(extremes), y2 = random.of(extremes);
        DrawLine(static_cast<int>(x1), static_cast<int>(y1), static_cast<int>(x2),
                 static_cast<int>(y2), BLACK);
        const int64_t dx = std::abs(x2 - x1) + 1, dy = std::abs(y2 - y1) + 1;
        for (int64_t y = 0; y < 17; ++y)
            for (int64_t x = 0; x < 23; ++x) {
                const int64_t ix = std::abs(x - x1), iy = std::abs(y - y1);
                const bool inside = x >= std::min(x1, x2) && x <= std::max(x1, x2) &&
                                    y >= std::min(y1, y2) && y <= std::max(y1, y2);
                const bool on = inside && (dx <= dy ? ix == static_cast<__int128>(iy) * dx / dy
                                                    : iy == static_cast<__int128>(ix) * dy / dx);
                ASSERT_EQ(canvas.addr[y * 23 + x] == 0, on)
                    << x1 << ',' << y1 << " to " << x2 << ',' << y2 << " at " << x << ',' << y;
            }
    }
}

// The sanitizers watch; what is drawn lies between the guards, and every call ends at once.
TEST(RasterShapes, AbsurdArgumentsStayInsideTheCanvas) {
    Random random{};
    const auto any = [&] { return random.of(extremes); };
    for (int i = 0; i < 20000; ++i) {
        TestCanvas canvas(19, 11, i % 2 ? 8 : 24, 3, 0xA5);
        if (random(0, 1)) SetClip(any(), any(), any(), any());
        const Primitive &primitive = primitives[random(0, std::size(primitives) - 1)];
        primitive.draw({any(), any(), any(), any(), any(), any(), any()});
        for (int k = 0; k < TestCanvas::guard; ++k)
            ASSERT_TRUE(canvas.memory[static_cast<size_t>(k)] == 0xA5 &&
                        *(canvas.memory.rbegin() + k) == 0xA5)
                << primitive.name;
    }
    for (icanvas broken : {icanvas{}, icanvas{5, 5, 5, 8, 0, 4, 0, 4, nullptr},
                           icanvas{INT_MIN, INT_MIN, INT_MIN, 24, 0, 4, 0, 4, nullptr}}) {
        uint8_t byte = 7;
        for (uint8_t *addr : {static_cast<uint8_t *>(nullptr), &byte}) {
            if (broken.width == 5 && addr != nullptr) broken.depth = 4;
            broken.addr = addr;
            SetCanvas(&broken);
            for (const Primitive &p : primitives) p.draw({0, 0, 4, 4, BLACK, 1, 1});
            ClearScreen();
        }
        EXPECT_EQ(byte, 7);
    }
    SetCanvas(nullptr);
    kvstate.canvas = nullptr;
    for (const Primitive &p : primitives) p.draw({0, 0, 4, 4, BLACK, 1, 1});
    FillAreaRect(nullptr, BLACK);
}

TEST(RasterShapes, LooksAsDescribed) {
    const struct {
        const char *name;
        void (*draw)();
        const char *picture;
    } cases[] = {
        {"stepped line", [] { DrawLineEx(1, 0, 5, 0, BLACK, 2); }, R"(
.#.#.#..
........
........
)"},
        {"dashes, and the end",
         [] { DrawDashLine(0, 1, 7, 1, BLACK, 3, 2), DrawDashLine(0, 2, 4, 2, BLACK, 3, 9); }, R"(
........
###..###
###.#...
)"},
        {"slope: the minor step comes when the error is full", [] { DrawLine(0, 0, 6, 2, BLACK); },
         R"(
###.....
...##...
.....##.
)"},
        {"hatch: row 0 begins right of the rectangle",
         [] { DrawDiagonalHatch(0, 0, 6, 3, 3, BLACK); }, R"(
#..#..#.
..#..#..
.#..#...
)"},
        {"dim", [] { DimArea(1, 0, 4, 3, BLACK); }, R"(
..#.#...
.#.#....
..#.#...
)"},
        {"disc", [] { DrawCircle(3, 1, 1, BLACK); }, R"(
..###...
..###...
..###...
)"},
    };
    for (const auto &c : cases) {
        TestCanvas canvas(8, 3);
        c.draw();
        EXPECT_EQ(canvas.picture(), c.picture) << c.name;
    }
    TestCanvas canvas(10, 9);
    DrawSelection(0, 0, 10, 9, BLACK);
    EXPECT_EQ(canvas.picture(), R"(
..######..
.########.
##########
####..####
###....###
####..####
##########
.########.
..######..
)");
}

TEST(RasterShapesDeathTest, StepBelowOneStopsTheProgram) {
    EXPECT_DEATH(DrawLineEx(0, 0, 5, 5, BLACK, 0), "step > 0");
}

TEST(RasterShapes, HatchAsksOnlyAboutShownPixelsRightToLeft) {
    TestCanvas canvas(6, 2);
    static std::vector<std::pair<int, int>> asked;
    DrawDiagonalHatchLimits(INT_MIN, INT_MIN, INT_MAX, INT_MAX, 2, BLACK,
                            [](int, int) { return 0; });
    EXPECT_EQ(canvas.picture(), "\n......\n......\n");
    DrawDiagonalHatchLimits(-4, 0, 100, 9, 4, BLACK, [](int x, int y) {
        asked.emplace_back(x, y);
        return x == 4 ? 1 : 0;
    });
    EXPECT_EQ(asked, (std::vector<std::pair<int, int>>{{4, 0}, {0, 0}, {3, 1}}));
    EXPECT_EQ(canvas.picture(), "\n#.....\n...#..\n");
}

} // namespace
