// SPDX-License-Identifier: MIT
// A list of 100000 rows on a screen of 1404 x 1872 pixels, beside drawing the rows of one page;
// without painting, as no update leaves the runtime.
#include <cstdio>

#include "beside.h"
#include "device.h"
#include "hw.h"
#include "internal.h"
#include "kelvane/lists.h"
#include "kelvane/text.h"
#include "kelvane/updates.h"
#include "lists/row.h"
#include "lists/strip.h"
#include "raster/screen_scope.h"
#include "text/font_scope.h"

namespace {

constexpr int row_count = 100000;

void fill(int row, ilistrow *out, void *) {
    static char title[48], value[16];
    std::snprintf(title, sizeof title, "Chapter %d, in which it goes on", row + 1);
    std::snprintf(value, sizeof value, "%d", row / 7);
    out->title = title;
    out->value = value;
}

ilistrows rows() {
    ilistrows r{};
    r.count = row_count;
    r.fill = fill;
    return r;
}

// Updates are left out: the runtime does nothing while the screen counts as closed.
struct Bench {
    bool opened = open_bench_screen();
    lists::LookPtr look;
    irect place{};
    Bench() {
        if (!opened) return;
        kvstate.isopen = 0;
        look = lists::look();
        place = {0, 0, ScreenWidth(), ScreenHeight(), 0};
    }
    ~Bench() {
        kvstate.isopen = 1;
        ClearOnExit();
    }

    // The rows of a page and its strip, by those who draw them.
    void draw_page(int first) const {
        const raster::ScreenScope screen;
        const text::FontScope font;
        const int shown = (place.h - look->gap() - look->strip_h) / look->row_h;
        FillAreaRect(&place, WHITE);
        for (int i = 0; i < shown; ++i) {
            const lists::RowPlace row{{0, look->gap() + i * look->row_h, place.w, look->row_h, 0},
                                      look->margin};
            ilistrow filled{};
            fill(first + i, &filled, nullptr);
            lists::draw_row(*look, row, filled, i == 0 ? lists::Mark::selected : lists::Mark::none);
        }
        lists::draw_strip(*look, {0, place.h - look->strip_h, place.w, look->strip_h, 0},
                          first / shown, row_count / shown);
    }
};

// As a screen, which also keeps what it covers and shows itself with a flash.
void list_opens_and_rows(benchmark::State &state) {
    const Bench bench;
    if (!bench.opened) return state.SkipWithError("no device");
    ilist list{};
    list.rows = rows();
    Turns turns(state, Against::limit);
    for (auto _ : state) {
        turns.other([&] { bench.draw_page(0); });
        int opened = 0;
        turns.ours([&] { opened = OpenList(&list); });
        CloseList(opened);
    }
}
BENCHMARK(list_opens_and_rows)->UseManualTime();

enum Way { PAGE, END };

// `way`: the list goes on by a page, and back after many, or jumps to its end and back.
void list_of_100000_and_rows(benchmark::State &state) {
    Bench bench;
    if (!bench.opened) return state.SkipWithError("no device");
    const ilistrows r = rows();
    iselectionlist *list = SelectionList_Create(&r);
    SelectionList_SetRect(list, &bench.place);
    SelectionList_Draw(list);
    const auto press = [&](int key) { SelectionList_HandleEvent(list, EVT_KEYPRESS, key, 0); };
    const auto way = static_cast<Way>(state.range(0));
    bool at_end = false;
    int turns = 0;
    const auto ours = [&] {
        if (way == PAGE) press(turns++ / 1000 % 2 == 0 ? KEY_NEXT : KEY_PREV);
        if (way == END) press(std::exchange(at_end, !at_end) ? KEY_DOWN : KEY_UP);
    };
    int first = 0;
    beside(state, Against::limit, ours, [&] { bench.draw_page(first = (first + 25) % 90000); });
    SelectionList_Destroy(list);
}
BENCHMARK(list_of_100000_and_rows)->ArgName("way")->DenseRange(PAGE, END)->UseManualTime();

void list_step_and_two_rows(benchmark::State &state) {
    Bench bench;
    if (!bench.opened) return state.SkipWithError("no device");
    const ilistrows r = rows();
    iselectionlist *list = SelectionList_Create(&r);
    SelectionList_SetRect(list, &bench.place);
    SelectionList_Draw(list);
    bool is_down = false;
    beside(
        state, Against::limit,
        [&] {
            const int key = std::exchange(is_down, !is_down) ? KEY_UP : KEY_DOWN;
            SelectionList_HandleEvent(list, EVT_KEYPRESS, key, 0);
        },
        [&] {
            const raster::ScreenScope screen;
            const text::FontScope font;
            for (int i = 0; i < 2; ++i) {
                const irect area{0, i * bench.look->row_h, bench.place.w, bench.look->row_h, 0};
                FillAreaRect(&area, WHITE);
                ilistrow filled{};
                fill(i, &filled, nullptr);
                lists::draw_row(*bench.look, {area, bench.look->margin}, filled,
                                i == 0 ? lists::Mark::selected : lists::Mark::none);
            }
        });
    SelectionList_Destroy(list);
}
BENCHMARK(list_step_and_two_rows)->UseManualTime();

} // namespace

BENCHMARK_MAIN();
