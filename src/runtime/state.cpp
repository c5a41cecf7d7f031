// SPDX-License-Identifier: MIT
// The screen as applications see it: its size and the way it is held.
#include "hw.h"
#include "internal.h"

int ScreenWidth() {
    return kvstate.framebuffer ? kvstate.framebuffer->width : 0;
}

int ScreenHeight() {
    return kvstate.framebuffer ? kvstate.framebuffer->height : 0;
}

int GetOrientation() {
    return kvstate.orientation;
}

void SetOrientation(int orientation) {
    if (orientation < 0 || orientation > 3 || !kvstate.framebuffer) return;
    kvstate.orientation = orientation;
    hw_set_fb_orientation(orientation);
}
