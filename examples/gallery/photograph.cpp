// SPDX-License-Identifier: MIT
// Makes ridges, clouds and water of noise, so that no picture file is needed.
#include "photograph.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

// Places are in 256ths of a grid cell and values in 0 to 255, so that every machine makes the same
// picture.
int lattice(unsigned x, unsigned y) {
    unsigned n = x * 374761393u + y * 668265263u;
    n = (n ^ n >> 13) * 1274126177u;
    return int((n ^ n >> 16) & 255);
}

int blend(int a, int b, int part) {
    return a + (b - a) * part / 256;
}

// Smooth noise: values at the corners of cells, blended along a curve.
int noise(unsigned x, unsigned y) {
    const auto curve = [](unsigned t) { return int(t * t * (3 * 256 - 2 * t) >> 16); };
    const unsigned cx = x / 256, cy = y / 256;
    const int fx = curve(x % 256), fy = curve(y % 256);
    return blend(blend(lattice(cx, cy), lattice(cx + 1, cy), fx),
                 blend(lattice(cx, cy + 1), lattice(cx + 1, cy + 1), fx), fy);
}

// Noise with finer and finer detail.
int rough(unsigned x, unsigned y) {
    int sum = 0, weight = 128;
    for (; weight >= 4; weight /= 2, x *= 2, y *= 2) sum += noise(x, y) * weight;
    return sum / 252;
}

// The scene is 1024 wide and 768 high.
constexpr int scene_width = 1024, scene_height = 768, shore = 500;

int sky(int x, int y) {
    const int cloud = rough(unsigned(x * 2 + 900), unsigned(y * 5 + 300));
    const int dx = x - 720, dy = y - 150;
    const int glow = std::max(0, 75 - (dx * dx + dy * dy) / 700);
    const int base = 150 + y / 7 + glow;
    return std::clamp(base + std::max(0, cloud - 120) * (420 - y) / 420, 0, 255);
}

struct Range {
    int top, height; // how far down its lowest ridge lies, and how high it rises
    unsigned seed, step;
    int haze; // how much of it the air hides, of 256
    int light;
};

constexpr Range ranges[] = {
    {390, 300, 7000, 3, 150, 150}, {440, 190, 21000, 4, 90, 120}, {500, 110, 52000, 6, 30, 80}};

int ridge(const Range &r, int x) {
    return r.top - rough(unsigned(x) * r.step + r.seed, r.seed) * r.height / 255;
}

// A slope is bright where it faces the sun, which stands on the right.
int slope(const Range &r, int x, int y) {
    const unsigned u = unsigned(x) * 8 + r.seed, v = unsigned(y) * 6 + r.seed;
    const int facing = rough(u, v) - rough(u + 60, v + 20);
    const int snow = r.haze > 100 && y - ridge(r, x) < 30 + rough(u, v) / 3 ? 80 : 0;
    return blend(std::clamp(r.light / 2 + facing * 2 + snow, 0, 255), 205, r.haze);
}

int land(int x, int y) {
    for (const Range *r = std::end(ranges); r-- != std::begin(ranges);)
        if (y >= ridge(*r, x)) return slope(*r, x, y);
    return sky(x, y);
}

// The lake shows what is above it, darker, and shaken more the nearer it is.
int lake(int x, int y) {
    const int depth = y - shore;
    const int ripple = noise(unsigned(x * 3), unsigned(y * 60 * 64 / (depth + 64))) - 128;
    const int sx = std::clamp(x + ripple * depth / 900, 0, scene_width - 1);
    const int sy = std::max(0, shore - depth * 3 / 2 + ripple * depth / 700);
    return std::clamp(land(sx, sy) * 3 / 4 - 12 + ripple / 10, 0, 255);
}

// Reeds before the lake: thin dark stems that lean.
bool in_reed(int x, int y) {
    for (int i = 0; i < 70; ++i) {
        const int root = lattice(unsigned(i), 1) * 2 + (i % 4 == 0 ? 560 : -60);
        const int height = 60 + lattice(unsigned(i), 2) * 3 / 4;
        const int up = scene_height - y;
        if (up > height) continue;
        const int lean = (lattice(unsigned(i), 3) - 128) * up * up / (height * 400);
        const int half = 1 + (height - up) * 3 / height + (up > height * 4 / 5 ? 2 : 0);
        if (std::abs(x - root - lean) <= half) return true;
    }
    return false;
}

int scene(int x, int y) {
    if (y > 520 && in_reed(x, y)) return 14 + noise(unsigned(x * 40), unsigned(y * 9)) / 10;
    return y < shore ? land(x, y) : lake(x, y);
}

} // namespace

Bitmap make_grey_bitmap(int w, int h) {
    const size_t bytes = size_t(w) * size_t(h);
    Bitmap bm(static_cast<ibitmap *>(std::malloc(sizeof(ibitmap) + bytes + 4)));
    if (!bm) return bm;
    bm->width = static_cast<unsigned short>(w);
    bm->height = static_cast<unsigned short>(h);
    bm->depth = 8;
    bm->scanline = bm->width;
    std::memset(bm->data, 255, bytes + 4);
    return bm;
}

Bitmap make_photograph(int w, int h) {
    Bitmap bm = make_grey_bitmap(w, h);
    for (int y = 0; bm && y < h; ++y)
        for (int x = 0; x < w; ++x)
            bm->data[y * w + x] =
                static_cast<unsigned char>(scene(x * scene_width / w, y * scene_height / h));
    return bm;
}
