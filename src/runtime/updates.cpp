// SPDX-License-Identifier: MIT
// Screen updates: widened, cut, joined with what was scheduled, and shown.
#include "kelvane/updates.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "ground/number.h"
#include "hw.h"
#include "hw_seam.h"
#include "runtime/night.h"
#include "runtime/screens.h"
#include "runtime/tasks.h"
#include "runtime/updates.h"
#include "runtime/wake.h"

namespace {

constexpr int scheduled_areas = 16;
constexpr int deferred_refresh_ms = 380;
// A device that answers with both bits shows an intermediate picture and wants a second update.
constexpr unsigned refresh_wanted_bits = 1U << 31 | 1U << 29;

struct Area {
    int x, y, w, h;
};

struct State {
    std::array<UpdateInfo, scheduled_areas> updates{};
    UpdateInfo refresh_area{};
    const char *cause = ""; // the call that the next update belongs to
    bool in_a2_update = false;
    Area a2_area{};
    int pages_since_flash = 0;
    bool next_page_flashes = false;
};
State state;

int64_t round4_up(int64_t n) {
    return (n + 3) & ~int64_t{3};
}

bool is_whole_screen(const Area &a) {
    const auto spans = [](int size, int screen) {
        return size == screen || size == round4_up(screen);
    };
    return a.x == 0 && a.y == 0 && spans(a.w, ScreenWidth()) && spans(a.h, ScreenHeight());
}

// A negative origin makes the area wider, not narrower.
bool clip_axis(int &start, int &size, int screen) {
    int64_t wide = size;
    if (start < 0) {
        wide -= start;
        start = 0;
    }
    size = ground::saturated(std::min<int64_t>(wide, int64_t{screen} - start));
    return size > 0;
}

bool overlaps(const UpdateInfo &u, const Area &a) {
    return u.x < a.x + a.w && a.x < u.x + u.w && u.y < a.y + a.h && a.y < u.y + u.h;
}

template <class Rect>
Area union_of(const Rect &a, const Area &b) {
    const int left = std::min(a.x, b.x), top = std::min(a.y, b.y);
    return {left, top, std::max(a.x + a.w, b.x + b.w) - left, std::max(a.y + a.h, b.y + b.h) - top};
}

int update_wake_ms() {
    const int platform = device_platform();
    return platform == 14 || platform == 16 ? 350 : wake_after_activity_ms;
}

// The lock icon stands on the screen only while an update is shown.
class KeylockIcon {
  public:
    KeylockIcon() {
        const bool wanted = hw_get_keylock() && !MultitaskingSupported();
        shown_ = wanted && screens.show_keylock_icon();
    }
    ~KeylockIcon() {
        if (shown_) screens.restore_under_icon();
    }
    KeylockIcon(const KeylockIcon &) = delete;
    KeylockIcon &operator=(const KeylockIcon &) = delete;

