// SPDX-License-Identifier: MIT
// The canvas that the benchmarks of drawing draw on.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "kelvane/canvas.h"

// A grey canvas that is current while it lives.
struct BenchCanvas : icanvas {
    std::vector<uint8_t> memory;
    BenchCanvas(int w, int h)
        : icanvas{w, h, w, 8, 0, w - 1, 0, h - 1, nullptr},
          memory(static_cast<size_t>(w) * static_cast<size_t>(h), 0x40) {
        addr = memory.data();
        SetCanvas(this);
    }
    BenchCanvas(const BenchCanvas &) = delete;
    ~BenchCanvas() { SetCanvas(nullptr); }
};
