// SPDX-License-Identifier: MIT
// The boxes that open over a page: each row opens one, and the last answer stands below.
#include <cstdio>
#include <iterator>

#include "page.h"

namespace {

constexpr int work_steps = 20, step_ms = 150;

int selected = 0;
int percent = 0;
char answer[64] = "Nothing asked so far";
irect place; // of the page

void show_answer();

void note_answer(int button) {
    std::snprintf(answer, sizeof answer, button < 0 ? "Cancelled" : "Answer: button %d", button);
    show_answer();
}

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

const struct {
    const char *name;
    void (*open)();
} rows[] = {
    {"Tell something", tell},
    {"Ask with two buttons", ask},
    {"Three buttons", ask_for_one_of_three},
    {"Wait for the answer", wait_for_answer},
    {"Progress with Cancel", show_progress},
    {"A question after a question", ask_twice},
};
constexpr int row_count = int(std::size(rows));

irect row_area(int index) {
    return grid_cell(place, 1, row_count + 1, index, 0);
}

void write(const irect &r, const char *text, const char *font_name, const char *deflt) {
    ifont *font = GetThemeFont(font_name, deflt);
    ifont *before = GetFont();
    SetFont(font, -1);
    DrawTextRect(r.x + unit(), r.y, r.w - 2 * unit(), r.h, text,
                 ALIGN_LEFT | VALIGN_MIDDLE | TEXT_DOTS);
    SetFont(before, -1);
    CloseFont(font);
}

void draw_answer() {
    const irect r = row_area(row_count);
    FillAreaRect(&r, WHITE);
    write(r, answer, "window.font", "default,20,0");
}

void show_answer() {
    if (&current_page() != &boxes_page) return;
    draw_answer();
    const irect r = row_area(row_count);
    PartialUpdate(r.x, r.y, r.w, r.h);
}

void draw_row(int index) {
    const irect r = row_area(index);
    const bool active = index == selected;
    FillAreaRect(&r, active ? BLACK : WHITE);
    FillArea(r.x, r.y + r.h - 1, r.w, 1, BLACK);
    if (active)
        write(r, rows[index].name, "menu.font.active", "defaultb,20,0xFFFFFF");
    else
        write(r, rows[index].name, "menu.font.normal", "default,20,0");
}

void draw(const irect &area) {
    place = area;
    for (int i = 0; i < row_count; i++) draw_row(i);
    draw_answer();
}

void choose(int index) {
    selected = (index + row_count) % row_count;
    draw(place);
    PartialUpdateBW(place.x, place.y, place.w, place.h);
}

int tapped(int x, int y) {
    for (int i = 0; i < row_count; i++) {
        if (!inside(row_area(i), x, y)) continue;
        choose(i);
        rows[i].open();
        return 1;
    }
    return 0;
}

int handle(int type, int par1, int par2, const irect &) {
    if (type == EVT_POINTERDOWN) return tapped(par1, par2);
    if (type != EVT_KEYPRESS) return 0;
    switch (par1) {
    case KEY_UP:
        choose(selected - 1);
        return 1;
    case KEY_DOWN:
        choose(selected + 1);
        return 1;
    case KEY_OK:
        rows[selected].open();
        return 1;
    default:
        return 0;
    }
}

} // namespace

const Page boxes_page = {"Boxes", "What opens over a page: UP and DOWN, OK, or a tap", draw, handle,
                         nullptr};
