// SPDX-License-Identifier: MIT
// Canvases for drawing tests: guarded memory, pictures in letters, and the plain definition.
#pragma once

#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "internal.h"
#include "raster/pixels.h"

// A canvas that is current while it lives. Its memory lies unaligned between guard bytes.
struct TestCanvas : icanvas {
    static constexpr int guard = 64;
    std::vector<uint8_t> memory;

    TestCanvas(int w, int h, int bits = 8, int padding = 0, uint8_t background = 255)
        : icanvas{w, h, w * (bits / 8) + padding, bits, 0, w - 1, 0, h - 1, nullptr},
          memory(static_cast<size_t>(scanline * h + 2 * guard + 1), background) {
        addr = memory.data() + guard + 1;
        SetCanvas(this);
    }
    TestCanvas(const TestCanvas &) = delete;
    ~TestCanvas() { SetCanvas(nullptr); }

    // Grey canvases only: '.' white, '#' black, '+' in between.
    std::string picture() const {
        std::string text = "\n";
        for (int y = 0; y < height; ++y, text += '\n')
            for (int x = 0; x < width; ++x) {
                const uint8_t grey = *raster::pixel_address(*this, x, y);
                text += grey == 255 ? '.' : grey == 0 ? '#' : '+';
            }
        return text;
    }
};

struct Random {
    std::mt19937 engine;
    int operator()(int from, int to) { return std::uniform_int_distribution(from, to)(engine); }
    template <size_t n>
    int of(const int (&values)[n]) {
        return values[(*this)(0, n - 1)];
    }
};
