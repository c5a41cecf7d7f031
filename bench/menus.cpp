// SPDX-License-Identifier: MIT
// Menus on a screen of 1404 x 1872 pixels, without painting: the runtime shows nothing while no
// update leaves it.
#include <cstring>
#include <string>
#include <vector>

#include "beside.h"
#include "device.h"
#include "hw.h"
#include "internal.h"
#include "kelvane/menus.h"
#include "kelvane/text.h"
#include "menus/draw.h"
#include "menus/handler.h"
#include "menus/row.h"
#include "raster/screen_scope.h"
#include "text/font_scope.h"

namespace {

bool open_screen() {
    if (!open_bench_screen()) return false;
    loadHwConfigEmulator("0x0010111101011041");
    return true;
}

// Items of one kind with labels of their own.
struct Items {
    std::vector<std::string> labels;
    std::vector<imenuex> items;
    explicit Items(size_t count) : labels(count), items(count + 1) {
        for (size_t i = 0; i < count; ++i) {
            labels[i] = "Chapter " + std::to_string(i) + ", in which it goes on";
            items[i].type = ITEM_ACTIVE;
            items[i].text = labels[i].c_str();
        }
    }
};

// Updates are left out: the runtime does nothing while the screen counts as closed.
void open_menu(Items &items) {
    menus::open({items.items.data(), 0, [](int) {}, {}, nullptr});
    take_events();
}

void close_menu() {
    CloseContextMenu();
    take_events();
}

struct Bench {
    bool opened = open_screen();
    Items items;
    explicit Bench(size_t count) : items(count) {
        if (!opened) return;
        kvstate.isopen = 0;
        open_menu(items);
    }
    ~Bench() {
        CloseContextMenu();
        kvstate.isopen = 1;
        ClearOnExit();
    }
};

void draw_labels(const std::vector<std::string> &labels, const menus::Menu &menu) {
    const raster::ScreenScope screen;
    const text::FontScope font(menu.look->p.font_normal);
    int y = menu.rect.y;
    for (const std::string &label : labels) DrawString(menu.rect.x, y += 50, label.c_str());
}

void menu_and_memcpy_with_labels(benchmark::State &state) {
    Bench bench(10);
    if (!bench.opened) return state.SkipWithError("no device");
    menus::Menu &menu = *menus::top();
    const menus::LookPtr look = menu.look;
    const irect covered = menu.covered;
    const icanvas &screen = *kvstate.framebuffer;
    std::vector<uint8_t> saved(static_cast<size_t>(covered.w) * static_cast<size_t>(covered.h));
    const auto each_row = [&](auto copy) {
        for (int y = 0; y < covered.h; ++y)
            copy(screen.addr + (covered.y + y) * screen.scanline + covered.x,
                 saved.data() + y * covered.w, static_cast<size_t>(covered.w));
    };
    menus::Menu shown;
    shown.look = look;
    shown.rect = menu.rect;
    CloseContextMenu();
    beside(
        state, Against::limit,
        [&] {
            open_menu(bench.items);
            close_menu();
        },
        [&] {
            each_row([](uint8_t *row, uint8_t *kept, size_t n) { std::memcpy(kept, row, n); });
            draw_labels(bench.items.labels, shown);
            each_row([](uint8_t *row, uint8_t *kept, size_t n) { std::memcpy(row, kept, n); });
        });
}
BENCHMARK(menu_and_memcpy_with_labels)->UseManualTime();

void menu_step_and_two_rows(benchmark::State &state) {
    Bench bench(10);
    if (!bench.opened) return state.SkipWithError("no device");
    menus::Menu &menu = *menus::top();
    beside(
        state, Against::limit, [&] { menus::key(KEY_DOWN, menus::Press::first); },
        [&] {
            const raster::ScreenScope screen;
            menus::draw_row(menu, menu.level().rows[0]);
            menus::draw_row(menu, menu.level().rows[1]);
        });
}
BENCHMARK(menu_step_and_two_rows)->UseManualTime();

void long_menu_and_measuring(benchmark::State &state) {
    Bench bench(1000);
    if (!bench.opened) return state.SkipWithError("no device");
    const menus::LookPtr look = menus::top()->look;
    CloseContextMenu();
    Turns turns(state, Against::limit);
    for (auto _ : state) {
        turns.other([&] {
            const text::FontScope font(look->p.font_normal);
            for (const std::string &label : bench.items.labels)
                benchmark::DoNotOptimize(StringWidth(label.c_str()));
        });
        turns.ours([&] { open_menu(bench.items); });
        close_menu();
    }
}
BENCHMARK(long_menu_and_measuring)->UseManualTime();

} // namespace

BENCHMARK_MAIN();
