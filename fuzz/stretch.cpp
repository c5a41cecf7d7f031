// SPDX-License-Identifier: MIT
// Any geometry given to the scaler and to what places bitmaps. The canvas lies between guard bytes,
// and nothing outside its clip changes; sources end where their memory does.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "kelvane/bitmaps.h"
#include "kelvane/canvas.h"
#include "picture_file.h"
#include "raster/bitmap.h"
#include "raster/clip.h"

namespace {

class Bytes {
  public:
    Bytes(const uint8_t *data, size_t size) : data_(data), size_(size) {}
    uint8_t byte() { return at_ < size_ ? data_[at_++] : 0; }
    int below(int limit) { return byte() % limit; }
    // Mostly near 0, sometimes anything.
    int number() {
        const int kind = byte();
        if (kind < 200) return static_cast<int8_t>(byte());
        const uint32_t low = static_cast<uint32_t>(byte()) << 8 | byte();
        if (kind < 240) return static_cast<int16_t>(low);
        return static_cast<int32_t>(low << 16 | static_cast<uint32_t>(byte()) << 8 | byte());
    }

  private:
    const uint8_t *data_;
    size_t size_, at_ = 0;
};

struct GuardedCanvas : icanvas {
    static constexpr int guard = 64;
    static constexpr uint8_t untouched = 0xA5;
    std::vector<uint8_t> memory;

    explicit GuardedCanvas(Bytes &bytes) : icanvas{} {
        depth = bytes.below(2) ? 24 : 8;
        width = 1 + bytes.below(48);
        height = 1 + bytes.below(24);
        scanline = width * depth / 8 + bytes.below(4);
        clipx1 = bytes.number() % 50, clipx2 = bytes.number() % 50;
        clipy1 = bytes.number() % 30, clipy2 = bytes.number() % 30;
        memory.assign(static_cast<size_t>(scanline * height + 2 * guard), untouched);
        addr = memory.data() + guard;
        SetCanvas(this);
    }
    GuardedCanvas(const GuardedCanvas &) = delete;
    ~GuardedCanvas() { SetCanvas(nullptr); }

    void check() const {
        const raster::Bounds inside = raster::writable_bounds(*this);
        const auto *end = memory.data() + memory.size();
        for (const uint8_t *p = memory.data(); p != end; ++p) {
            if (*p == untouched) continue;
            const auto place = p - addr;
            const int y = place < 0 ? -1 : static_cast<int>(place / scanline);
            const int x = place < 0 ? -1 : static_cast<int>(place % scanline / (depth / 8));
            if (!inside.contains(x, y)) std::abort();
        }
    }
};

raster::BitmapPtr make_source(Bytes &bytes) {
    constexpr int depths[] = {1, 2, 4, 8, 16, 24};
    const bool masked = bytes.below(2) != 0;
    raster::BitmapPtr bm =
        raster::make_bitmap(1 + bytes.below(80), 1 + bytes.below(80), depths[bytes.below(6)],
                            masked ? raster::MaskRoom::reserved : raster::MaskRoom::none);
    const size_t size = raster::pixel_bytes(*bm) + (masked ? raster::mask_bytes(*bm) : 0);
    uint8_t value = bytes.byte();
    const uint8_t step = bytes.byte();
    std::generate_n(bm->data, size, [&] { return value = static_cast<uint8_t>(value + step); });
    if (masked) bm->depth |= BITMAP_MASK;
    return bm;
}

void draw(Bytes &bytes, const ibitmap &bm) {
    const int way = bytes.below(4);
    const int x = bytes.number(), y = bytes.number(), w = bytes.number(), h = bytes.number();
    const int flags = bytes.byte() << 8 | bytes.byte();
    switch (way) {
    case 0:
        return StretchBitmap(x, y, w, h, &bm, flags);
    case 1:
        return DrawBitmapRect(x, y, w, h, &bm, flags);
    case 2:
        return DrawBitmapArea(x, y, &bm, bytes.number(), bytes.number(), w, h);
    }
    // A part of the source, as large as it has.
    const int sx = bytes.below(bm.width), sy = bytes.below(bm.height);
    const bool masked = raster::has_mask(bm);
    kv_stretch(bm.data, raster::depth_of(bm), sx, sy, 1 + bytes.below(bm.width - sx),
               1 + bytes.below(bm.height - sy), bm.scanline, x, y, w, h, flags,
               masked ? raster::mask_of(bm) : nullptr, static_cast<int>(raster::mask_scanline(bm)));
}

void copy(Bytes &bytes, const ibitmap &bm) {
    const int sx = bytes.number(), sy = bytes.number(), sw = bytes.number(), sh = bytes.number();
    std::free(BitmapStretchCopy(&bm, sx, sy, sw, sh, bytes.below(90), bytes.below(90)));
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
    prepare_loaders();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    Bytes bytes(data, size);
    const raster::BitmapPtr bm = make_source(bytes);
    const GuardedCanvas canvas(bytes);
    for (int i = 0; i < 2; ++i) draw(bytes, *bm);
    canvas.check();
    if (raster::depth_of(*bm) == 4) copy(bytes, *bm);
    return 0;
}
