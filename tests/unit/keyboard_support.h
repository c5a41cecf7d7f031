// SPDX-License-Identifier: MIT
// Keyboards over a picture on the headless device, with fonts and the layouts of the tree.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "dialogs_support.h"
#include "kelvane/keyboard.h"
#include "keyboard/board.h"
#include "keyboard/draw.h"

namespace keyboard_test {

using boxes::screen;
using boxes::update_calls;

inline std::string answers; // of callbacks: the text or "-", each followed by ";"
inline void answer(char *text) {
    answers += std::string(text ? text : "-") + (IsKeyboardOpened() ? "!;" : ";");
}

class Test : public boxes::Test {
  protected:
    Test() {
        std::filesystem::create_directories("system/language");
        std::filesystem::copy(SOURCE_DIR "/data/keyboard", "system/language/keyboard");
        LoadKeyboard("EN-RU-UK");
        answers.clear();
        before = screen();
        use_fingers();
    }
    static void use_fingers() { use_multi_touch(); }
    // Opens over an own buffer with this text.
    void open(const std::string &text, int flags = 0, int maxlen = 40,
              const char *title = "Title") {
        buffer.assign(static_cast<size_t>(3 * std::max(maxlen, static_cast<int>(text.size())) + 1),
                      '?');
        text.copy(buffer.data(), text.size());
        buffer[text.size()] = '\0';
        OpenKeyboard(title, buffer.data(), maxlen, flags, answer);
        headless::detail::settle();
    }
    std::string result() const { return buffer.c_str(); }
    // Closed, with these answers and the page as it was.
    void expect_closed_with(const std::string &expected) const {
        headless::detail::settle();
        EXPECT_EQ(answers, expected);
        EXPECT_EQ(IsKeyboardOpened(), 0);
        EXPECT_EQ(keyboard::board(), nullptr);
        EXPECT_EQ(GetEventHandler(), headless::handler());
        EXPECT_EQ(GetDialogShow(), 0);
        EXPECT_EQ(kvstate.uiflags & UI_KEYBOARD_OPEN, 0);
        EXPECT_EQ(kvstate.msgtop, ScreenHeight());
        EXPECT_TRUE(screen() == before);
    }
    static void tap(const irect &r) { headless::tap(r.x + r.w / 2, r.y + r.h / 2); }
    // What the screen shows in an area.
    static std::vector<uint8_t> part(const irect &r) {
        std::vector<uint8_t> pixels;
        const icanvas &c = *kvstate.framebuffer;
        for (int y = r.y; y < r.y + r.h; ++y)
            pixels.insert(pixels.end(), c.addr + y * c.scanline + r.x,
                          c.addr + y * c.scanline + r.x + r.w);
        return pixels;
    }
    // The place of a touch key or, where there is none, of a button; w 0 for neither.
    static irect place_of(uint16_t code) {
        const keyboard::Board &b = *keyboard::board();
        for (const auto &key : b.touch.keys)
            if (key.code == code) return touch_rect(b, key);
        for (size_t i = 0; i < b.buttons.size(); ++i)
            if (b.buttons[i].code == code) return b.place.buttons[i];
        return {};
    }
    static void tap_code(uint16_t code) {
        const irect r = place_of(code);
        ASSERT_GT(r.w, 0) << "no key " << code;
        tap(r);
    }
    static void tap_keys(const std::u16string &keys) {
        for (const char16_t key : keys) tap_code(key);
    }
    static void type(const std::string &text) {
        for (const char c : text) headless::raw(hw::typed_character, 0, c, 0);
    }
    static std::string text() {
        const auto &entry = keyboard::board()->entry;
        return entry.utf8(0, entry.text().size());
    }

    std::string buffer;
    std::vector<uint8_t> before;
};

} // namespace keyboard_test
