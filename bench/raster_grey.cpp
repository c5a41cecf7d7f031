// SPDX-License-Identifier: MIT
// Grey conversion of a whole screen, beside a plain loop of one pixel after the
// other, of which the compiler makes what it can.
#include <algorithm>
#include <vector>

#include "beside.h"
#include "kelvane/canvas.h"

namespace {

constexpr int width = 758, height = 1024;
using Pixel = uint8_t (*)(const uint8_t *row, int x);

uint8_t rgb565(const uint8_t *row, int x) {
    const int v = row[2 * x] | row[2 * x + 1] << 8;
    return static_cast<uint8_t>(std::min(255, (v & 31) + 5 * ((v >> 6 & 31) + (v >> 12))));
}
uint8_t rgb24(const uint8_t *row, int x) {
    const uint8_t *b = row + 3 * x;
    return static_cast<uint8_t>(std::min(255, (b[2] >> 3) + 5 * ((b[0] >> 4) + (b[1] >> 3))));
}
uint8_t gs4(const uint8_t *row, int x) {
    return static_cast<uint8_t>((x % 2 != 0 ? row[x / 2] & 15 : row[x / 2] >> 4) * 17);
}

template <Pixel pixel>
[[gnu::noinline]] void plain(const kv_img_conv &conv) {
    for (int y = 0; y < conv.height; ++y) {
        const uint8_t *src = static_cast<const uint8_t *>(conv.src) + y * conv.src_scanline;
        uint8_t *dest = static_cast<uint8_t *>(conv.dest) + y * conv.dest_scanline;
        for (int x = 0; x < conv.width; ++x) dest[x] = pixel(src, x);
    }
}

template <void (*convert)(const kv_img_conv *), Pixel pixel, int bits>
void grey_and_plain(benchmark::State &state) {
    const int row = width * bits / 8;
    std::vector<uint8_t> src(static_cast<size_t>(row) * height), dest(width * height);
    std::generate(src.begin(), src.end(), [n = 0u]() mutable { return (n = n * 69069 + 1) >> 24; });
    const kv_img_conv conv{src.data(), dest.data(), width, height, row, width};
    beside(
        state, Against::peer, [&] { convert(&conv); }, [&] { plain<pixel>(conv); });
}
BENCHMARK(grey_and_plain<kv_rgb24_to_gs, rgb24, 24>)->UseManualTime();
BENCHMARK(grey_and_plain<kv_rgb565_to_gs, rgb565, 16>)->UseManualTime();
BENCHMARK(grey_and_plain<kv_gs4_to_gs, gs4, 4>)->UseManualTime();

} // namespace

BENCHMARK_MAIN();
