/* SPDX-License-Identifier: MIT */
/* A long job that shows how far it is and can be cancelled: OK starts it, BACK ends. */
#include <kelvane.h>
#include <stdio.h>

enum { parts = 40 };

static int words; /* what the job finds */

static void draw(void) {
    char text[64];
    ifont *font = OpenFont("default", 24, 1);
    snprintf(text, sizeof text, "%d words. Press OK to count.", words);
    ClearScreen();
    SetFont(font, BLACK);
    DrawTextRect(40, 40, ScreenWidth() - 80, 200, text, ALIGN_LEFT);
    CloseFont(font);
    FullUpdate();
}

/* A part should take less than half a second, so that Cancel is noticed soon. */
static void count_part(int part) {
    volatile unsigned work;
    for (work = 0; work < 100000; work++) {
    }
    words += 100 + part;
}

/* Called after the bar is gone, by UpdateProgressbar() itself while the job runs. */
static void cancelled(int button) {
    (void)button;
    words = 0;
}

static void count_words(void) {
    int part;
    words = 0;
    OpenProgressbar(ICON_INFORMATION, "Words", "Counting the words", 0, cancelled);
    for (part = 0; part < parts; part++) {
        const char *text = part == parts / 2 ? "Counting the words: half of them" : NULL;
        if (UpdateProgressbar(text, 100 * part / parts) != 0) return;
        count_part(part);
    }
    CloseProgressbar();
}

static int handler(int type, int par1, int par2) {
    (void)par2;
    switch (type) {
    case EVT_SHOW:
        draw();
        return 1;
    case EVT_KEYPRESS:
        if (par1 == KEY_BACK) CloseApp();
        if (par1 == KEY_OK) {
            count_words();
            draw();
        }
        return 1;
    default:
        return 0;
    }
}

int main(void) {
    KelvaneMain(handler);
    return 1; /* only reached when the screen could not be opened */
}
