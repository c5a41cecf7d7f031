// SPDX-License-Identifier: MIT
// The view of dictionaries on a screen of 1404 x 1872 pixels, without painting: the runtime shows
// nothing while the screen counts as closed.
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include "beside.h"
#include "dictionary_view/draw.h"
#include "dictionary_view/view.h"
#include "internal.h"
#include "kelvane/dictionary.h"
#include "kelvane/dictionary_view.h"
#include "kelvane/text.h"
#include "raster/screen_scope.h"
#include "runtime/queue.h"
#include "text/font_scope.h"
#include "text_common.h"

namespace {

using dictionary_view::View;

constexpr irect word_on_page = {600, 300, 200, 50, 0};

int ignore(int, int, int) {
    return 1;
}

void take_events() {
    ievent event;
    while (queue_take(event)) {
    }
}

// A screen on which nothing is painted, with a dictionary.
struct Device {
    bool opened;
    Device() : opened(open()) { kvstate.isopen = 0; }
    ~Device() {
        kvstate.isopen = 1;
        if (View *view = dictionary_view::view()) CloseControlledDictionaryView(view->id);
        ClearOnExit();
        CloseDictionary();
    }
    Device(const Device &) = delete;
    Device &operator=(const Device &) = delete;

  private:
    static bool open() {
        setenv("KELVANE_DEVICE", "headless", 0);
        enter_bench_folder();
        std::filesystem::create_directories("system/config");
        std::filesystem::create_directories("system/dictionaries");
        std::ofstream("system/config/global.cfg") << "emu_resmode=11\n";
        std::filesystem::copy_file(KELVANE_DICTIONARIES "/English-German.dic",
                                   "system/dictionaries/English-German.dic",
                                   std::filesystem::copy_options::overwrite_existing);
        if (OpenScreenExt() != 1 || ScreenHeight() != 1872) return false;
        PrepareForLoop(ignore);
        return OpenDictionary("English-German") == 1;
    }
};

void draw_texts(const View &v) {
    const raster::ScreenScope screen;
    const text::FontScope font(v.look.type.body.get());
    for (int i = 0; i < static_cast<int>(v.words.shown().size()); ++i)
        DrawString(v.place.list.x, v.place.row(i).y,
                   v.words.shown()[static_cast<size_t>(i)].c_str());
    const irect &pane = v.place.article;
    DrawTextRect(pane.x, pane.y, pane.w, pane.h, v.words.translation().c_str(), ALIGN_LEFT);
}

void view_and_memcpy_with_texts(benchmark::State &state) {
    const Device device;
    if (!device.opened) return state.SkipWithError("no device");
    const auto open = [] { return OpenControlledDictionaryView("sail", &word_on_page); };
    const int first = open();
    View kept = std::move(*dictionary_view::view());
    CloseControlledDictionaryView(first);
    const icanvas &screen = *kvstate.framebuffer;
    const size_t bytes = static_cast<size_t>(kept.place.whole.h) * screen.scanline;
    uint8_t *rows = screen.addr + static_cast<size_t>(kept.place.whole.y) * screen.scanline;
    std::vector<uint8_t> saved(bytes);
    beside(
        state, Against::limit,
        [&] {
            CloseControlledDictionaryView(open());
            take_events();
        },
        [&] {
            std::memcpy(saved.data(), rows, bytes);
            draw_texts(kept);
            std::memcpy(rows, saved.data(), bytes);
        });
}
BENCHMARK(view_and_memcpy_with_texts)->UseManualTime();

void article_page_and_text(benchmark::State &state) {
    const Device device;
    if (!device.opened) return state.SkipWithError("no device");
    OpenDictionaryView("sail", nullptr);
    View &v = *dictionary_view::view();
    const std::string text = prose(Language::english, 20000);
    v.article.set("", text);
    v.article.lay_out(v.look, v.place.article);
    v.focus = dictionary_view::Pane::article;
    const irect pane = v.place.article;
    // As much of the text as our pages have.
    const dictionary_view::Piece &last = v.article.all_pages()[0].back();
    const int lines = last.y + last.h;
    const int w = pane.w - 2 * v.look.units(55);
    const char *rest = text.c_str();
    beside(
        state, Against::limit,
        [&] {
            if (v.article.page() + 1 == v.article.pages()) v.article.turn_to(0);
            one_page_down(v);
        },
        [&] {
            const raster::ScreenScope screen;
            const text::FontScope font(v.look.type.body.get());
            FillAreaRect(&pane, WHITE);
            rest = DrawTextRect(pane.x, pane.y, w, lines, rest, ALIGN_LEFT);
            if (!*rest) rest = text.c_str();
        });
}
BENCHMARK(article_page_and_text)->UseManualTime();

} // namespace

BENCHMARK_MAIN();
