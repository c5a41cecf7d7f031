// SPDX-License-Identifier: MIT
// The operations of hw.h on framebuffers of tasks.
#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

#include "ground/guard.h"
#include "hw.h"
#include "hw_linux/screen.h"
#include "hw_linux/tasks/session.h"

using namespace hw::tasks;

namespace {

std::vector<std::unique_ptr<ForeignFramebuffer>> handed_out;

std::unique_ptr<ForeignFramebuffer> look_at(int task) {
    return is_supported() ? framebuffer_of(task) : nullptr;
}

// The same pixels, whichever way they are turned.
bool is_of_our_size(const icanvas &other) {
    const icanvas *own = hw::framebuffer();
    return own && std::minmax(own->width, own->height) == std::minmax(other.width, other.height);
}

// A task that has just started is the active one already, and means the one before it.
std::unique_ptr<ForeignFramebuffer> framebuffer_to_copy() {
    int before = -1;
    if (!is_in_front() || has_shown() || !hw_task_previous_instack(&before, nullptr))
        return active_framebuffer();
    return look_at(before);
}

void copy_rows(const icanvas &from, const icanvas &to) {
    const auto row = [](const icanvas &c, int y) { return c.addr + ptrdiff_t{y} * c.scanline; };
    for (int y = 0; y < to.height; ++y)
        std::memcpy(row(to, y), row(from, y), static_cast<size_t>(to.width));
}

} // namespace

icanvas *hw_gettaskfb(int task) {
    auto framebuffer = look_at(task);
    return ground::guarded(nullptr, [&]() -> icanvas * {
        if (!framebuffer) return nullptr;
        handed_out.push_back(std::move(framebuffer));
        return &handed_out.back()->canvas;
    });
}

int hw_gettaskfbinfo(int task, int *w, int *h, int *depth) {
    const auto framebuffer = look_at(task);
    const icanvas canvas = framebuffer ? framebuffer->canvas : icanvas{};
    if (w) *w = canvas.width;
    if (h) *h = canvas.height;
    if (depth) *depth = canvas.depth;
    return framebuffer != nullptr;
}

void hw_releasetaskfb(icanvas *canvas) {
    std::erase_if(handed_out, [=](const auto &f) { return &f->canvas == canvas; });
}

int hw_copyactivefb(void) {
    const auto active = framebuffer_to_copy();
    if (!active || !is_of_our_size(active->canvas)) return 0;
    hw_set_fb_orientation(active->orientation);
    const icanvas &own = *hw::framebuffer();
    if (own.width != active->canvas.width) return 0;
    copy_rows(active->canvas, own);
    return 1;
}

void hw_update_fb_orientation(int orientation) {
    if (hw::framebuffer()) tell_geometry(*hw::framebuffer(), orientation);
}
