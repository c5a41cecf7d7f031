// SPDX-License-Identifier: MIT
// Tells keys and places apart. Nothing here changes a box.
#include "dialogs/input.h"

#include <algorithm>

#include "hw.h"
#include "hw_seam.h"
#include "kelvane/events.h"

namespace dialogs {
namespace {

constexpr int multi_touch_above_kind = 2;
constexpr int reach = 10; // above and below a button, in pixels

bool has(const Present &present, int button) {
    return button >= 1 && button <= most_buttons && present[static_cast<size_t>(button - 1)];
}

irect widened(irect r) {
    r.y -= reach;
    r.h += 2 * reach;
    return r;
}

RawEvent pointer_event(const hw_event &event) {
    int x = event.data.pointer.x, y = event.data.pointer.y;
    if (!hw::panel_to_canvas(x, y)) return {};
    return {event.type, x, y};
}

} // namespace

Panel panel() {
    return device_touchpanel() > multi_touch_above_kind ? Panel::multi_touch
                                                        : Panel::keys_and_touch;
}

Meaning meaning_of(int key, Panel panel) {
    if (panel == Panel::multi_touch && key != KEY_OK) return Meaning::nothing;
    switch (key) {
    case KEY_LEFT:
    case KEY_PREV2:
        return Meaning::previous;
    case KEY_RIGHT:
    case KEY_NEXT2:
        return Meaning::next;
    case KEY_OK:
    case KEY_NEXT:
        return Meaning::choose;
    case KEY_PREV:
    case KEY_BACK:
        return Meaning::cancel;
    default:
        return Meaning::nothing;
    }
}

int button_before(const Present &present, int selected) {
    if (selected < 1) return 1;
    int button = selected > 1 ? selected - 1 : most_buttons;
    while (button > 1 && !has(present, button)) --button;
    return button;
}

int button_after(const Present &present, int selected) {
    return selected >= 1 && has(present, selected + 1) ? selected + 1 : 1;
}

bool is_inside(const irect &r, int x, int y) {
    return x > r.x && x < r.x + r.w && y > r.y && y < r.y + r.h;
}

int item_at(const Layout &layout, const Present &present, int x, int y) {
    for (int button = 1; button <= most_buttons; ++button) {
        const irect &place = layout.buttons[static_cast<size_t>(button - 1)];
        if (has(present, button) && is_inside(widened(place), x, y)) return button;
    }
    if (!is_inside(layout.box, x, y)) return -1;
    return std::count(present.begin(), present.end(), true) == 1 ? 1 : 0;
}

bool take_raw_event(RawEvent &event) {
    hw_event raw;
    if (!hw_nextevent(&raw)) return false;
    event = {};
    switch (raw.type) {
    case EVT_KEYPRESS:
    case EVT_KEYRELEASE:
        event = {raw.type, kv_transform_key(raw.data.common.par1), 0};
        break;
    case EVT_POINTERUP:
    case EVT_POINTERDOWN:
        event = pointer_event(raw);
        break;
    default:
        break;
    }
    return true;
}

// The device may not rest while it has something to do at this very moment.
void rest_ms(int64_t ms) {
    constexpr int64_t ms_us = 1000;
    const int64_t before_us = hw::boot_time_us();
    hw_pause(ms * ms_us);
    if (hw::boot_time_us() == before_us && !hw::is_time_stopped()) hw::pass_time(ms_us);
}

} // namespace dialogs
