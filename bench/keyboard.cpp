// SPDX-License-Identifier: MIT
// The keyboard on a screen of 1404 x 1872 pixels, without painting: the runtime shows nothing while
// no update leaves it.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "beside.h"
#include "config/format.h"
#include "device.h"
#include "ground/utf8.h"
#include "hw.h"
#include "internal.h"
#include "kelvane/events.h"
#include "kelvane/hash.h"
#include "kelvane/keyboard.h"
#include "kelvane/text.h"
#include "keyboard/board.h"
#include "keyboard/draw.h"
#include "keyboard/handlers.h"
#include "keyboard/layout.h"
#include "raster/screen_scope.h"
#include "text/font_scope.h"

namespace {

// Rows of letters as a language has them, with its touch rows.
std::string section(const std::string &code) {
    std::string text = code + ": " + code + "\n";
    for (int block = 0; block < 2; ++block)
        text += "_@$%:;!?\"()\n`1234567890\nqwertyuio\nasdfghjkl\nzxcvbnmp'\n=+-~ .,*/\n";
    for (int layout = 0; layout < 3; ++layout)
        text += "q w e r t y u i o p\na s d f g h j k l '\nsh z x c v b n m - bs\n"
                "nu lg cl , spm:3 . ok:2\n--\n";
    return text;
}

bool open_screen() {
    if (!std::freopen("/dev/null", "w", stderr)) return false; // each opening says so there
    if (!open_bench_screen()) return false;
    std::filesystem::create_directories("system/language/keyboard");
    std::ofstream("system/language/keyboard/en.kbd") << section("EN");
    LoadKeyboard("en");
    return true;
}

// Updates are left out: the runtime does nothing while the screen counts as closed.
struct Bench {
    bool opened = open_screen();
    char buffer[200] = "A line of text that stands in the entry";
    Bench() {
        if (opened) kvstate.isopen = 0;
    }
    ~Bench() {
        CloseKeyboard();
        if (opened) kvstate.isopen = 1;
        ClearOnExit();
    }
    void open() {
        OpenKeyboard("Search in this book", buffer, 60,
                     KBD_NOSELECT | KBD_NOUPDATE_AFTER_OPEN | KBD_NOUPDATE_AFTER_CLOSE, nullptr);
        keyboard::board()->unheard = 0;
        take_events();
    }
};

void draw_labels(const keyboard::Board &b) {
    const raster::ScreenScope screen;
    const text::FontScope font(b.look.letter.get());
    for (const keyboard::TouchKey &key : b.touch.keys) {
        const irect r = touch_rect(b, key);
        DrawString(r.x, r.y, utf8::encoded(key.code).c_str());
    }
}

void keyboard_and_memcpy_with_labels(benchmark::State &state) {
    Bench bench;
    if (!bench.opened) return state.SkipWithError("no device");
    bench.open();
    const keyboard::Board shown({"Title", bench.buffer, 60, 0}, keyboard::board()->layouts, {});
    CloseKeyboard();
    const icanvas &screen = *kvstate.framebuffer;
    std::vector<uint8_t> saved(static_cast<size_t>(screen.scanline) *
                               static_cast<size_t>(screen.height));
    beside(
        state, Against::limit,
        [&] {
            bench.open();
            CloseKeyboard();
            take_events();
        },
        [&] {
            std::memcpy(saved.data(), screen.addr, saved.size());
            draw_labels(shown);
            std::memcpy(screen.addr, saved.data(), saved.size());
        });
}
BENCHMARK(keyboard_and_memcpy_with_labels)->UseManualTime();

void tap_and_drawing(benchmark::State &state) {
    Bench bench;
    if (!bench.opened) return state.SkipWithError("no device");
    bench.open();
    keyboard::Board &b = *keyboard::board();
    const keyboard::TouchKey &key = b.touch.keys[3];
    const irect r = touch_rect(b, key);
    const auto tap = [&](int x, int y) {
        keyboard::keyboard_handler(EVT_POINTERDOWN, x, y);
        keyboard::keyboard_handler(EVT_POINTERUP, x, y);
    };
    const irect entry = b.place.entry;
    beside(
        state, Against::limit,
        [&] {
            tap(r.x + 5, r.y + 5);
            b.entry.backspace();
        },
        [&] {
            draw_touch_key(b, key, true);
            draw_touch_key(b, key, false);
            draw_entry(b);
            benchmark::DoNotOptimize(entry);
        });
}
BENCHMARK(tap_and_drawing)->UseManualTime();

void layouts_and_settings(benchmark::State &state) {
    const std::string text = section("EN") + section("DE") + section("FR");
    std::vector<char> copy(text.size() + 1);
    beside(
        state, Against::limit,
        [&] {
            std::vector<keyboard::Language> languages;
            keyboard::read_sections(text, languages);
            benchmark::DoNotOptimize(languages.data());
        },
        [&] {
            std::memcpy(copy.data(), text.data(), text.size());
            ihash values = hash_new(97);
            config::parse_settings({copy.data(), text.size()}, values);
            hash_destroy(values);
        });
}
BENCHMARK(layouts_and_settings)->UseManualTime();

} // namespace

BENCHMARK_MAIN();
