// SPDX-License-Identifier: MIT
// Tells events apart and shows presses.
#include "modal/input.h"

#include "kelvane/events.h"
#include "kelvane/updates.h"

namespace modal {

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

void update(const raster::Box &box) {
    const irect r = raster::to_rect(box);
    PartialUpdate(r.x, r.y, r.w, r.h);
}

} // namespace modal
