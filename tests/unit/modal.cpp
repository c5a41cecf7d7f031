// SPDX-License-Identifier: MIT
// A box that takes the screen and the input over as components do, on the headless device.
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "internal.h"
#include "kelvane/canvas.h"
#include "kelvane/updates.h"
#include "modal/input.h"
#include "modal/takeover.h"
#include "support/headless.h"

namespace {

constexpr int text_entry_key_ms = 150, text_entry_repeat_ms = 120;

// Black boxes, one above the other; each is closed by the key for going back.
std::vector<modal::Takeover> boxes;
std::string heard;

void close_box() {
    boxes.back().close_above();
    modal::Takeover box = std::move(boxes.back());
    boxes.pop_back();
    box.under.restore();
    box.give_input_back();
}

int box_handler(int type, int par1, int) {
    heard += std::to_string(type) + " ";
    if (type == EVT_POINTERUP) modal::send_key(EVT_KEYPRESS, KEY_BACK);
    if (type != EVT_KEYPRESS || par1 != KEY_BACK) return modal::is_system_event(type);
    close_box();
    return 1;
}

void open_box(const irect &area, int flags) {
    modal::Takeover &box = boxes.emplace_back();
    ASSERT_TRUE(box.under.save(area));
    FillAreaRect(&area, BLACK);
    box.take_input(box_handler, flags, close_box);
}

std::vector<uint8_t> screen() {
    const icanvas &c = *kvstate.framebuffer;
    return {c.addr, c.addr + c.scanline * c.height};
}

class Modal : public headless::Test {
  protected:
    Modal() {
        heard.clear();
        boxes.clear();
        for (int x = 0; x < 600; x += 7) DrawLine(x, 0, 600 - x, 799, x % 2 ? BLACK : LGRAY);
    }
    static std::string main_hears(int ms = 1) {
        headless::clear_events();
        headless::advance(ms);
        return headless::events();
    }
};

TEST_F(Modal, BoxesGiveBackWhatTheyTookInReverseOrder) {
    const std::vector<uint8_t> before = screen();
    SetKeyboardRate(text_entry_key_ms, text_entry_repeat_ms);
    open_box({50, 60, 300, 200, 0}, UI_DIALOG_OPEN);
    const std::vector<uint8_t> one_box = screen();
    EXPECT_NE(one_box, before);
    for (int i = 0; i < 5; i++) open_box({100 + 10 * i, 100, 450, 300, 0}, UI_DIALOG_OPEN);
    EXPECT_EQ(kvstate.keytime1, 1000) << "each component starts with the standard rate";
    for (int i = 0; i < 5; i++) headless::press(KEY_BACK);
    EXPECT_EQ(screen(), one_box);
    EXPECT_EQ(kvstate.uiflags & UI_MODAL_MASK, UI_DIALOG_OPEN);
    headless::clear_events();
    headless::tap(10, 10);
    EXPECT_EQ(screen(), before);
    EXPECT_EQ(headless::events(), "RESTORE MTSYNC(1,0) ") << "the end of the touch";
    EXPECT_EQ(kvstate.uiflags & UI_MODAL_MASK, 0);
    EXPECT_EQ(kvstate.keytime1, text_entry_key_ms);
    EXPECT_EQ(kvstate.keytime2, text_entry_repeat_ms);
}

TEST_F(Modal, ABoxStandsOnTheScreenWhateverIsDrawnOn) {
    uint8_t row[8] = {};
    icanvas elsewhere{8, 1, 8, 8, 0, 7, 0, 0, row};
    const std::vector<uint8_t> before = screen();
    modal::SavedArea area;
    ASSERT_TRUE(area.save({0, 0, 600, 800, 0}));
    FillArea(0, 0, 600, 800, BLACK);
    SetCanvas(&elsewhere);
    EXPECT_TRUE(area.restore());
    EXPECT_FALSE(area.restore()) << "only once";
    EXPECT_EQ(GetCanvas(), &elsewhere);
    SetCanvas(nullptr);
    EXPECT_EQ(screen(), before);
    EXPECT_FALSE(area.save({0, 0, 0, 800, 0}));
}

TEST_F(Modal, AnOrientationChangeReachesWhoeverComesBack) {
    headless::raw(EVT_ORIENTATION, 0, 2, 0);
    open_box({0, 0, 100, 100, 0}, 0);
    headless::press(KEY_BACK);
    EXPECT_EQ(headless::events(), "ORIENTATION(2,0) RESTORE ") << "nothing was missed";

    open_box({0, 0, 100, 100, 0}, 0);
    open_box({0, 0, 100, 100, 0}, 0);
    headless::command(801);
    headless::command(803);
    heard.clear();
    headless::clear_events();
    headless::press(KEY_BACK);
    EXPECT_EQ(heard, "25 38 32 ") << "the box beneath hears of the last one";
    EXPECT_EQ(headless::events(), "");
    headless::press(KEY_BACK);
    EXPECT_EQ(headless::events(), "RESTORE ORIENTATION(3,0) ");
}

TEST_F(Modal, HandlersWithoutInputGiveNothingBack) {
    modal::Takeover box;
    SetKeyboardRate(text_entry_key_ms, text_entry_repeat_ms);
    box.give_input_back();
    box.take_input(box_handler, UI_KEYBOARD_OPEN, close_box);
    EXPECT_EQ(box.previous(), headless::handler());
    EXPECT_NE(kvstate.uiflags & UI_PANEL_IGNORES_POINTER, 0);
    box.give_input_back();
    box.give_input_back();
    EXPECT_EQ(GetEventHandler(), headless::handler());
    EXPECT_EQ(main_hears(), "RESTORE ");
    for (int type = 0; type < 300; type++) {
        EXPECT_EQ(modal::is_system_event(type), type > 118 && type < 133) << type;
        const bool pointer = (type >= 29 && type <= 31) || type == 34 || type == 35 || type == 39 ||
                             type == 44 || type == 45;
        EXPECT_EQ(modal::is_pointer_event(type), pointer) << type;
    }
}

} // namespace
