/* SPDX-License-Identifier: MIT */
/* The library's side of the window benchmarks: a dark grey screen that tells of its keys. */
#include <stdio.h>

#include "kelvane.h"

static int handler(int type, int par1, int par2) {
    (void)par1;
    (void)par2;
    if (type == EVT_SHOW) {
        FillArea(0, 0, ScreenWidth(), ScreenHeight(), DGRAY);
        FullUpdate();
    }
    if (type == EVT_KEYPRESS) {
        puts("key");
        fflush(stdout);
    }
    return 1;
}

int main(void) {
    KelvaneMain(handler);
    return 1;
}
