/* SPDX-License-Identifier: MIT */
/* An application as its author would write it against the installed library: says what it hears
 * and draws a little. */
#include <kelvane.h>
#include <kelvane/hw.h>
#include <stdio.h>

static void tick(void *context) {
    *(int *)context += 1;
    printf("timer %d\n", *(int *)context);
    DrawCircle(ScreenWidth() / 2, ScreenHeight() / 2, 100, BLACK);
    PartialUpdate(0, 0, ScreenWidth(), ScreenHeight());
}

static int handler(int type, int par1, int par2) {
    static int ticks = 0;
    printf("%d %s %d %d\n", type, evt2str(type), par1, par2);
    if (type == EVT_INIT) SetHardTimerEx("tick", tick, &ticks, 300);
    if (type == EVT_SHOW) {
        ClearScreen();
        FullUpdate();
        printf("screen %d x %d, depth %d\n", ScreenWidth(), ScreenHeight(), hw_depth());
    }
    if (type == EVT_KEYRELEASE && par1 == KEY_BACK) CloseApp();
    return 0;
}

int main(void) {
    KelvaneMain(handler);
    return 1;
}
