// SPDX-License-Identifier: MIT
// Dialogs by keys and by finger, over a page and over each other.
#include <csignal>
#include <gtest/gtest.h>

#include "dialogs_support.h"
#include "kelvane/timers.h"
#include "runtime/handlers.h"
#include "support/theme_file.h"

using namespace boxes;

namespace {

class Dialogs : public boxes::Test {};

TEST_F(Dialogs, EveryKeyDoesWhatItSays) {
    const struct {
        int flags;
        std::vector<int> keys;
        const char *answer;
    } cases[] = {{0, {KEY_OK}, "1 "},
                 {0, {KEY_RIGHT, KEY_OK}, "2 "},
                 {0, {KEY_NEXT2, KEY_NEXT2, KEY_OK}, "3 "},
                 {0, {KEY_RIGHT, KEY_RIGHT, KEY_RIGHT, KEY_OK}, "1 "},
                 {0, {KEY_LEFT, KEY_OK}, "3 "},
                 {0, {KEY_PREV2, KEY_PREV2, KEY_NEXT}, "2 "},
                 {DEF_BUTTON2, {KEY_OK}, "2 "},
                 {DEF_BUTTON3, {KEY_NEXT}, "3 "},
                 {DEF_BUTTON2 | DEF_BUTTON3, {KEY_OK}, "1 "},
                 {0, {KEY_BACK}, "-1 "},
                 {DEF_BUTTON2, {KEY_PREV}, "-1 "},
                 {0, {KEY_UP, KEY_DOWN, KEY_MENU, KEY_HOME, KEY_PLUS, KEY_POWER, KEY_OK}, "1 "}};
    for (const auto &c : cases) {
        answers.clear();
        open_three(c.flags);
        for (const int key : c.keys) {
            EXPECT_EQ(answers, "");
            headless::press(key);
        }
        EXPECT_EQ(answers, c.answer);
        EXPECT_EQ(GetDialogShow(), 0);
        EXPECT_EQ(GetEventHandler(), headless::handler());
    }
}

TEST_F(Dialogs, OkActsWhenItIsLetGoAndOthersWhenTheyGoDown) {
    open_three();
    headless::key_down(KEY_OK);
    headless::advance(3000);
    EXPECT_EQ(answers, "") << "repeats do nothing";
    headless::key_up(KEY_OK);
    EXPECT_EQ(answers, "1 ");
    open_three();
    headless::key_down(KEY_BACK);
    EXPECT_EQ(answers, "1 -1 ");
    headless::key_up(KEY_BACK);
}

TEST_F(Dialogs, OnMultiTouchOnlyOkCounts) {
    use_multi_touch();
    open_three();
    for (const int key : {KEY_RIGHT, KEY_BACK, KEY_PREV, KEY_NEXT, KEY_LEFT}) headless::press(key);
    EXPECT_EQ(answers, "");
    headless::press(KEY_OK);
    EXPECT_EQ(answers, "1 ");
    Dialog(0, "", "", "Close", nullptr, nullptr);
    headless::press(KEY_UP);
    EXPECT_EQ(GetDialogShow(), 0) << "without a callback any key closes";
}

TEST_F(Dialogs, AFingerChoosesWhereItGoesDownAndUp) {
    for (int multi_touch = 0; multi_touch < 2; ++multi_touch) {
        multi_touch ? use_multi_touch() : use_keys();
        for (int button = 1; button <= 3; ++button) {
            answers.clear();
            open_three();
            const int x = 200 * button - 100;
            headless::tap(x, row_middle);
            EXPECT_EQ(answers, std::to_string(button) + " ");
        }
        answers.clear();
        open_three();
        headless::pointer(EVT_POINTERDOWN, 100, row_middle);
        headless::pointer(EVT_POINTERMOVE, 300, row_middle);
        headless::pointer(EVT_POINTERUP, 300, row_middle);
        headless::advance(1000);
        EXPECT_EQ(answers, "") << "dragged off";
        EXPECT_EQ(GetDialogShow(), 1);
        headless::tap(300, 300);
        EXPECT_EQ(GetDialogShow(), 1) << "beside the box";
        headless::tap(500, row_y - 9);
        EXPECT_EQ(answers, "3 ") << "the reach of a button";
    }
}

TEST_F(Dialogs, AfterAFingerLeftItsButtonNoneIsSelected) {
    testing::internal::CaptureStderr();
    open_three(DEF_BUTTON2);
    headless::pointer(EVT_POINTERDOWN, 500, row_middle);
    headless::pointer(EVT_POINTERUP, 500, 300);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "wrong selector value (-1)\n");
    headless::press(KEY_LEFT);
    headless::press(KEY_OK);
    EXPECT_EQ(answers, "1 ");

