// SPDX-License-Identifier: MIT
// A page turn from its event to the pixels that a person sees, without text: the canvas is cleared,
// a picture of the whole screen drawn, and the screen updated on the headless device. Beside it the
// canvas and the window's pixels are only filled. Then sessions of a thousand turns of pages of
// text, with a trace beside those without one.
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>

#include "beside.h"
#include "hw_linux/clock.h"
#include "hw_linux/device.h"
#include "internal.h"
#include "kelvane/bitmaps.h"
#include "kelvane/canvas.h"
#include "kelvane/events.h"
#include "kelvane/updates.h"
#include "raster/bitmap.h"
#include "runtime/delivery.h"
#include "text_common.h"

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

constexpr int session_turns = 1000;
size_t turned = 0;

int turn_text(int type, int, int) {
    if (type != EVT_KEYPRESS) return 0;
    constexpr size_t pages = 100, page_size = 1000;
    static const std::string text = prose(Language::english, (pages + 2) * page_size);
    const size_t start = turned++ % pages * page_size;
    ClearScreen();
    DrawTextRect(20, 20, ScreenWidth() - 40, ScreenHeight() - 40, text.c_str() + start,
                 ALIGN_LEFT | VALIGN_TOP);
    SoftUpdate();
    return 1;
}

void read_a_book() {
    ClearOnExit();
    OpenScreenExt();
    hw::set_horizon(0); // nothing waits for the clock on the wall
    const BenchFont font;
    for (int i = 0; i < session_turns; ++i) {
        SendEvent(turn_text, EVT_KEYPRESS, KEY_NEXT, 0);
        handle_pending_events();
    }
}

void traced_turns_and_plain(benchmark::State &state) {
    setenv("KELVANE_DEVICE", "headless", 0);
    enter_bench_folder();
    const std::string trace = std::filesystem::temp_directory_path() / "kelvane-bench-trace.jsonl";
    beside(
        state, Against::limit,
        [&] {
            setenv("KELVANE_TRACE", trace.c_str(), 1);
            read_a_book();
            unsetenv("KELVANE_TRACE");
        },
        read_a_book);
    std::filesystem::remove(trace);
}
BENCHMARK(traced_turns_and_plain)->UseManualTime()->Iterations(3);

} // namespace

BENCHMARK_MAIN();
