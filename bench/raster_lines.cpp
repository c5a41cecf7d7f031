// peers: sdl2 cairo
// SPDX-License-Identifier: MIT
// 1000 random lines on a grey canvas of 758x1024.
#include <SDL.h>
#include <cairo.h>
#include <cstdlib>
#include <random>
#include <vector>

#include "beside.h"
#include "canvas.h"

namespace {

struct Segment {
    int x1, y1, x2, y2;
};

std::vector<Segment> random_segments() {
    std::mt19937 engine;
    std::uniform_int_distribution<int> x(0, 757), y(0, 1023);
    std::vector<Segment> segments(1000);
    for (Segment &s : segments) s = {x(engine), y(engine), x(engine), y(engine)};
    return segments;
}

// The textbook line, which knows no clip.
[[gnu::noinline]] void bresenham(const icanvas &c, Segment s, uint8_t grey) {
    const int dx = std::abs(s.x2 - s.x1), dy = -std::abs(s.y2 - s.y1);
    const int sx = s.x1 < s.x2 ? 1 : -1, sy = s.y1 < s.y2 ? 1 : -1;
    int error = dx + dy;
    for (;;) {
        c.addr[s.y1 * c.scanline + s.x1] = grey;
        if (s.x1 == s.x2 && s.y1 == s.y2) return;
        const int twice = 2 * error;
        if (twice >= dy) error += dy, s.x1 += sx;
        if (twice <= dx) error += dx, s.y1 += sy;
    }
}

// The same with one axis always advancing and a pointer instead of coordinates.
[[gnu::noinline]] void bresenham_by_axis(const icanvas &c, Segment s, uint8_t grey) {
    int dx = std::abs(s.x2 - s.x1), dy = std::abs(s.y2 - s.y1);
    int major = s.x1 < s.x2 ? 1 : -1, minor = s.y1 < s.y2 ? c.scanline : -c.scanline;
    if (dx < dy) std::swap(dx, dy), std::swap(major, minor);
    uint8_t *pixel = c.addr + s.y1 * c.scanline + s.x1;
    int error = 2 * dy - dx;
    for (int n = dx; n >= 0; --n) {
        *pixel = grey;
        if (error > 0) pixel += minor, error -= 2 * dx;
        pixel += major, error += 2 * dy;
    }
}

template <void (*line)(const icanvas &, Segment, uint8_t)>
void lines_and_bare(benchmark::State &state) {
    BenchCanvas canvas(758, 1024);
    const auto segments = random_segments();
    beside(
        state, Against::limit,
        [&] {
            for (const Segment &s : segments) DrawLine(s.x1, s.y1, s.x2, s.y2, BLACK);
        },
        [&] {
            for (const Segment &s : segments) line(canvas, s, 0);
        });
}
BENCHMARK(lines_and_bare<bresenham>)->UseManualTime();
BENCHMARK(lines_and_bare<bresenham_by_axis>)->UseManualTime();

void lines_and_sdl(benchmark::State &state) {
    BenchCanvas canvas(758, 1024);
    const auto segments = random_segments();
    SDL_Surface *surface =
        SDL_CreateRGBSurfaceWithFormat(0, 758, 1024, 32, SDL_PIXELFORMAT_ARGB8888);
    SDL_Renderer *renderer = SDL_CreateSoftwareRenderer(surface);
    SDL_SetRenderDrawColor(renderer, 0, 0, 0, 255);
    state.SetLabel("the peer collects the lines first, and writes four bytes a pixel");
    beside(
        state, Against::peer,
        [&] {
            for (const Segment &s : segments) DrawLine(s.x1, s.y1, s.x2, s.y2, BLACK);
        },
        [&] {
            for (const Segment &s : segments) SDL_RenderDrawLine(renderer, s.x1, s.y1, s.x2, s.y2);
            SDL_RenderFlush(renderer);
        });
    SDL_DestroyRenderer(renderer);
    SDL_FreeSurface(surface);
}
BENCHMARK(lines_and_sdl)->UseManualTime();

void lines_and_cairo(benchmark::State &state) {
    BenchCanvas canvas(758, 1024);
    const auto segments = random_segments();
    cairo_surface_t *surface = cairo_image_surface_create(CAIRO_FORMAT_A8, 758, 1024);
    cairo_t *cairo = cairo_create(surface);
    cairo_set_antialias(cairo, CAIRO_ANTIALIAS_NONE);
    cairo_set_line_width(cairo, 1);
    state.SetLabel("the peer fills polygons");
    beside(
        state, Against::peer,
        [&] {
            for (const Segment &s : segments) DrawLine(s.x1, s.y1, s.x2, s.y2, BLACK);
        },
        [&] {
            for (const Segment &s : segments) {
                cairo_move_to(cairo, s.x1 + 0.5, s.y1 + 0.5);
                cairo_line_to(cairo, s.x2 + 0.5, s.y2 + 0.5);
                cairo_stroke(cairo);
            }
        });
    cairo_destroy(cairo);
    cairo_surface_destroy(surface);
}
BENCHMARK(lines_and_cairo)->UseManualTime();

} // namespace

BENCHMARK_MAIN();