    open_three();
    headless::pointer(EVT_POINTERDOWN, 100, row_middle);
    headless::pointer(EVT_POINTERUP, 100, 300);
    headless::press(KEY_OK);
    EXPECT_EQ(answers, "1 -1 ");
}

TEST_F(Dialogs, AHeldFingerSelectsAndALiftedOneAloneCounts) {
    open_three();
    SendEvent(GetEventHandler(), EVT_POINTERHOLD, 300, row_middle);
    SendEvent(GetEventHandler(), EVT_POINTERUP, 300, row_middle);
    headless::advance(1);
    EXPECT_EQ(answers, "2 ");
    open_three();
    SendEvent(GetEventHandler(), EVT_POINTERUP, 100, row_middle);
    headless::advance(1);
    EXPECT_EQ(answers, "2 1 ");
}

TEST_F(Dialogs, ButtonsThatAreMissing) {
    Dialog3(DEF_BUTTON2, "", "", "One", nullptr, "Three", answer);
    headless::press(KEY_OK);
    EXPECT_EQ(answers, "1 ") << "a default that is not there is the first";
    Dialog3(0, "", "", "One", nullptr, "Three", answer);
    headless::tap(450, row_middle);
    EXPECT_EQ(answers, "1 3 ");
    Dialog3(0, nullptr, nullptr, nullptr, nullptr, nullptr, answer);
    headless::tap(300, box_top + 20);
    EXPECT_EQ(answers, "1 3 1 ");
}

TEST_F(Dialogs, SystemScreensDoNotOpenAboveADialog) {
    open_three();
    for (int type = 118; type <= 133; ++type)
        EXPECT_EQ(GetEventHandler()(type, 0, 0), type >= 119 && type <= 132) << type;
    CloseDialog();
}

TEST_F(Dialogs, WhatLiesBeneathIsWholeAgain) {
    const std::vector<uint8_t> before = screen();
    headless::clear_updates();
    open_three();
    EXPECT_EQ(update_calls(), "PartialUpdate ");
    EXPECT_EQ(headless::updates()[0].w, 600);
    EXPECT_EQ(headless::updates()[0].h, 800);
    EXPECT_NE(screen(), before);
    EXPECT_EQ(above(box_top), std::vector(before.begin(), before.begin() + 600 * box_top));
    headless::clear_updates();
    headless::press(KEY_RIGHT);
    EXPECT_EQ(update_calls(), "PartialUpdateBW ");
    headless::clear_updates();
    headless::pointer(EVT_POINTERDOWN, 100, row_middle);
    EXPECT_EQ(update_calls(), "PartialUpdate PartialUpdateBW ");
    EXPECT_EQ(above(box_top), std::vector(before.begin(), before.begin() + 600 * box_top));
    headless::clear_updates();
    headless::pointer(EVT_POINTERUP, 100, row_middle);
    EXPECT_EQ(answers, "1 ");
    EXPECT_EQ(update_calls(), "PartialUpdateBW FullUpdate ");
    EXPECT_EQ(screen(), before);
}

