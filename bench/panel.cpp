// peers: sdl2
// SPDX-License-Identifier: MIT
// A grey frame on its way into the window's four-channel buffer, upright and turned, beside a
// memset of that buffer and SDL's conversion from a palette of 8 bits to 32. Before that, a frame
// of the panel's model beside a copy of what it keeps of each pixel: a grey and a residue.
#include <SDL.h>
#include <benchmark/benchmark.h>
#include <cstring>
#include <utility>
#include <vector>

#include "beside.h"
#include "hw_linux/epaper.h"
#include "hw_linux/panel.h"

namespace {

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

// The panel of a turned frame has the frame's sides in turn.
void show(benchmark::State &state, Frame &frame) {
    const auto turn = static_cast<int>(state.range(2));
    const hw::PanelView view{hw::Zoom::full, turn, 0};
    hw::PixelBuffer pixels = frame.pixels;
    if (turn == 1 || turn == 2) {
        std::swap(pixels.width, pixels.height);
        pixels.stride = pixels.width * 4;
    }
    hw::eink_waveform(view, frame.canvas, {0, 0, frame.canvas.width, frame.canvas.height, 0},
                      pixels);
}

void epaper_frame_and_memcpy(benchmark::State &state) {
    const int width = 1404, height = 1872;
    const hw::Waveform &waveform =
        hw::waveform_of(hw::UpdateKind::partial, static_cast<int>(state.range(0)));
    const hw::Plane white(width, height, 255);
    hw::Plane page = white;
    for (size_t i = 0; i < page.bytes.size(); ++i) page.bytes[i] = static_cast<uint8_t>(i * 7);
    hw::Epaper panel(white);
    panel.add(1, {0, 0, width, height, 0}, waveform, 0);
    for (int y = 0; y < height; ++y) panel.add_row(y, white.at(0, y), page.at(0, y));
    const std::vector<uint8_t> kept(2 * page.bytes.size(), 1);
    std::vector<uint8_t> copy(kept.size());
    int64_t us = 0;
    beside(
        state, Against::limit, [&] { panel.advance(us = (us + 12'000) % 120'000); },
        [&] { std::memcpy(copy.data(), kept.data(), kept.size()); });
}
BENCHMARK(epaper_frame_and_memcpy)
    ->ArgName("mode")
    ->Arg(UPDATE_GREY)
    ->Arg(UPDATE_A2_EXIT)
    ->UseManualTime();

Frame frame_of(const benchmark::State &state) {
    return {static_cast<int>(state.range(0)), static_cast<int>(state.range(1))};
}

void grey_to_window_and_memset(benchmark::State &state) {
    Frame frame = frame_of(state);
    beside(
        state, Against::limit, [&] { show(state, frame); },
        [&] { std::memset(frame.rgba.data(), 255, frame.rgba.size()); });
}

void grey_to_window_and_sdl(benchmark::State &state) {
    Frame frame = frame_of(state);
    SdlBlit blit(frame);
    if (state.range(2) != 0) state.SetLabel("the peer does not turn the frame");
    beside(
        state, Against::peer, [&] { show(state, frame); }, [&] { blit.run(); });
}

void frames(benchmark::internal::Benchmark *b) {
    b->ArgNames({"w", "h", "turn"})->UseManualTime();
    for (const int turn : {0, 1, 2, 3})
        for (const auto &[w, h] : {std::pair{758, 1024}, {1404, 1872}}) {
            const bool lies = turn == 1 || turn == 2;
            b->Args({lies ? h : w, lies ? w : h, turn});
        }
}
BENCHMARK(grey_to_window_and_memset)->Apply(frames);
BENCHMARK(grey_to_window_and_sdl)->Apply(frames);

} // namespace

BENCHMARK_MAIN();
