// SPDX-License-Identifier: MIT
// Any items and any input: a byte each for the panel, the number of items and the first selection,
// three bytes for each item, its labels being pieces of the rest, then events of three bytes. What
// the menu covers comes back, and the callback comes at most once.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "hw.h"
#include "internal.h"
#include "kelvane/menus.h"
#include "menus/handler.h"
#include "menus/stack.h"
#include "screen.h"
#include "text_folder.h"

namespace {

int answers;
void answer(int) {
    ++answers;
}

struct Array {
    std::vector<std::string> labels;
    std::vector<imenuex> items;
    // Submenus are the array itself: as deep as levels go.
    explicit Array(fuzz::Bytes &bytes)
        : labels(static_cast<size_t>(bytes.next())), items(labels.size() + 1) {
        for (size_t i = 0; i < labels.size(); ++i) {
            items[i].type = static_cast<unsigned short>(bytes.next() | (i % 9 == 8 ? 0x40 : 0));
            items[i].index = static_cast<short>(bytes.next());
            labels[i] =
                std::string(static_cast<size_t>(bytes.next()), static_cast<char>('A' + i % 60));
            items[i].text = labels[i].c_str();
            items[i].submenu = items.data();
        }
    }
};

void play(Array &array, fuzz::Bytes &bytes) {
    while (menus::top() && !bytes.empty()) {
        constexpr int types[] = {EVT_KEYPRESS,
                                 EVT_KEYREPEAT,
                                 EVT_POINTERDOWN,
                                 EVT_POINTERUP,
                                 EVT_POINTERDRAG,
                                 EVT_POINTERHOLD,
                                 EVT_SHOW,
                                 33,
                                 124};
        const int type = types[static_cast<size_t>(bytes.next()) % std::size(types)];
        const bool is_key = type == EVT_KEYPRESS || type == EVT_KEYREPEAT;
        const int par1 = bytes.next(), par2 = bytes.next();
        menus::menu_handler(type, is_key ? par1 % 31 : par1 * 2, par2 * 2);
        if (par1 == 255)
            UpdateMenuEx(array.items.data() + par2 % static_cast<int>(array.items.size()));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static fuzz::TextFolder folder;
    static fuzz::Screen screen;
    const fuzz::Visit visit(folder);
    fuzz::Bytes bytes(data, size);
    const int how = bytes.next();
    screen.turn(how & 3);
    loadHwConfigEmulator(how & 4 ? "0x0010111101013041" : "0x0010111101011041");
    const std::vector<uint8_t> before = screen.pixels;
    const int position = bytes.next() - 1;
    Array array(bytes);
    answers = 0;
    OpenMenuEx(array.items.data(), position, bytes.next() * 2, bytes.next() * 2, answer);
    play(array, bytes);
    CloseContextMenu();
    if (answers > 1 || before != screen.pixels) std::abort();
    return 0;
}