TEST_F(Dialogs, ADialogMayStayOnTheScreenAfterItsAnswer) {
    open_three(NO_DISMISS);
    const std::vector<uint8_t> with_box = screen();
    headless::clear_updates();
    headless::press(KEY_OK);
    EXPECT_EQ(answers, "1 ");
    EXPECT_EQ(screen(), with_box);
    EXPECT_EQ(update_calls(), "");
    EXPECT_EQ(GetDialogShow(), 0);
    ClearScreen();
    const std::vector<uint8_t> white = screen();
    open_three(NO_DISMISS);
    CloseDialog();
    EXPECT_EQ(screen(), white) << "closed by a call it goes";
    EXPECT_EQ(answers, "1 ");
}

TEST_F(Dialogs, TheApplicationGetsBackItsCanvasFontHandlerAndKeyRate) {
    uint8_t row[8] = {};
    icanvas elsewhere{8, 1, 8, 8, 2, 5, 0, 0, row};
    const fonts::Font font("default", 33);
    SetFont(font, DGRAY);
    SetClip(5, 6, 7, 8);
    SetCanvas(&elsewhere);
    SetKeyboardRate(150, 120);
    const std::vector<uint8_t> before = screen();
    open_three(ICON_QUESTION);
    EXPECT_EQ(GetCanvas(), &elsewhere);
    headless::press(KEY_RIGHT);
    headless::clear_events();
    headless::press(KEY_OK);
    EXPECT_EQ(screen(), before);
    EXPECT_EQ(GetCanvas(), &elsewhere);
    EXPECT_EQ(elsewhere.clipx1, 2);
    EXPECT_EQ(GetFont(), font.font);
    EXPECT_EQ(kvstate.current_color, DGRAY);
    EXPECT_EQ(key_rate().first_ms, 150);
    EXPECT_EQ(key_rate().next_ms, 120);
    EXPECT_EQ(headless::events(), "RESTORE ");
    SetCanvas(nullptr);
    EXPECT_EQ(GetClipRect().x, 5);
}

TEST_F(Dialogs, ThreeBoxesCloseInTheReverseOrder) {
    std::vector<std::vector<uint8_t>> pictures{screen()};
    open_three();
    pictures.push_back(screen());
    OpenProgressbar(0, "", "Working", 10, answer);
    pictures.push_back(screen());
    Dialog(0, "",
           "A longer text that makes the upper box higher than the others, in three lines "
           "at least",
           "Yes", "No", answer);
    EXPECT_EQ(GetDialogShow(), 3);
    Dialog(0, "", "", "Another", nullptr, answer);
    EXPECT_EQ(GetDialogShow(), 3) << "a dialog is not opened over one that has the input";
    for (int open = 2; open >= 0; --open) {
        CloseDialog();
        EXPECT_EQ(GetDialogShow(), open);
        EXPECT_EQ(screen(), pictures[static_cast<size_t>(open)]);
    }
    CloseDialog();
    CloseProgressbar();
    EXPECT_EQ(GetEventHandler(), headless::handler());
    EXPECT_EQ(kvstate.uiflags & UI_MODAL_MASK, 0);
    EXPECT_EQ(answers, "");
}

TEST_F(Dialogs, TheModalFlagGoesWithTheUpperDialog) {
    open_three();
    EXPECT_EQ(kvstate.uiflags & UI_MODAL_MASK, UI_DIALOG_OPEN);
    OpenProgressbar(0, "", "", 0, nullptr);
    CloseProgressbar();
    EXPECT_EQ(kvstate.uiflags & UI_MODAL_MASK, UI_DIALOG_OPEN) << "a dialog has the input again";
    OpenProgressbar(0, "", "", 0, answer);
    open_three();
    CloseDialog();
    EXPECT_EQ(kvstate.uiflags & UI_MODAL_MASK, 0) << "a progress bar has the input again";
}

