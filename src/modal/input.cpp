// SPDX-License-Identifier: MIT
// Tells events apart and shows presses.
#include "modal/input.h"

#include <algorithm>

#include "kelvane/canvas.h"
#include "kelvane/events.h"
#include "kelvane/updates.h"

namespace modal {
namespace {

void fill_corner(const irect &corner, int center_x, int color) {
    SetClipRect(&corner);
    DrawCircle(center_x, corner.y, corner.h, color);
    SetClip(0, 0, ScreenWidth(), ScreenHeight());
}

} // namespace

bool is_pointer_event(int type) {
    constexpr int end_of_drag = EVT_POINTERDRAG + 1;
    switch (type) {
    case EVT_POINTERUP:
    case EVT_POINTERDOWN:
    case EVT_POINTERMOVE:
    case EVT_POINTERLONG:
    case EVT_POINTERHOLD:
    case EVT_MTSYNC:
    case EVT_POINTERDRAG:
    case end_of_drag:
        return true;
    default:
        return false;
    }
}

void send_key(int type, int key) {
    SendEvent(GetEventHandler(), type, key, 0);
}

void draw_pressed(const raster::Box &box, int step) {
    raster::hatch(box, step, BLACK);
}

void fill_button(const irect &r, int left, int right, int color) {
    const int foot = std::max(left, right), top = r.y + r.h - foot, end = r.x + r.w;
    FillArea(r.x, r.y, r.w, r.h - foot, color);
    FillArea(r.x + left, top, r.w - left - right, foot, color);
    if (left > 0) fill_corner({r.x, top, left, left, 0}, r.x + left, color);
    if (right > 0) fill_corner({end - right, top, right, right, 0}, end - right - 1, color);
}

void update(const raster::Box &box) {
    const irect r = raster::to_rect(box);
    PartialUpdate(r.x, r.y, r.w, r.h);
}

} // namespace modal