  private:
    bool shown_;
};

int show(const char *cause, const Area &a, int mode, Dynamic dynamic) {
    screens.draw_panel(a.x, a.y, a.w, a.h);
    hw::set_update_cause(cause);
    if (dynamic != DYNAMIC_OFF) hw_switch_dynamic(dynamic);
    const night::Turned turned({a.x, a.y, a.w, a.h});
    const int answer = hw_update(a.x, a.y, a.w, a.h, mode);
    if (dynamic != DYNAMIC_OFF) hw_switch_dynamic(DYNAMIC_OFF);
    return answer;
}

void run_schedule(void *) {
    const int64_t now = hw_boottime_ms();
    const UpdateInfo *earliest = nullptr;
    for (UpdateInfo &u : state.updates) {
        if (!u.await) continue;
        if (u.utime <= now) {
            u.await = 0;
            show("scheduled area", {u.x, u.y, u.w, u.h}, u.bw, DYNAMIC_PARTIAL);
        } else if (!earliest || u.utime < earliest->utime) {
            earliest = &u;
        }
    }
    if (!earliest) return;
    const int64_t remaining = std::max<int64_t>(earliest->utime - hw_boottime_ms(), 0);
    SetHardTimer("schedule", run_schedule, ground::saturated(remaining));
}

Area merge_schedule(Area area) {
    const int64_t now = hw_boottime_ms();
    for (UpdateInfo &u : state.updates) {
        if (!u.await || !overlaps(u, area)) continue;
        area = union_of(u, area);
        u.utime = now;
        u.await = 0;
    }
    run_schedule(nullptr);
    return area;
}

void clear_schedule() {
    for (UpdateInfo &u : state.updates) u.await = 0;
    ClearTimer(run_schedule);
}

void run_refresh(void *) {
    UpdateInfo &r = state.refresh_area;
    if (!r.await) return;
    r.await = 0;
    show("deferred refresh", {r.x, r.y, r.w, r.h}, r.bw, DYNAMIC_PARTIAL);
}

void clear_deferred_refresh() {
    state.refresh_area.await = 0;
    ClearTimer(run_refresh);
}

void defer_refresh(Area area, int mode) {
    if (!clip_axis(area.x, area.w, ScreenWidth()) || !clip_axis(area.y, area.h, ScreenHeight()))
        return;
    UpdateInfo &r = state.refresh_area;
    if (r.await) {
        area = union_of(r, area);
        if (mode != UPDATE_GREY) mode = r.bw;
    }
    const int64_t due = hw_boottime_ms() + deferred_refresh_ms;
    r = {area.x, area.y, area.w, area.h, mode, due, 1, 0};
    SetHardTimer("refresh", run_refresh, deferred_refresh_ms);
}

void show_and_defer(const Area &a, int mode, Dynamic dynamic) {
    const int answer = do_partial_update(a.x, a.y, a.w, a.h, mode, dynamic);
    if ((static_cast<unsigned>(answer) & refresh_wanted_bits) == refresh_wanted_bits)
        defer_refresh(a, mode);
}

// Black and black-and-white updates: their own mode unless a full update was pending.
void partial_update_in(const char *cause, Area a, int mode) {
    check_update_area(&a.x, &a.y, &a.w, &a.h, &mode);
    state.cause = cause;
    show_and_defer(a, mode, is_whole_screen(a) ? DYNAMIC_OFF : DYNAMIC_PARTIAL);
}

void checked_update_in(const char *cause, Area a, int mode, Dynamic dynamic) {
    check_update_area(&a.x, &a.y, &a.w, &a.h, nullptr);
    state.cause = cause;
    do_partial_update(a.x, a.y, a.w, a.h, mode, dynamic);
}

void forget_pending_updates() {
    clear_deferred_refresh();
    kvstate.needupdate = 0;
}

void full_update_with(const char *cause, int (*device_update)()) {
    if (!kvstate.isopen) return;
    state.in_a2_update = false;
    task_reset_update_counter();
    extend_wake_time(update_wake_ms());
    screens.draw_panel(0, 0, ScreenWidth(), ScreenHeight());
    hw::set_update_cause(cause);
    {
        const KeylockIcon icon;
        const night::Turned turned({0, 0, ScreenWidth(), ScreenHeight()});
        device_update();
    }
    clear_schedule();
    forget_pending_updates();
}

void flash_with(const char *cause, int (*device_update)()) {
    full_update_with(cause, device_update);
    state.pages_since_flash = 0;
    state.next_page_flashes = false;
}

void grey_update_in(const char *cause, Area a) {
    check_update_area(&a.x, &a.y, &a.w, &a.h, nullptr);
    state.cause = cause;
    if (is_whole_screen(a))
        show_and_defer(a, UPDATE_GREY, DYNAMIC_OFF);
    else
        show_and_defer(a, GetNightMode() ? UPDATE_PARTIAL_BLACK : UPDATE_PARTIAL_GREY,
                       DYNAMIC_PARTIAL);
}

void hq_update_in(const char *cause, Area a) {
    checked_update_in(cause, a, UPDATE_PARTIAL_HQ, DYNAMIC_OFF);
}

void soft_update_with(const char *cause, void (*partial)(const char *, Area)) {
    if (!kvstate.isopen) return;
    extend_wake_time(update_wake_ms());
    task_reset_update_counter();
    partial(cause, {0, 0, ScreenWidth(), ScreenHeight()});
    forget_pending_updates();
}

} // namespace

void updates_reset() {
    state = {};
    night::reset();
}

void check_update_area(int *x, int *y, int *w, int *h, int *mode) {
    if (kvstate.needupdate) {
        *x = *y = 0;
        *w = ScreenWidth();
        *h = ScreenHeight();
        if (mode) *mode = UPDATE_GREY;
    } else {
        *w = ground::saturated(round4_up(int64_t{*x & 3} + *w)) & ~3;
        *h = ground::saturated(round4_up(int64_t{*y & 3} + *h)) & ~3;
        *x &= ~3;
        *y &= ~3;
    }
    kvstate.needupdate = 0;
}

int do_partial_update(int x, int y, int w, int h, int mode, Dynamic dynamic) {
    if (!kvstate.isopen) return 0;
    if (mode != UPDATE_A2_ENTER && mode != UPDATE_A2) state.in_a2_update = false;
    Area area{x, y, w, h};
    if (!clip_axis(area.x, area.w, ScreenWidth()) || !clip_axis(area.y, area.h, ScreenHeight()))
        return 0;
    area = merge_schedule(area);
    extend_wake_time(update_wake_ms());
    const KeylockIcon icon;
    return show(state.cause, area, mode, dynamic);
}