TEST_F(Dialogs, TheRowFollowsTheBoxBefore) {
    const std::vector<uint8_t> before = screen();
    OpenProgressbar(0, "", "", 0, nullptr);
    open_three();
    // The box ends where the screen does; its row lies below, as far as a finger reaches.
    EXPECT_EQ(above(650), std::vector(before.begin(), before.begin() + 600 * 650));
    headless::tap(300, 795);
    EXPECT_EQ(answers, "2 ");
    CloseProgressbar();
    EXPECT_EQ(screen(), before);
    open_three();
    EXPECT_NE(above(650), std::vector(before.begin(), before.begin() + 600 * 650));
    CloseDialog();
}

void open_again(int button) {
    answer(button);
    Dialog(0, "", "", "Yes", "No", answer);
}

TEST_F(Dialogs, CallbacksTimersAndHandlersOpenBoxes) {
    const std::vector<uint8_t> before = screen();
    Dialog(0, "", "", "Yes", "No", open_again);
    headless::tap(450, row_middle);
    EXPECT_EQ(answers, "2 ");
    EXPECT_EQ(GetDialogShow(), 1);
    headless::tap(150, row_middle);
    EXPECT_EQ(answers, "2 1 ");
    SetHardTimer(
        "opens", [](void *) { open_three(); }, 100);
    headless::advance(200);
    headless::press(KEY_BACK);
    EXPECT_EQ(answers, "2 1 -1 ");
    headless::on_event([](int type, int key, int) {
        if (type == EVT_KEYPRESS && key == KEY_MENU) open_three();
        return 0;
    });
    headless::press(KEY_MENU);
    headless::press(KEY_RIGHT);
    headless::press(KEY_OK);
    EXPECT_EQ(answers, "2 1 -1 2 ");
    EXPECT_EQ(screen(), before);
    EXPECT_EQ(GetEventHandler(), headless::handler());
}

TEST_F(Dialogs, AScreenThatIsTurnedUnderABoxIsDrawnAnew) {
    open_three();
    SetOrientation(1);
    headless::clear_events();
    CloseDialog();
    headless::advance(1);
    EXPECT_EQ(headless::events(), "SHOW RESTORE ");
}

uint8_t at(int x, int y) {
    return screen()[static_cast<size_t>(600 * y + x)];
}

TEST_F(Dialogs, TheThemeSaysHowASelectionLooks) {
    constexpr int inside_one = 100, inside_two = 300, y = row_y + 8;
    open_three();
    const std::vector<uint8_t> marked = screen();
    headless::press(KEY_RIGHT);
    EXPECT_NE(screen(), marked) << "a marker";
    CloseDialog();
    use_multi_touch();
    open_three();
    EXPECT_NE(screen(), marked) << "a finger needs none";
    CloseDialog();
    use_keys();
    ThemeFile theme("selection.background.style=1\npanel.height=0\n");
    write_file("system/themes/black.tqt", theme.bytes());
    OpenTheme("black");
    open_three();
    EXPECT_EQ(at(inside_one, y), 0);
    EXPECT_EQ(at(inside_two, y), 255);
    headless::clear_updates();
    headless::pointer(EVT_POINTERDOWN, inside_two, row_middle);
    EXPECT_EQ(at(inside_one, y), 255);
    EXPECT_EQ(at(inside_two, y), 0);
    EXPECT_EQ(update_calls(), "PartialUpdateBW ") << "black already";
    CloseDialog();
}

TEST_F(Dialogs, AnApplicationMayEndWhileABoxIsOpen) {
    open_three(NO_DISMISS);
    OpenProgressbar(0, "", "", 50, answer);
    CloseApp();
    headless::advance(100);
    restart_with("");
    EXPECT_EQ(GetDialogShow(), 0);
    EXPECT_EQ(answers, "") << "nobody is told";
    fonts::link_all();
    open_three();
    headless::press(KEY_OK);
    EXPECT_EQ(answers, "1 ");
}

