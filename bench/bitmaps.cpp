// peers: pixman-1 libswscale
// SPDX-License-Identifier: MIT
// Drawing, copying and scaling bitmaps of a whole screen, beside general libraries and beside plain
// loops of one pixel after the other, of which the compiler makes what it makes of ours.
extern "C" {
#include <libswscale/swscale.h>
}
#include <pixman.h>

#include <cstring>

#include "beside.h"
#include "canvas.h"
#include "kelvane/bitmaps.h"
#include "raster/bitmap.h"

namespace {

constexpr int width = 758, height = 1024;

raster::BitmapPtr noise(int w, int h, int depth, raster::MaskRoom mask = raster::MaskRoom::none) {
    raster::BitmapPtr bm = raster::make_bitmap(w, h, depth, mask);
    const bool masked = mask == raster::MaskRoom::reserved;
    const size_t bytes = raster::pixel_bytes(*bm) + (masked ? raster::mask_bytes(*bm) : 0);
    std::generate_n(bm->data, bytes,
                    [n = 0u]() mutable { return static_cast<uint8_t>((n = n * 69069 + 1) >> 24); });
    if (!masked) return bm;
    // Holes of eight pixels, as wide as those of a lace: single ones would trouble a plain loop.
    uint8_t *bits = raster::mask_of(*bm);
    std::transform(bits, bits + raster::mask_bytes(*bm), bits,
                   [](uint8_t byte) { return byte < 64 ? 0 : 0xFF; });
    bm->depth |= BITMAP_MASK;
    return bm;
}

// A peer's view of pixels, whose rows are padded to words as it wants them.
class PixmanImage {
  public:
    PixmanImage(pixman_format_code_t format, int w, int h)
        : image_(pixman_image_create_bits(format, w, h, nullptr, 0)) {
        auto *bytes = reinterpret_cast<uint8_t *>(pixman_image_get_data(image_));
        std::generate_n(bytes, pixman_image_get_stride(image_) * h, [n = 0u]() mutable {
            return static_cast<uint8_t>((n = n * 69069 + 1) >> 24);
        });
    }
    PixmanImage(const PixmanImage &) = delete;
    ~PixmanImage() { pixman_image_unref(image_); }
    pixman_image_t *get() const { return image_; }
    void draw(const PixmanImage &from, int w, int h) const {
        pixman_image_composite32(PIXMAN_OP_SRC, from.image_, nullptr, image_, 0, 0, 0, 0, 0, 0, w,
                                 h);
    }

  private:
    pixman_image_t *image_;
};

class Swscale {
  public:
    Swscale(AVPixelFormat format, int w, int h, int to_w, int to_h, int flags)
        : context_(sws_getContext(w, h, format, to_w, to_h, AV_PIX_FMT_GRAY8, flags, nullptr,
                                  nullptr, nullptr)),
          h_(h), stride_(to_w), to_(static_cast<size_t>(to_w) * static_cast<size_t>(to_h) + 64) {}
    Swscale(const Swscale &) = delete;
    ~Swscale() { sws_freeContext(context_); }
    void run(const uint8_t *pixels, int stride) {
        uint8_t *to = to_.data();
        sws_scale(context_, &pixels, &stride, 0, h_, &to, &stride_);
    }