void schedule_area(int x, int y, int w, int h, int mode, int delay_ms) {
    Area area{x, y, w, h};
    if (!clip_axis(area.x, area.w, ScreenWidth()) || !clip_axis(area.y, area.h, ScreenHeight()))
        return;
    const int64_t now = hw_boottime_ms();
    UpdateInfo *oldest = nullptr;
    for (UpdateInfo &u : state.updates) {
        const bool usable = !u.await && u.utime < now;
        if (usable && (!oldest || u.utime < oldest->utime)) oldest = &u;
    }
    if (!oldest) return;
    *oldest = {area.x, area.y, area.w, area.h, mode, now + delay_ms, 1, 0};
    run_schedule(nullptr);
}

void FullUpdate() {
    flash_with("FullUpdate", hw_fullupdate);
}

void FullUpdateHQ() {
    flash_with("FullUpdateHQ", hw_fullupdate_hq);
}

void SoftUpdate() {
    soft_update_with("SoftUpdate", grey_update_in);
}

void SoftUpdateHQ() {
    soft_update_with("SoftUpdateHQ", hq_update_in);
}

void PageUpdate(int every) {
    if (!kvstate.isopen) return;
    const int pages = ++state.pages_since_flash;
    if (state.next_page_flashes || (every > 0 && pages >= every))
        FullUpdate();
    else
        SoftUpdate();
}

void CleanNextPage() {
    state.next_page_flashes = true;
}

void FineUpdate() {
    full_update_with("FineUpdate", hw_refine16);
}

int FineUpdateSupported() {
    return hw_capable16();
}

int HQUpdateSupported() {
    return hw_depth_hq() >= 4;
}

void PartialUpdate(int x, int y, int w, int h) {
    grey_update_in("PartialUpdate", {x, y, w, h});
}

void PartialUpdateBlack(int x, int y, int w, int h) {
    partial_update_in("PartialUpdateBlack", {x, y, w, h}, UPDATE_PARTIAL_BLACK);
}

void PartialUpdateBW(int x, int y, int w, int h) {
    partial_update_in("PartialUpdateBW", {x, y, w, h}, UPDATE_BW);
}

void PartialUpdateHQ(int x, int y, int w, int h) {
    hq_update_in("PartialUpdateHQ", {x, y, w, h});
}

void PartialUpdateDU4(int x, int y, int w, int h) {
    checked_update_in("PartialUpdateDU4", {x, y, w, h}, UPDATE_DU4, DYNAMIC_OFF);
}

void DynamicUpdate(int x, int y, int w, int h) {
    checked_update_in("DynamicUpdate", {x, y, w, h}, UPDATE_GREY, DYNAMIC_FAST);
}

void DynamicUpdateBW(int x, int y, int w, int h) {
    checked_update_in("DynamicUpdateBW", {x, y, w, h}, UPDATE_BW, DYNAMIC_FAST);
}

void DynamicUpdateA2(int x, int y, int w, int h) {
    if (!kvstate.isopen) return;
    clear_deferred_refresh();
    if (state.in_a2_update) {
        checked_update_in("DynamicUpdateA2", {x, y, w, h}, UPDATE_A2, DYNAMIC_PARTIAL);
        return;
    }
    Area a{x, y, w, h};
    check_update_area(&a.x, &a.y, &a.w, &a.h, nullptr);
    state.cause = "DynamicUpdateA2";
    hw_wait_luts_complete();
    do_partial_update(a.x, a.y, a.w, a.h, UPDATE_A2_ENTER, DYNAMIC_OFF);
    hw_wait_luts_complete();
    state.a2_area = a;
    state.in_a2_update = true;
}

void ExitUpdateA2() {
    if (!state.in_a2_update) return;
    hw_wait_luts_complete();
    const Area &a = state.a2_area;
    checked_update_in("ExitUpdateA2", a, UPDATE_A2_EXIT, DYNAMIC_OFF);
    hw_wait_luts_complete();
    state.in_a2_update = false;
}

int IsInA2Update() {
    return state.in_a2_update;
}

void WaitForUpdateComplete() {
    if (kvstate.isopen) hw_wait_luts_complete();
}

void Repaint() {
    SendEvent(kvstate.hproc, EVT_SHOW, 0, 0);
}

void ScheduleUpdate(int, int, int, int, int) {
    std::fputs("ScheduleUpdate() is deprecated - do not use!\n", stderr);
}
