// SPDX-License-Identifier: MIT
// A page turn from its event to the pixels that a person sees, without text: the canvas is cleared,
// a picture of the whole screen drawn, and the screen updated on the headless device. Beside it the
// canvas and the window's pixels are only filled.
#include <cstdlib>
#include <cstring>

#include "beside.h"
#include "hw_linux/device.h"
#include "internal.h"
#include "kelvane/bitmaps.h"
#include "kelvane/events.h"
#include "kelvane/updates.h"
#include "raster/bitmap.h"
#include "runtime/delivery.h"

namespace {

const ibitmap *page;

int turn_page(int type, int, int) {
    if (type != EVT_KEYPRESS) return 0;
    ClearScreen();
    DrawBitmap(0, 0, page);
    FullUpdate();
    return 1;
}

void page_turn_and_memset(benchmark::State &state) {
    setenv("KELVANE_DEVICE", "headless", 0);
    if (OpenScreenExt() != 1) return state.SkipWithError("no device");
    const raster::BitmapPtr picture =
        raster::make_bitmap(ScreenWidth(), ScreenHeight(), 4, raster::MaskRoom::none);
    std::memset(picture->data, 0x5C, raster::pixel_bytes(*picture));
    page = picture.get();
    const icanvas &canvas = *kvstate.canvas;
    const hw::PixelBuffer shown = hw::device()->pixels();
    beside(
        state, Against::limit,
        [] {
            SendEvent(turn_page, EVT_KEYPRESS, KEY_NEXT, 0);
            handle_pending_events();
        },
        [&] {
            std::memset(canvas.addr, 0xFF,
                        static_cast<size_t>(canvas.scanline) * static_cast<size_t>(canvas.height));
            std::memset(shown.data, 0xFF,
                        static_cast<size_t>(shown.stride) * static_cast<size_t>(shown.height));
        });
}
BENCHMARK(page_turn_and_memset)->UseManualTime();

} // namespace

BENCHMARK_MAIN();