  private:
    SwsContext *context_;
    int h_, stride_;
    std::vector<uint8_t> to_;
};

// What the blitter means, for bitmaps of depth 4.
[[gnu::noinline]] void plain_nibbles(const icanvas &c, const ibitmap &bm, int x, int y) {
    const bool masked = raster::has_mask(bm);
    const int w = std::min<int>(bm.width, c.width - x), h = std::min<int>(bm.height, c.height - y);
    for (int r = 0; r < h; ++r) {
        const uint8_t *row = bm.data + r * bm.scanline;
        const uint8_t *mask = raster::mask_of(bm) + static_cast<size_t>(r) * ((bm.width + 7u) / 8);
        uint8_t *to = c.addr + (y + r) * c.scanline + x;
        for (int i = 0; i < w; ++i)
            if (!masked || (mask[i / 8] >> (7 - i % 8) & 1) != 0)
                to[i] = static_cast<uint8_t>((i % 2 != 0 ? row[i / 2] & 15 : row[i / 2] >> 4) * 17);
    }
}

// The fast path wants scanlines that are multiples of 4, and so does the peer.
void grey_and_pixman(benchmark::State &state) {
    const int w = static_cast<int>(state.range(0)), h = static_cast<int>(state.range(1));
    BenchCanvas canvas(width + 2, height);
    const auto bm = noise((w + 3) & ~3, h, 8);
    const PixmanImage from(PIXMAN_a8, w, h), to(PIXMAN_a8, width, height);
    state.SetLabel("the peer chooses among all its formats and operators at each call");
    beside(
        state, Against::peer, [&] { DrawBitmap(0, 0, bm.get()); }, [&] { to.draw(from, w, h); });
}
BENCHMARK(grey_and_pixman)->Args({width, height})->Args({64, 64})->UseManualTime();

// Rows of a bitmap and of the canvas, as the blitter must copy them.
void grey_and_memcpy(benchmark::State &state) {
    const int w = static_cast<int>(state.range(0)), h = static_cast<int>(state.range(1));
    BenchCanvas canvas(width + 2, height);
    const auto bm = noise(w, h, 8);
    beside(
        state, Against::limit, [&] { DrawBitmap(0, 0, bm.get()); },
        [&] {
            for (int y = 0; y < h; ++y)
                std::memcpy(canvas.addr + y * canvas.scanline, bm->data + y * bm->scanline,
                            static_cast<size_t>(w));
        });
}
BENCHMARK(grey_and_memcpy)->Args({width + 2, height})->Args({64, 64})->UseManualTime();

void nibbles_and_pixman(benchmark::State &state) {
    BenchCanvas canvas(width, height);
    const auto bm = noise(width, height, 4);
    const PixmanImage from(PIXMAN_a4, width, height), to(PIXMAN_a8, width, height);
    beside(
        state, Against::peer, [&] { DrawBitmap(0, 0, bm.get()); },
        [&] { to.draw(from, width, height); });
}
BENCHMARK(nibbles_and_pixman)->UseManualTime();

// The peer and the goal are the same for a whole screen, with a mask and from odd places.
void nibbles_and_plain(benchmark::State &state, raster::MaskRoom mask, int x) {
    BenchCanvas canvas(width, height);
    const auto bm = noise(width, height, 4, mask);
    beside(
        state, Against::peer, [&] { DrawBitmap(x, x, bm.get()); },
        [&] { plain_nibbles(canvas, *bm, x, x); });
}
BENCHMARK_CAPTURE(nibbles_and_plain, whole, raster::MaskRoom::none, 0)->UseManualTime();
BENCHMARK_CAPTURE(nibbles_and_plain, off, raster::MaskRoom::none, 3)->UseManualTime();
BENCHMARK_CAPTURE(nibbles_and_plain, masked, raster::MaskRoom::reserved, 0)->UseManualTime();
BENCHMARK_CAPTURE(nibbles_and_plain, masked_off, raster::MaskRoom::reserved, 3)->UseManualTime();

void rgb_and_swscale(benchmark::State &state) {
    BenchCanvas canvas(width + 2, height); // rows of whole words
    const auto bm = noise(width + 2, height, 24);
    Swscale peer(AV_PIX_FMT_RGB24, width + 2, height, width + 2, height, SWS_POINT);
    state.SetLabel("the peer multiplies by exact weights");
    beside(
        state, Against::peer, [&] { DrawBitmap(0, 0, bm.get()); },
        [&] { peer.run(bm->data, bm->scanline); });
}
BENCHMARK(rgb_and_swscale)->UseManualTime();

void from_screen_and_memcpy(benchmark::State &state) {
    BenchCanvas canvas(width, height);
    std::vector<uint8_t> copy(canvas.memory.size());
    beside(
        state, Against::limit, [&] { std::free(BitmapFromScreen(0, 0, width, height)); },
        [&] { std::memcpy(copy.data(), canvas.addr, copy.size()); });
}
BENCHMARK(from_screen_and_memcpy)->UseManualTime();

constexpr int photo_width = 1600, photo_height = 1200;

void stretch_and_pixman(benchmark::State &state) {
    BenchCanvas canvas(width, height);
    const auto bm = noise(photo_width, photo_height, 8);
    const PixmanImage from(PIXMAN_a8, photo_width, photo_height), to(PIXMAN_a8, width, height);
    pixman_transform_t scale;
    pixman_transform_init_scale(&scale, pixman_double_to_fixed(double{photo_width} / width),
                                pixman_double_to_fixed(double{photo_height} / height));
    pixman_image_set_transform(from.get(), &scale);
    pixman_image_set_filter(from.get(), PIXMAN_FILTER_BILINEAR, nullptr, 0);
    beside(
        state, Against::peer, [&] { StretchBitmap(0, 0, width, height, bm.get(), 0); },
        [&] { to.draw(from, width, height); });
}
BENCHMARK(stretch_and_pixman)->UseManualTime();

void stretch_and_swscale(benchmark::State &state) {
    BenchCanvas canvas(width, height);
    const auto bm = noise(photo_width, photo_height, 8);
    Swscale peer(AV_PIX_FMT_GRAY8, photo_width, photo_height, width, height, SWS_BILINEAR);
    beside(
        state, Against::peer, [&] { StretchBitmap(0, 0, width, height, bm.get(), 0); },
        [&] { peer.run(bm->data, bm->scanline); });
}
BENCHMARK(stretch_and_swscale)->UseManualTime();

} // namespace

BENCHMARK_MAIN();
