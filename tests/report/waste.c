/* SPDX-License-Identifier: MIT */
/* An application that turns a page well with one key, and wastes updates with each of the others.
 */
#include <kelvane.h>

static int turn = 0;

static void draw_page(void) {
    turn = !turn;
    FillArea(0, 0, ScreenWidth(), ScreenHeight(), turn ? LGRAY : WHITE);
}

static void change_a_bit_and_show_all(void) {
    InvertArea(300, 400, 20, 20);
    SoftUpdate();
}

static void show_greys_in_black_and_white(void) {
    FillArea(0, 0, 64, 40, BLACK);
    FillArea(0, 40, 64, 40, DGRAY);
    FillArea(0, 80, 64, 40, LGRAY);
    PartialUpdateBW(0, 0, 64, 120);
}

static void show_two_parts_that_touch(void) {
    InvertArea(100, 200, 40, 40);
    PartialUpdate(100, 200, 40, 40);
    InvertArea(136, 200, 40, 40);
    PartialUpdate(136, 200, 40, 40);
}

static int on_key(int key) {
    switch (key) {
    case KEY_NEXT:
        draw_page();
        SoftUpdate();
        return 1;
    case KEY_OK:
        PartialUpdate(0, 0, 200, 100);
        return 1;
    case KEY_UP:
        change_a_bit_and_show_all();
        return 1;
    case KEY_DOWN:
        show_greys_in_black_and_white();
        return 1;
    case KEY_LEFT:
        show_two_parts_that_touch();
        return 1;
    case KEY_RIGHT:
        FullUpdate();
        FullUpdate();
        return 1;
    default:
        return 0;
    }
}

static int handler(int type, int par1, int par2) {
    (void)par2;
    if (type == EVT_SHOW) {
        ClearScreen();
        FullUpdate();
    }
    return type == EVT_KEYPRESS ? on_key(par1) : 0;
}

int main(void) {
    KelvaneMain(handler);
    return 0;
}
