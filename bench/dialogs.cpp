// SPDX-License-Identifier: MIT
// Boxes on a screen of 1404 x 1872 pixels, without painting: the runtime shows nothing while the
// screen counts as closed.
#include <cstring>
#include <string>

#include "beside.h"
#include "device.h"
#include "dialogs/draw.h"
#include "dialogs/look.h"
#include "dialogs/question.h"
#include "internal.h"
#include "kelvane/text.h"
#include "text/font_scope.h"

namespace {

constexpr const char *text =
    "\u201CMoby-Dick\u201D has arrived. Do you want to open it now? It lies "
    "in the library as long as you like.";
constexpr const char *labels[] = {"Open", "In library", "Later"};

dialogs::OpenBox make_question() {
    dialogs::OpenBox box =
        dialogs::make_box(dialogs::Kind::question, ICON_QUESTION, text, {true, true, true});
    for (size_t i = 0; i < box.labels.size(); ++i) box.labels[i] = labels[i];
    box.selected = 1;
    return box;
}

void open_and_close() {
    dialogs::open(make_question(), dialogs::question_handler);
    dialogs::close_top(dialogs::Close::forced);
    take_events();
}

void lay_out_texts(const dialogs::Layout &l) {
    const text::FontScope font(dialogs::window_font());
    DrawTextRect(l.text.x, l.text.y, l.text.w, l.text.h, text, ALIGN_LEFT | VALIGN_MIDDLE);
    SetFont(dialogs::label_font(), -1);
    for (size_t i = 0; i < l.buttons.size(); ++i) {
        const irect &r = l.buttons[i];
        DrawTextRect(r.x, r.y, r.w, r.h, labels[i], ALIGN_CENTER | VALIGN_MIDDLE);
    }
}

void dialog_and_memcpy_with_texts(benchmark::State &state) {
    if (!open_bench_screen()) return state.SkipWithError("no device");
    kvstate.isopen = 0;
    const icanvas &screen = *kvstate.framebuffer;
    const size_t bytes = static_cast<size_t>(screen.scanline) * static_cast<size_t>(screen.height);
    std::vector<uint8_t> saved(bytes);
    const dialogs::Layout layout = make_question().layout;
    beside(state, Against::limit, open_and_close, [&] {
        std::memcpy(saved.data(), screen.addr, bytes);
        lay_out_texts(layout);
        std::memcpy(screen.addr, saved.data(), bytes);
    });
    kvstate.isopen = 1;
    ClearOnExit();
}
BENCHMARK(dialog_and_memcpy_with_texts)->UseManualTime();

struct Bar {
    bool opened = open_bench_screen();
    Bar() {
        OpenProgressbar(ICON_INFORMATION, "", text, 0, [](int) {});
        kvstate.isopen = 0;
        take_events();
    }
    ~Bar() {
        kvstate.isopen = 1;
        CloseProgressbar();
        ClearOnExit();
    }
};

void progress_and_drawing(benchmark::State &state) {
    const Bar bar;
    if (!bar.opened) return state.SkipWithError("no device");
    int percent = 0;
    beside(
        state, Against::limit, [&] { UpdateProgressbar(nullptr, percent = (percent + 1) % 100); },
        [] { dialogs::draw(*dialogs::top(dialogs::Kind::progress)); });
}
BENCHMARK(progress_and_drawing)->UseManualTime();

void progress_with_nothing_new(benchmark::State &state) {
    const Bar bar;
    if (!bar.opened) return state.SkipWithError("no device");
    for (auto _ : state) benchmark::DoNotOptimize(UpdateProgressbar(nullptr, 0));
}
BENCHMARK(progress_with_nothing_new);

} // namespace

BENCHMARK_MAIN();
