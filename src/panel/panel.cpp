// SPDX-License-Identifier: MIT
// Draws the panel with each update that shows its rows, and keeps it up to date in between.
#include "panel/panel.h"

#include <algorithm>
#include <utility>

#include "ground/guard.h"
#include "hw.h"
#include "internal.h"
#include "kelvane/events.h"
#include "kelvane/panel.h"
#include "kelvane/tasks.h"
#include "kelvane/timers.h"
#include "kelvane/updates.h"
#include "modal/takeover.h"
#include "panel/layout.h"
#include "raster/box.h"
#include "raster/rects.h"
#include "raster/screen_scope.h"
#include "runtime/night.h"
#include "text/font_scope.h"

namespace panel {
namespace {

enum class Touch { none, down, lifted };

struct Shown {
    irect strip{}; // empty: not shown yet
    int orientation = 0;
    Items items;
};

struct State {
    Shown shown; // on the paper, not only on the screen's canvas
    Touch touch = Touch::none;
};
State state;

irect strip() {
    const int h = kvstate.framebuffer ? PanelHeight() : 0;
    return {0, ScreenHeight() - h, ScreenWidth(), h, 0};
}

bool stands_at(const irect &r) {
    const Shown &s = state.shown;
    return r.h > 0 && s.strip.h == r.h && s.strip.w == r.w && s.strip.y == r.y &&
           s.orientation == GetOrientation();
}

// The rule parts the panel from what is above it, or below where the device shows it at the top.
irect without_rule(irect r) {
    const int rule = std::min(look().rule, r.h);
    if (kvstate.panel_position != 1) r.y += rule;
    r.h -= rule;
    return r;
}

void draw_item(const Item &item) {
    const irect &r = item.place;
    if (r.w < 1) return;
    if (item.picture) return DrawBitmap(r.x, r.y + (r.h - item.picture->height) / 2, item.picture);
    SetFont(item.font, BLACK);
    DrawTextRect2(&r, item.text.c_str());
}

void draw(const irect &r, const Items &items) {
    const raster::ScreenScope screen;
    const text::FontScope font;
    night::Cover({r.x, r.y, r.w, r.h}).stay();
    const irect inside = without_rule(r);
    FillAreaRect(&r, BLACK);
    FillAreaRect(&inside, WHITE);
    SetClipRect(&inside);
    for (const Item &item : items) draw_item(item);
}

Items items_now(const irect &r) {
    return lay_out(read_contents(), without_rule(r));
}

// An update shows a part when it covers it as it was and as it is.
void note_shown(const irect &r, const Items &items, const irect &area) {
    if (!stands_at(r)) state.shown = {r, GetOrientation(), {}};
    if (area.y > r.y || area.y + area.h < r.y + r.h) return;
    for (size_t i = 0; i < parts; ++i) {
        Item &old = state.shown.items[i];
        const irect needed = raster::joined(old.place, items[i].place);
        if (area.x <= needed.x && area.x + area.w >= needed.x + needed.w) old = items[i];
    }
}

irect changed_columns(const Items &items) {
    irect changed{};
    for (size_t i = 0; i < parts; ++i) {
        const Item &old = state.shown.items[i];
        if (old == items[i]) continue;
        changed = raster::joined(changed, raster::joined(old.place, items[i].place));
    }
    return changed;
}

bool is_in_background() {
    int active = -1;
    return MultitaskingSupported() && hw_task_active(&active, nullptr) && active != kvstate.taskid;
}

// It only ends a sleep: the next step of the loop sees the time.
void minute_passed(void *) {}

// A panel without a clock lets the device sleep.
void wake_with_clock() {
    if (state.shown.items[static_cast<size_t>(Part::clock)].place.w < 1) return;
    constexpr int early_ms = 2; // timers may fire a millisecond before they are due
    if (QueryTimer(minute_passed) == 0)
        SetHardTimer("PANEL", minute_passed, next_minute_ms() + early_ms);
}

int part_at(int x) {
    constexpr int numbers[parts] = {PANEL_PART_CLOCK,   PANEL_PART_TEXT,    PANEL_PART_PAGES,
                                    PANEL_PART_LOCK,    PANEL_PART_NETWORK, PANEL_PART_BATTERY,
                                    PANEL_PART_BATTERY, PANEL_PART_BATTERY};
    for (size_t i = 0; i < parts; ++i) {
        const irect &r = state.shown.items[i].place;
        if (x >= r.x && x < r.x + r.w) return numbers[i];
    }
    return PANEL_PART_NONE;
}

bool finger_down(bool is_inside) {
    const bool takes = is_inside && !modal::is_open();
    state.touch = takes ? Touch::down : Touch::none;
    return takes;
}

bool finger_up(int x, bool is_inside) {
    if (state.touch != Touch::down) return false;
    state.touch = Touch::lifted;
    if (is_inside) SendEvent(GetEventHandler(), EVT_PANEL, part_at(x), 0);
    return true;
}

// The frame that tells of the lifted finger is the last one of a touch.
bool touches_reported() {
    const Touch touch = state.touch;
    if (touch == Touch::lifted) state.touch = Touch::none;
    return touch != Touch::none;
}

} // namespace

void draw_for_update(int x, int y, int w, int h) {
    const irect r = strip();
    if (r.h < 1 || y >= r.y + r.h || int64_t{y} + h <= r.y) return;
    ground::guarded([&] {
        const Items items = items_now(r);
        draw(r, items);
        note_shown(r, items, {x, y, w, h, 0});
    });
}

void refresh() {
    const irect r = strip();
    if (!stands_at(r) || is_in_background()) return;
    wake_with_clock();
    if (IsInA2Update()) return;
    irect changed{};
    ground::guarded([&] { changed = changed_columns(items_now(r)); });
    if (changed.w > 0) PartialUpdate(changed.x, r.y, changed.w, r.h);
}

bool pointer(int type, int x, int y) {
    const irect r = strip();
    const bool is_inside = raster::contains(raster::Box(r), x, y);
    switch (type) {
    case EVT_POINTERDOWN:
        return finger_down(is_inside);
    case EVT_POINTERUP:
        return finger_up(x, is_inside);
    case EVT_MTSYNC:
        return touches_reported();
    default:
        return state.touch == Touch::down;
    }
}

void reset() {
    state = {};
    reset_contents();
    drop_look();
}

} // namespace panel

void DrawPanel() {
    const irect r = panel::strip();
    if (r.h > 0) ground::guarded([&] { panel::draw(r, panel::items_now(r)); });
}