class Synchro : public boxes::Test {
  protected:
    // Calls DialogSynchro() with this timer running.
    static int ask(kv_timerproc when_due, int ms = 300) {
        SetHardTimer("during", when_due, ms);
        return DialogSynchro(ICON_QUESTION, "Title", "Text", "Yes", "No", nullptr);
    }
    static void push_key(int key) {
        hw::set_key_bit(hw::find_code_bit(key), true);
        hw::set_key_bit(hw::find_code_bit(key), false);
    }
};

TEST_F(Synchro, ReturnsTheAnswer) {
    const std::vector<uint8_t> before = screen();
    EXPECT_EQ(ask([](void *) { push_key(KEY_OK); }), 1);
    EXPECT_EQ(ask([](void *) {
                  push_key(KEY_RIGHT);
                  push_key(KEY_OK);
              }),
              2);
    EXPECT_EQ(ask([](void *) { push_key(KEY_BACK); }), -1);
    EXPECT_EQ(ask([](void *) {
                  hw::panel_pointer_input(EVT_POINTERDOWN, 450, row_middle);
                  hw::panel_pointer_input(EVT_POINTERUP, 450, row_middle);
              }),
              2);
    EXPECT_EQ(screen(), before);
    EXPECT_EQ(GetEventHandler(), headless::handler());
}

TEST_F(Synchro, EndsWhenItsDialogIsClosedByACall) {
    EXPECT_EQ(ask([](void *) { CloseDialog(); }), -1);
    EXPECT_EQ(GetDialogShow(), 0);
}

TEST_F(Synchro, OpensNothingOverADialogThatHasTheInput) {
    open_three();
    EXPECT_EQ(DialogSynchro(0, "", "", "Yes", nullptr, nullptr), -1);
    EXPECT_EQ(GetDialogShow(), 1);
    CloseDialog();
}

TEST_F(Synchro, ClosesTheBoxBeneathWithItsAnswer) {
    OpenProgressbar(0, "", "", 10, answer);
    EXPECT_EQ(ask([](void *) { push_key(KEY_OK); }), 1);
    EXPECT_EQ(GetDialogShow(), 0);
    EXPECT_EQ(answers, "");
    EXPECT_EQ(GetEventHandler(), headless::handler());
}

TEST_F(Synchro, EachOfTwoGetsItsOwnAnswer) {
    const int outer = ask([](void *) {
        OpenProgressbar(0, "", "", 10, nullptr);
        SetHardTimer(
            "inner", [](void *) { push_key(KEY_BACK); }, 200);
        answer(DialogSynchro(0, "", "", "Inner", nullptr, nullptr));
        push_key(KEY_OK);
    });
    EXPECT_EQ(answers, "-1 ");
    EXPECT_EQ(outer, 1);
    EXPECT_EQ(GetDialogShow(), 0);
}

TEST_F(Synchro, EndsWithTheApplication) {
    EXPECT_EQ(ask([](void *) { CloseApp(); }), -1);
    EXPECT_EQ(GetDialogShow(), 0);
    EXPECT_EQ(GetEventHandler(), headless::handler()) << "who is hidden at the end";
}

TEST_F(Synchro, EndsWithASignal) {
    EXPECT_EQ(ask([](void *) { std::raise(SIGTERM); }), -1);
    EXPECT_EQ(kvstate.exiting, EXIT_BY_SIGNAL);
}

TEST_F(Synchro, AnAnswerAfterTheLoopWasLeftGoesNowhere) {
    EXPECT_EQ(ask([](void *) {
                  OpenProgressbar(0, "", "", 10, nullptr);
                  LeaveKelvaneMain();
              }),
              -1);
    EXPECT_EQ(GetDialogShow(), 2) << "the bar above keeps the dialog open";
    PrepareForLoop(headless::handler());
    CloseProgressbar();
    headless::press(KEY_OK);
    EXPECT_EQ(GetDialogShow(), 0);
}

} // namespace
