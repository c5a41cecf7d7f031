/* SPDX-License-Identifier: MIT */
/* An application whose picture tells what a controller did: a text, a frame, and with each key a
 * square at a place of chance. Some keys do more: one leaves a child that outlives it, one never
 * comes to rest. */
#include <stdlib.h>
#include <unistd.h>

#include <kelvane.h>

enum { GO_ON = 1000 };

static void draw_page(void) {
    ifont *font = OpenFont("DejaVuSans", 40, 1);
    ClearScreen();
    SetFont(font, BLACK);
    DrawTextRect(20, 400, 500, 80, GetLangText("@Cancel"), ALIGN_LEFT);
    DrawFrame(100, 100, 300, 200, NULL, "title", FRAME_BUTTON_CLOSE, NULL);
    CloseFont(font);
    FullUpdate();
}

static void draw_square(void) {
    FillArea(rand() % 500, 500 + (int)(random() % 250), 20, 20, BLACK);
    SoftUpdate();
}

static void leave_a_child(void) {
    if (fork() != 0) return;
    sleep(20);
    _exit(0);
}

static int handler(int type, int par1, int par2) {
    (void)par2;
    if (type == EVT_SHOW) draw_page();
    if (type == GO_ON) SendEvent(handler, GO_ON, 0, 0);
    if (type != EVT_KEYPRESS) return 0;
    draw_square();
    if (par1 == KEY_DOWN) leave_a_child();
    if (par1 == KEY_UP) SendEvent(handler, GO_ON, 0, 0);
    return 1;
}

int main(void) {
    KelvaneMain(handler);
    return 1;
}
