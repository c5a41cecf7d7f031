// SPDX-License-Identifier: MIT
// Any items and any input: a byte each for the panel, the look, the number of items and the first
// selection, three bytes for each item, and events of three bytes. What the menu covers comes back,
// and the callback comes at most once.
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <string>
#include <vector>

#include "hw.h"
#include "internal.h"
#include "kelvane/menus.h"
#include "runtime/queue.h"
#include "screen.h"
#include "text_folder.h"

namespace {

class Bytes {
  public:
    Bytes(const uint8_t *data, size_t size) : at_(data), end_(data + size) {}
    bool empty() const { return at_ == end_; }
    int next() { return empty() ? 0 : *at_++; }

  private:
    const uint8_t *at_, *end_;
};

int answers;
void answer(int) {
    ++answers;
}

struct Array {
    std::vector<std::string> labels;
    std::vector<imenuex> items;
    // Submenus are the array itself: as deep as levels go.
    explicit Array(Bytes &bytes)
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

// A context menu, unless no bit is set: its side, and a look that themes may have.
void lend_context(int how) {
    static icontext_menu context{};
    static icontext_menu_properties properties = LoadContextMenuProperties();
    properties.separator_frequency = how & 8 ? 1 : 2;
    properties.marker_style = how & 16 ? 0 : 1;
    properties.separator_style = how & 32 ? how : 0;
    properties.border_radius = properties.border_size = how & 64 ? how : 3;
    context.properties = &properties;
    context.pos_selected_item = iRect(how, how, how & 128 ? 20 : 0, 20, 0);
    context.pos_menu.flags = how & 7;
    context.enable_pointer = context.enable_aura = static_cast<short>(how & 1);
    SetContextMenuStruct(how != 0 ? &context : nullptr);
}

// Taps come back as keys.
void send(kv_handler handler, int type, int par1, int par2) {
    handler(type, par1, par2);
    ievent event;
    while (queue_take(event)) event.hproc(event.type, event.par1, event.par2);
}

void play(Array &array, Bytes &bytes) {
    while (GetEventHandler() && !bytes.empty()) {
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
        send(GetEventHandler(), type, is_key ? par1 % 31 : par1 * 2, par2 * 2);
        if (par1 == 255)
            UpdateMenuEx(array.items.data() + par2 % static_cast<int>(array.items.size()));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static const int quiet = setenv("KELVANE_LOG", "0", 1); // menus trace every event
    static_cast<void>(quiet);
    static fuzz::TextFolder folder;
    static fuzz::Screen screen;
    const fuzz::Visit visit(folder);
    Bytes bytes(data, size);
    const int how = bytes.next();
    screen.turn(how & 3);
    queue_open();
    loadHwConfigEmulator(how & 4 ? "0x0010111101013041" : "0x0010111101011041");
    lend_context(bytes.next());
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
