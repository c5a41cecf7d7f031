// SPDX-License-Identifier: MIT
// Any text, flags and input: two bytes for the panel, the keys and the length, four for the flags,
// a text up to a NUL, then events of four bytes. The buffer is never overrun, what the keyboard
// covers comes back, and the callback comes once.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "device_folder.h"
#include "hw.h"
#include "hw_seam.h"
#include "internal.h"
#include "kelvane/keyboard.h"
#include "keyboard/board.h"
#include "keyboard/handlers.h"
#include "screen.h"

namespace {

// Two languages of few keys, which take little time to draw.
constexpr const char *few_keys = "EN:\n\n\n12\nab\n\n.\n\n\n34\nAB\n\n.\n"
                                 "a b c\nsh lg nu bs\ncl sp:3 ok\n--\n"
                                 "A B C\nsh lg nu bs\n--\n1 2 3\nnu lg bs\n--\n"
                                 "HE:\n\n\n12\n\u05D0\u05D1\n\n.\n\n\n34\nAB\n\n.\n"
                                 "\u05D0 \u05D1 \u0301\nsh lg nu bs spm:2\n--\n--\n--\n";

bool write_layout() {
    std::filesystem::create_directories("system/language/keyboard");
    std::ofstream("system/language/keyboard/few.kbd") << few_keys;
    return true;
}

// Those, or the built-in layout with its zones.
void choose_layout(bool is_small) {
    static bool was_small = false;
    if (is_small == was_small) return;
    was_small = is_small;
    LoadKeyboard(is_small ? "few" : nullptr);
}

int answers;
void answer(char *) {
    ++answers;
}

void play(fuzz::Bytes &bytes) {
    while (keyboard::board() && !bytes.empty()) {
        constexpr int types[] = {EVT_KEYPRESS,  EVT_KEYREPEAT,       EVT_POINTERDOWN,
                                 EVT_POINTERUP, EVT_POINTERMOVE,     EVT_POINTERLONG,
                                 EVT_SHOW,      hw::typed_character, 124};
        const int type = types[static_cast<size_t>(bytes.next()) % std::size(types)];
        const bool is_key = type == EVT_KEYPRESS || type == EVT_KEYREPEAT;
        const int par1 = bytes.next(), par2 = bytes.next();
        const int wide = type == hw::typed_character ? par1 << 8 | par2 : 2 * par1;
        keyboard::keyboard_handler(type, is_key ? par1 % 31 : wide, 2 * par2);
    }
}

// The characters of UTF-8.
size_t length(const char *text) {
    return static_cast<size_t>(
        std::count_if(text, text + std::strlen(text), [](char c) { return (c & 0xC0) != 0x80; }));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static fuzz::DeviceFolder folder; // without fonts: letters only take time
    static fuzz::Screen screen;
    // Each opening says so; the fuzzer itself keeps the stream it has.
    static const bool quiet = (stderr = std::fopen("/dev/null", "w"), true);
    static_cast<void>(quiet);
    const fuzz::Visit visit(folder);
    static const bool written = write_layout();
    static_cast<void>(written);
    fuzz::Bytes bytes(data, size);
    const int how = bytes.next();
    choose_layout((how & 32) == 0);
    screen.turn(how & 3);
    loadHwConfigEmulator(how & 4 ? "0x0010111101013041" : "0x0010111101011041");
    const std::vector<uint8_t> before = screen.pixels;
    const int maxlen = bytes.next() % 40;
    int flags = 0;
    for (int i = 0; i < 4; ++i) flags = flags << 8 | bytes.next();
    flags &= ~(KBD_NOHATCH * (how >> 3 & 1));
    const std::string text = bytes.text();
    std::vector<char> buffer(std::max<size_t>(3 * static_cast<size_t>(maxlen), text.size()) + 1);
    std::copy(text.begin(), text.end(), buffer.begin());
    answers = 0;
    OpenKeyboard("Title\0Enter", how & 16 ? nullptr : buffer.data(), maxlen, flags, answer);
    play(bytes);
    CloseKeyboard();
    const bool is_initial = text == buffer.data();
    if (answers != 1 || keyboard::board()) std::abort();
    if (!is_initial && length(buffer.data()) > static_cast<size_t>(maxlen)) std::abort();
    if (before != screen.pixels) std::abort();
    return 0;
}
