// SPDX-License-Identifier: MIT
// Progress bars of an application that runs its loop, and of one that is busy.
#include <gtest/gtest.h>
#include <malloc.h>

#include "dialogs_support.h"
#include "kelvane/languages.h"
#include "runtime/handlers.h"
#include "support/repeats.h"
#include "support/theme_file.h"

using namespace boxes;

namespace {

class Progress : public boxes::Test {
  protected:
    static void push_key(int key) {
        hw::set_key_bit(hw::find_code_bit(key), true);
        hw::set_key_bit(hw::find_code_bit(key), false);
    }
    // How many pixels of the bar's middle row are black.
    static int filled(int width) {
        int count = 0;
        const std::vector<uint8_t> now = screen();
        for (int x = 151; x < 151 + width; ++x)
            count += now[static_cast<size_t>(600 * 730 + x)] == 0;
        return count;
    }
};

TEST_F(Progress, AChangeIsShownOnceAndWhatIsTheSameNever) {
    const std::vector<uint8_t> before = screen();
    headless::clear_updates();
    OpenProgressbar(0, "", "Working", 150, answer);
    EXPECT_EQ(update_calls(), "PartialUpdate ");
    const std::vector<uint8_t> full = screen();
    headless::clear_updates();
    EXPECT_EQ(UpdateProgressbar(nullptr, 150), 0);
    EXPECT_EQ(update_calls(), "PartialUpdate PartialUpdate ") << "100 is not the 150 it was";
    EXPECT_EQ(screen(), full);
    headless::clear_updates();
    EXPECT_EQ(UpdateProgressbar(nullptr, 100), 0);
    EXPECT_EQ(UpdateProgressbar("Working", 250), 0);
    EXPECT_EQ(update_calls(), "");
    EXPECT_EQ(UpdateProgressbar("Still working", 100), 0);
    EXPECT_EQ(UpdateProgressbar(nullptr, -20), 0);
    EXPECT_EQ(headless::updates().size(), 4U);
    EXPECT_EQ(above(590), std::vector(before.begin(), before.begin() + 600 * 590));
    CloseProgressbar();
    EXPECT_EQ(screen(), before);
    EXPECT_EQ(UpdateProgressbar(nullptr, 3), 1);
    EXPECT_EQ(answers, "");
}

TEST_F(Progress, TheBarIsFilledInProportion) {
    constexpr int width = 266 - 68 - 800 / 200 - 15; // beside the percentage
    OpenProgressbar(0, "", "", 0, answer);
    EXPECT_EQ(filled(width), 2) << "the ends of the frame";
    int last = 2;
    for (int percent = 10; percent <= 100; percent += 10) {
        UpdateProgressbar(nullptr, percent);
        EXPECT_GT(filled(width), last);
        last = filled(width);
    }
    EXPECT_EQ(last, width);
    CloseProgressbar();
}

TEST_F(Progress, AThemeMayDrawItWithPictures) {
    ThemeFile theme("dialog.style=0\npanel.height=-1\n");
    write_file("system/themes/pictures.tqt", theme.bytes());
    OpenTheme("pictures");
    OpenProgressbar(0, "", "", 0, answer);
    const int empty = filled(266);
    UpdateProgressbar(nullptr, 50);
    EXPECT_NEAR(filled(266), empty + 133, 12);
    UpdateProgressbar(nullptr, 100);
    EXPECT_NEAR(filled(266), 266, 4) << "but for the round ends";
    CloseProgressbar();
}

TEST_F(Progress, KeysAndTheButtonCancelThroughTheLoop) {
    for (int multi_touch = 0; multi_touch < 2; ++multi_touch) {
        multi_touch ? use_multi_touch() : use_keys();
        for (const int key : {KEY_OK, KEY_BACK}) {
            answers.clear();
            OpenProgressbar(0, "", "", 0, answer);
            headless::key_down(key);
            EXPECT_EQ(answers, "");
            headless::key_up(key);
            EXPECT_EQ(answers, "1 ");
        }
        answers.clear();
        OpenProgressbar(0, "", "", 0, answer);
        headless::clear_updates();
        headless::press(KEY_MENU);
        headless::press(KEY_RIGHT);
        headless::tap(300, row_y - 5);
        EXPECT_EQ(GetDialogShow(), 1) << "not the button";
        EXPECT_EQ(update_calls(), "");
        headless::tap(300, row_middle);
        EXPECT_EQ(answers, "1 ");
        EXPECT_EQ(update_calls(), "PartialUpdate PartialUpdateBW FullUpdate ");
    }
    EXPECT_EQ(GetEventHandler(), headless::handler());
}

TEST_F(Progress, WithoutACallbackNothingCancels) {
    OpenProgressbar(0, "", "", 0, nullptr);
    for (const int key : {KEY_OK, KEY_BACK}) headless::press(key);
    for (int y = 640; y < 800; y += 10) headless::tap(300, y);
    EXPECT_EQ(GetDialogShow(), 1);
    for (int type = 21; type < 160; ++type) EXPECT_EQ(GetEventHandler()(type, 300, 775), 1);
    CloseProgressbar();
}

TEST_F(Progress, CancelWorksWhileTheApplicationIsBusy) {
    SetKeyboardRate(150, 120);
    OpenProgressbar(0, "", "", 0, answer);
    hw::panel_pointer_input(EVT_POINTERDOWN, 300, row_middle);
    EXPECT_EQ(UpdateProgressbar(nullptr, 1), 0);
    hw::panel_pointer_input(EVT_POINTERUP, 300, row_middle);
    push_key(KEY_BACK);
    EXPECT_EQ(UpdateProgressbar(nullptr, 2), 1);
    EXPECT_EQ(answers, "1 ") << "once";
    EXPECT_EQ(UpdateProgressbar(nullptr, 3), 1);
    EXPECT_EQ(key_rate().first_ms, 150);
    OpenProgressbar(0, "", "", 0, answer);
    headless::advance(10);
    EXPECT_EQ(GetDialogShow(), 0) << "the key that was not looked at went to the next bar";
}

TEST_F(Progress, ATurnedScreenIsTappedWhereItShowsTheButton) {
    for (const int orientation : {0, 1, 2, 3}) {
        SetOrientation(orientation);
        draw_page();
        answers.clear();
        OpenProgressbar(0, "", "", 0, answer);
        for (int y = 2; y < 800 && answers.empty(); y += 10)
            for (int x = 2; x < 600 && answers.empty(); x += 10) {
                int cx = x, cy = y;
                ASSERT_TRUE(hw::panel_to_canvas(cx, cy));
                const int w = ScreenWidth(), h = ScreenHeight(), left = (w - 600) / 2;
                const bool on_button = cx > left && cx < left + 600 && cy > h - 49;
                hw::panel_pointer_input(EVT_POINTERUP, x, y);
                ASSERT_EQ(UpdateProgressbar(nullptr, 0), on_button) << cx << "," << cy;
            }
        EXPECT_EQ(answers, "1 ");
    }
}

void open_another(int button) {
    answer(button);
    OpenProgressbar(0, "", "Another", 5, answer);
}

TEST_F(Progress, ABarThatTheCallbackOpensIsLeftAlone) {
    OpenProgressbar(0, "", "", 0, open_another);
    push_key(KEY_OK);
    headless::clear_updates();
    EXPECT_EQ(UpdateProgressbar("Text", 50), 1);
    EXPECT_EQ(update_calls(), "PartialUpdate PartialUpdateBW FullUpdate PartialUpdate ");
    EXPECT_EQ(GetDialogShow(), 1);
    EXPECT_EQ(UpdateProgressbar("Text", 50), 0);
    CloseProgressbar();
    EXPECT_EQ(answers, "1 ");
}

TEST_F(Progress, TextsAreKeysAndTheCallersOwn) {
    AddTranslation("@Cancel", "A button as wide as you like it to be");
    AddTranslation("@Work", "Working");
    std::string text = "@Work";
    OpenProgressbar(0, nullptr, text.c_str(), 0, answer);
    const std::vector<uint8_t> shown = screen();
    text = "@Else";
    AddTranslation("@Cancel", "");
    headless::clear_updates();
    EXPECT_EQ(UpdateProgressbar("Working", 0), 0);
    EXPECT_EQ(update_calls(), "") << "the same text";
    EXPECT_EQ(UpdateProgressbar("", 0), 0);
    EXPECT_EQ(UpdateProgressbar("@Work", 0), 0);
    EXPECT_EQ(screen(), shown);
    CloseProgressbar();
}

TEST_F(Progress, TenThousandBoxesLeaveNothingBehind) {
    hw::observe_updates(nullptr);
    // Most stay on the screen, which saves the time of painting.
    const auto boxes = [](int count) {
        for (int i = 0; i < count; ++i) {
            if (i % 50 == 0) {
                OpenProgressbar(0, "", "Working on a text that is longer than a few bytes", 0,
                                answer);
                CloseProgressbar();
            }
            open_three(NO_DISMISS);
            GetEventHandler()(EVT_KEYPRESS, KEY_BACK, 0);
            kv_process_event_loop_quick();
            headless::clear_events();
        }
        answers.clear();
        answers.shrink_to_fit();
    };
    boxes(100);
    const size_t before = mallinfo2().uordblks;
    boxes(repeats(10000, 1000));
    EXPECT_LT(mallinfo2().uordblks, before + 10000);
    EXPECT_EQ(GetDialogShow(), 0);
}

} // namespace
