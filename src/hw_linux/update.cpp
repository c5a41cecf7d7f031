// SPDX-License-Identifier: MIT
// Shows areas of the framebuffer on the emulated panel.
#include <cstdint>
#include <utility>

#include "hw.h"
#include "hw_linux/device.h"
#include "hw_linux/screen.h"
#include "hw_linux/shown.h"
#include "hw_linux/tasks/session.h"
#include "hw_linux/trace.h"
#include "kelvane/updates.h"

namespace {

constexpr int64_t settle_us = 10000;
constexpr int64_t refine_us = 100000;

int dynamic_switch = 0;
const char *update_cause = "";

// False when the application closed the device while the toolkit was let work.
bool present() {
    const hw::DeviceOps *device = hw::device();
    device->present();
    device->pump();
    if (!hw::device()) return false;
    device->pause(settle_us);
    return true;
}

enum class Flash { no, yes };

bool paint(const irect &area, Flash flash) {
    hw::paint_update(area);
    if (!present()) return false;
    if (flash == Flash::no) return true;
    hw::repeat_update();
    return present();
}

// A task that is not in front draws in its framebuffer and shows nothing.
int show(hw::UpdateKind kind, const irect &area, int mode, Flash flash) {
    const char *cause = std::exchange(update_cause, "");
    if (!hw::tasks::is_in_front()) return hw::emulated().update_answer;
    hw::UpdateRecord update{
        hw::number_update(), kind, cause, hw_boottime_ms(), area.x, area.y, area.w, area.h, mode,
        dynamic_switch};
    const bool is_shown_later = hw::begin_update(update);
    if (!hw::device() || !paint(area, flash)) return 0;
    hw::tasks::note_shown();
    hw::trace_update(update);
    if (!is_shown_later) hw::save_frame(update.seq);
    return hw::emulated().update_answer;
}

irect whole_screen() {
    const icanvas *canvas = hw::framebuffer();
    return {0, 0, canvas->width, canvas->height, 0};
}

bool is_flashing(int mode) {
    return mode == UPDATE_A2_ENTER || mode == UPDATE_A2_EXIT;
}

} // namespace

void hw::set_update_cause(const char *cause) {
    update_cause = cause;
}

int hw_update(int x, int y, int w, int h, int mode) {
    if (!hw::device() || x < 0 || y < 0) return 0;
    return show(hw::UpdateKind::partial, {x, y, w, h, 0}, mode,
                is_flashing(mode) ? Flash::yes : Flash::no);
}

int hw_fullupdate() {
    if (!hw::device()) return 0;
    return show(hw::UpdateKind::full, whole_screen(), UPDATE_GREY, Flash::yes);
}

int hw_fullupdate_hq() {
    if (!hw::device()) return 0;
    return show(hw::UpdateKind::full_hq, whole_screen(), UPDATE_GREY, Flash::yes);
}

int hw_refine16() {
    if (!hw::device()) return 0;
    hw::device()->pause(refine_us);
    return show(hw::UpdateKind::refine, whole_screen(), UPDATE_GREY, Flash::no);
}

int hw_capable16() {
    return 1;
}

void hw_override_update(int) {}

int hw_switch_dynamic(int dynamic) {
    const int old = dynamic_switch;
    dynamic_switch = dynamic;
    return old;
}

void hw_suspend_display() {}

void hw_resume_display() {}

int hw_einkversion() {
    return 0;
}

void hw_wait_luts_complete() {
    hw::wait_for_panel();
}

int hw_update_busy() {
    return hw::panel_is_busy();
}

int hw_writelogo(int) {
    return 0;
}

int hw_restorelogo() {
    return 0;
}
