// peers: sdl2
// SPDX-License-Identifier: MIT
// A grey frame on its way into the window's four-channel buffer, beside a memset of that buffer and
// SDL's conversion from a palette of 8 bits to 32.
#include <SDL.h>
#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstring>
#include <vector>

#include "hw_linux/panel.h"

namespace {

using Clock = std::chrono::steady_clock;

struct Frame {
    Frame(int width, int height)
        : grey(static_cast<size_t>(width) * height),
          rgba(grey.size() * 4), canvas{width,     height, width,      8,          0,
                                        width - 1, 0,      height - 1, grey.data()},
          pixels{rgba.data(), width, height, width * 4} {
        for (size_t i = 0; i < grey.size(); ++i) grey[i] = static_cast<uint8_t>(i * 7 + i / 640);
    }
    std::vector<unsigned char> grey;
    std::vector<uint8_t> rgba;
    icanvas canvas;
    hw::PixelBuffer pixels;
};

class SdlBlit {
  public:
    explicit SdlBlit(Frame &frame)
        : from_(SDL_CreateRGBSurfaceWithFormatFrom(frame.grey.data(), frame.canvas.width,
                                                   frame.canvas.height, 8, frame.canvas.width,
                                                   SDL_PIXELFORMAT_INDEX8)),
          to_(SDL_CreateRGBSurfaceWithFormat(0, frame.canvas.width, frame.canvas.height, 32,
                                             SDL_PIXELFORMAT_RGBA32)) {
        SDL_Color greys[256];
        for (int i = 0; i < 256; ++i) {
            const auto level = static_cast<Uint8>(i);
            greys[i] = {level, level, level, 255};
        }
        SDL_SetPaletteColors(from_->format->palette, greys, 0, 256);
        SDL_SetSurfaceBlendMode(from_, SDL_BLENDMODE_NONE);
    }
    ~SdlBlit() {
        SDL_FreeSurface(from_);
        SDL_FreeSurface(to_);
    }
    SdlBlit(const SdlBlit &) = delete;
    SdlBlit &operator=(const SdlBlit &) = delete;
    void run() { SDL_BlitSurface(from_, nullptr, to_, nullptr); }

  private:
    SDL_Surface *from_, *to_;
};

template <typename Work>
double seconds(Work work) {
    const auto start = Clock::now();
    work();
    benchmark::ClobberMemory();
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// The three take turns, so that a busy machine slows all of them alike; medians are compared.
void grey_to_window(benchmark::State &state) {
    const auto width = static_cast<int>(state.range(0)), height = static_cast<int>(state.range(1));
    Frame frame(width, height);
    SdlBlit blit(frame);
    const hw::PanelView view{hw::Zoom::full, static_cast<int>(state.range(2)), 0};
    std::vector<double> ours, memset_times, sdl_times;
    for (auto _ : state) {
        ours.push_back(seconds([&] {
            hw::eink_waveform(view, frame.canvas, {0, 0, width, height, 0}, frame.pixels);
        }));
        memset_times.push_back(
            seconds([&] { std::memset(frame.rgba.data(), 255, frame.rgba.size()); }));
        sdl_times.push_back(seconds([&] { blit.run(); }));
        state.SetIterationTime(ours.back());
    }
    const auto median = [](std::vector<double> &times) {
        std::nth_element(times.begin(), times.begin() + times.size() / 2, times.end());
        return times[times.size() / 2];
    };
    state.counters["x_memset"] = median(ours) / median(memset_times);
    state.counters["faster_than_sdl"] = median(sdl_times) / median(ours);
}
BENCHMARK(grey_to_window)
    ->ArgNames({"w", "h", "turn"})
    ->Args({758, 1024, 0})
    ->Args({1404, 1872, 0})
    ->Args({1024, 758, 1})
    ->UseManualTime();

} // namespace

BENCHMARK_MAIN();
