// peers: pixman-1 cairo
// SPDX-License-Identifier: MIT
// Areas on a grey canvas, beside the least memory work and general libraries.
#include <cairo.h>
#include <cstring>
#include <pixman.h>
#include <vector>

#include "beside.h"
#include "canvas.h"

namespace {

void copy_all(const BenchCanvas &canvas, std::vector<uint8_t> &target) {
    std::memcpy(target.data(), canvas.addr, target.size());
}

void fill_screen_and_memset(benchmark::State &state) {
    const int w = static_cast<int>(state.range(0)), h = static_cast<int>(state.range(1));
    BenchCanvas canvas(w, h);
    beside(
        state, Against::limit, [&] { FillArea(0, 0, w, h, LGRAY); },
        [&] { std::memset(canvas.addr, 0xAA, canvas.memory.size()); });
}
BENCHMARK(fill_screen_and_memset)->Args({758, 1024})->Args({1404, 1872})->UseManualTime();

void fill_100x100_and_pixman(benchmark::State &state) {
    BenchCanvas canvas(760, 1024); // pixman's rows are whole words
    beside(
        state, Against::peer, [] { FillArea(33, 77, 100, 100, LGRAY); },
        [&] {
            pixman_fill(reinterpret_cast<uint32_t *>(canvas.addr), 760 / 4, 8, 33, 77, 100, 100,
                        0xAA);
        });
}
BENCHMARK(fill_100x100_and_pixman)->UseManualTime();

// A whole-screen operation beside a copy of the same bytes.
template <void (*operation)()>
void screen_and_memcpy(benchmark::State &state) {
    BenchCanvas canvas(758, 1024);
    std::vector<uint8_t> target(canvas.memory.size());
    beside(state, Against::limit, operation, [&] { copy_all(canvas, target); });
}
void invert_screen() {
    InvertArea(0, 0, 758, 1024);
}
void dim_screen() {
    DimArea(0, 0, 758, 1024, LGRAY);
}
template <int step>
void hatch_screen() {
    DrawDiagonalHatch(0, 0, 758, 1024, step, BLACK);
}
BENCHMARK(screen_and_memcpy<invert_screen>)->UseManualTime();
BENCHMARK(screen_and_memcpy<dim_screen>)->UseManualTime();
BENCHMARK(screen_and_memcpy<hatch_screen<3>>)->UseManualTime();
BENCHMARK(screen_and_memcpy<hatch_screen<16>>)->UseManualTime();
BENCHMARK(screen_and_memcpy<hatch_screen<17>>)->UseManualTime();

void invert_screen_and_cairo(benchmark::State &state) {
    BenchCanvas canvas(758, 1024);
    cairo_surface_t *surface = cairo_image_surface_create(CAIRO_FORMAT_A8, 758, 1024);
    cairo_t *cairo = cairo_create(surface);
    cairo_set_operator(cairo, CAIRO_OPERATOR_XOR);
    beside(state, Against::peer, invert_screen, [&] { cairo_paint(cairo); });
    cairo_destroy(cairo);
    cairo_surface_destroy(surface);
}
BENCHMARK(invert_screen_and_cairo)->UseManualTime();

} // namespace

BENCHMARK_MAIN();
