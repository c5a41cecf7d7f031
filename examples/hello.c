/* SPDX-License-Identifier: MIT */
/* The smallest application: a disc on white that grows with every key; BACK (F3) ends it. */
#include <kelvane.h>

static int radius = 60;

static void draw(void) {
    int cx = ScreenWidth() / 2, cy = ScreenHeight() / 2;
    ClearScreen();
    DrawCircle(cx, cy, radius, BLACK);
    DrawCircle(cx, cy, radius / 2, LGRAY);
    FullUpdate();
}

static int handler(int type, int par1, int par2) {
    (void)par2;
    switch (type) {
    case EVT_SHOW:
        draw();
        return 1;
    case EVT_KEYPRESS:
        if (par1 == KEY_BACK) {
            CloseApp();
        } else {
            radius += 20;
            draw();
        }
        return 1;
    }
    return 0;
}

int main(void) {
    KelvaneMain(handler);
    return 1; /* only reached when the screen could not be opened */
}
