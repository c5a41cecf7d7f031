/* SPDX-License-Identifier: MIT */
/* Says what its device is like, and ends. The themes have separators of their own: 1 and 3. */
#include <stdio.h>

#include "hw.h"
#include "kelvane.h"

static int handler(int type, int par1, int par2) {
    (void)par1;
    (void)par2;
    if (type != EVT_SHOW) return 0;
    printf("%s %d %dx%d %d dpi %s %d\n", GetLangText("@Cancel"), IsRTL(), ScreenWidth(),
           ScreenHeight(), device_display_dpi(), hw_getmodel(), GetThemeInt("separator.size", 0));
    CloseApp();
    return 0;
}

int main(void) {
    KelvaneMain(handler);
    return 1;
}
