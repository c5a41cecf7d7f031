// SPDX-License-Identifier: MIT
// The boxes that open over a page: each row opens one, and the last answer stands below.
#include <cstdio>

#include "rows.h"

namespace {

constexpr int work_steps = 20, step_ms = 150;

int percent = 0;

void note_answer(int button);

void tell() {
    Message(ICON_INFORMATION, "Boxes", "Told for three seconds, or until a key or a tap.", 3000);
}

void ask() {
    Dialog(ICON_QUESTION, "Boxes", "\u201CMoby-Dick\u201D has arrived. Do you want to open it now?",
           "Open", "Later", note_answer);
}

void ask_for_one_of_three() {
    Dialog3(ICON_WARNING | DEF_BUTTON3, "Boxes",
            "The book is open on another device. Which place do you want to keep?", "Mine",
            "The other", "Ask later", note_answer);
}

void wait_for_answer() {
    note_answer(DialogSynchro(ICON_ERROR, "Boxes",
                              "The card is full. The page behind waits for the answer.",
                              "Make room", "Go on", nullptr));
}

void work(void *) {
    percent += 100 / work_steps;
    if (UpdateProgressbar(percent == 60 ? "Nearly there" : nullptr, percent) != 0) return;
    if (percent < 100) {
        SetHardTimer("gallery work", work, step_ms);
    } else {
        CloseProgressbar();
    }
}

void stop_work(int) {
    ClearTimer(work);
    note_answer(-1);
}

void show_progress() {
    percent = 0;
    OpenProgressbar(ICON_WIFI, "Boxes", "Fetching the book", percent, stop_work);
    SetHardTimer("gallery work", work, step_ms);
}

void ask_once_more(int button) {
    if (button == 1) {
        Dialog(ICON_WARNING, "Boxes", "Really?", "Yes", "No", note_answer);
    } else {
        note_answer(button);
    }
}

void ask_twice() {
    Dialog(ICON_QUESTION, "Boxes", "Delete all notes?", "Delete", "Keep", ask_once_more);
}

const Row kinds[] = {
    {"Tell something", tell},
    {"Ask with two buttons", ask},
    {"Three buttons", ask_for_one_of_three},
    {"Wait for the answer", wait_for_answer},
    {"Progress with Cancel", show_progress},
    {"A question after a question", ask_twice},
};
Rows rows(boxes_page, kinds, "Nothing asked so far");

void note_answer(int button) {
    static char text[64];
    std::snprintf(text, sizeof text, button < 0 ? "Cancelled" : "Answer: button %d", button);
    rows.answer(text);
}

void draw(const irect &area) {
    rows.draw(area);
}

int handle(int type, int par1, int par2, const irect &) {
    return rows.handle(type, par1, par2);
}

} // namespace

const Page boxes_page = {"Boxes", "What opens over a page: UP and DOWN, OK, or a tap", draw, handle,
                         nullptr};
