// SPDX-License-Identifier: MIT
// Message boxes, which wait at the device, and those who only logged before there were any.
#include <csignal>
#include <gtest/gtest.h>

#include "dialogs_support.h"
#include "ground/message.h"
#include "hw_linux/screen.h"
#include "runtime/handlers.h"

using namespace boxes;

namespace {

class Messages : public boxes::Test {
  protected:
    // How long a message of three seconds is shown with this input waiting, in steps of 50 ms
    // after the updates.
    static int shown_ms(const std::function<void()> &input) {
        input();
        const int64_t start = headless::now();
        Message(ICON_WARNING, "Title", "Text", 3000);
        hw_event left;
        while (hw_nextevent(&left)) {
        }
        return static_cast<int>(headless::now() - start) / 50 * 50;
    }
    static void key(bool down) { hw::set_key_bit(hw::find_code_bit(KEY_MENU), down); }
    static void finger(int type, int x, int y) { hw::panel_pointer_input(type, x, y); }
};

constexpr int middle = 300, in_box = 725, beside = 300;

TEST_F(Messages, EndByThemselvesByAKeyOrByATap) {
    EXPECT_EQ(shown_ms([] {}), 3000);
    EXPECT_EQ(shown_ms([] { key(true); }), 0);
    EXPECT_EQ(shown_ms([] { key(false); }), 3000) << "the key was pressed before";
    for (int multi_touch = 0; multi_touch < 2; ++multi_touch) {
        multi_touch ? use_multi_touch() : use_keys();
        EXPECT_LT(shown_ms([] {
                      finger(EVT_POINTERDOWN, middle, in_box);
                      finger(EVT_POINTERUP, middle, beside);
                  }),
                  500);
        EXPECT_EQ(shown_ms([] {
                      finger(EVT_POINTERDOWN, middle, beside);
                      finger(EVT_POINTERUP, middle, in_box);
                  }),
                  3000);
        EXPECT_EQ(shown_ms([] { finger(EVT_POINTERDOWN, middle, in_box); }), 3000);
        finger(EVT_POINTERUP, middle, in_box);
        EXPECT_EQ(shown_ms([] {}), 3000) << "not armed";
    }
}

TEST_F(Messages, AShortTimeoutPollsNothing) {
    for (const int timeout : {49, 0, -1, -1000000}) {
        key(true);
        headless::clear_updates();
        Message(0, "", "Text", timeout);
        EXPECT_EQ(update_calls(), "PartialUpdate PartialUpdateBW FullUpdate ");
        hw_event event;
        EXPECT_EQ(hw_nextevent(&event), 1) << "still there";
        key(false);
        hw_nextevent(&event);
    }
}

TEST_F(Messages, TheApplicationHearsNothingAndKeepsWhatItHad) {
    const std::vector<uint8_t> before = screen();
    SetKeyboardRate(50, 40);
    headless::clear_events();
    finger(EVT_POINTERDOWN, middle, in_box);
    finger(EVT_POINTERUP, middle, in_box);
    Message(0, nullptr, nullptr, 1000);
    headless::advance(100);
    EXPECT_EQ(headless::events(), "RESTORE ");
    EXPECT_EQ(GetEventHandler(), headless::handler());
    EXPECT_EQ(key_rate().first_ms, 50) << "rates that a dialog would not give back";
    EXPECT_EQ(key_rate().next_ms, 40);
    EXPECT_EQ(screen(), before);
}

TEST_F(Messages, AKeyThatWasHeldBelongsToTheMessage) {
    headless::on_event([](int type, int, int) {
        if (type == EVT_KEYPRESS) Message(0, "", "", 500);
        return 0;
    });
    headless::key_down(KEY_OK);
    headless::clear_events();
    headless::key_up(KEY_OK);
    headless::advance(2000);
    EXPECT_EQ(headless::events(), "") << "neither a release nor repeats";
}

TEST_F(Messages, StandOverOtherBoxes) {
    const std::vector<uint8_t> before = screen();
    open_three();
    const std::vector<uint8_t> dialog = screen();
    Message(0, "", "Text", 100);
    EXPECT_EQ(screen(), dialog);
    EXPECT_EQ(kvstate.uiflags & UI_MODAL_MASK, UI_DIALOG_OPEN);
    headless::press(KEY_OK);
    EXPECT_EQ(answers, "1 ");
    EXPECT_EQ(screen(), before);
    Message(NO_DISMISS, "", "Text", 100);
    EXPECT_NE(screen(), before) << "left there";
}

TEST_F(Messages, EndWithTheApplication) {
    std::raise(SIGTERM);
    EXPECT_EQ(shown_ms([] {}), 3000) << "told while the application ends";
    kvstate.exiting = 0;
    EXPECT_EQ(shown_ms([] { hw::closing() = 1; }), 0) << "the window is closed";
    EXPECT_EQ(GetDialogShow(), 0);
}

TEST_F(Messages, WhoWarnsShowsABox) {
    headless::clear_updates();
    message_hooks.show(4, "@Error", "@FS_need_check", 100);
    message_hooks.show(3, "@Warning", "@Battery_low", 100);
    EXPECT_EQ(headless::updates().size(), 6U);
    headless::clear_updates();
    hw::emulated().battery = 0;
    headless::press(KEY_OK);
    headless::advance(301000);
    EXPECT_EQ(update_calls(), "PartialUpdate PartialUpdateBW FullUpdate ") << "by itself";
}

TEST(Message, WithoutAScreenItIsPrinted) {
    testing::internal::CaptureStderr();
    Message(ICON_ERROR, "Title", "Text", 1000);
    Message(0, nullptr, nullptr, 1000);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Message: 'Title' 'Text'\n[Message]: ERROR: cant sent request\n"
              "Message: '' ''\n[Message]: ERROR: cant sent request\n");
    Dialog(0, "", "", "Yes", "No", answer);
    OpenProgressbar(0, "", "", 0, answer);
    EXPECT_EQ(UpdateProgressbar("", 5), 1);
    EXPECT_EQ(DialogSynchro(0, "", "", "Yes", nullptr, nullptr), -1);
    CloseDialog();
    EXPECT_EQ(GetDialogShow(), 0);
}

} // namespace
