// SPDX-License-Identifier: MIT
// Any bytes as the texts and labels of boxes: a byte chooses the kind, the orientation and the
// number of buttons; then come the texts, each ended by a NUL.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "dialogs/draw.h"
#include "dialogs/stack.h"
#include "internal.h"
#include "kelvane/languages.h"
#include "kelvane/theme.h"
#include "screen.h"
#include "text_folder.h"

namespace {

const char *next(const std::string &texts, size_t &at) {
    const char *text = texts.c_str() + at;
    at = std::min(texts.find('\0', at), texts.size() - 1) + 1;
    if (at >= texts.size()) at = 0;
    return text;
}

// The box stays inside the screen's width, and what it covers comes back.
void check(dialogs::Kind kind, int buttons, const std::string &texts) {
    size_t at = 0;
    const icanvas &c = *kvstate.framebuffer;
    const std::vector<uint8_t> before(c.addr, c.addr + c.scanline * c.height);
    const dialogs::Present present{buttons > 0, buttons > 1, buttons > 2};
    dialogs::OpenBox box = dialogs::make_box(kind, ICON_ERROR, next(texts, at), present);
    for (size_t i = 0; i < present.size(); ++i)
        if (present[i]) box.labels[i] = GetLangText(next(texts, at));
    box.selected = 1;
    box.percent = buttons * 40 - 10;
    if (box.layout.box.x < 0 || box.layout.box.x + box.layout.box.w > c.width) std::abort();
    if (box.layout.box.y < 0) std::abort();
    dialogs::open(std::move(box), [](int, int, int) { return 1; });
    dialogs::draw(*dialogs::top(kind));
    dialogs::close_top(dialogs::Close::forced);
    if (before != std::vector<uint8_t>(c.addr, c.addr + c.scanline * c.height)) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static fuzz::TextFolder folder;
    static fuzz::Screen screen;
    const fuzz::Visit visit(folder);
    if (size < 2) return 0;
    screen.turn(data[0] >> 2 & 3);
    const auto kind = static_cast<dialogs::Kind>(data[0] % 3);
    const int buttons = kind == dialogs::Kind::message ? 0 : 1 + data[0] / 16 % 3;
    const std::string texts(data + 1, data + size);
    check(kind, buttons, texts + '\0');
    return 0;
}
