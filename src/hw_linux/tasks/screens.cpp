// SPDX-License-Identifier: MIT
// The operations of hw.h on framebuffers of tasks.
#include <cstring>
#include <memory>
#include <utility>
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

bool is_on_its_side(int orientation) {
    return orientation == 1 || orientation == 2;
}

// The framebuffer here has the size of the other one when it is turned the same way.
bool fits_when_turned(const ForeignFramebuffer &other) {
    if (!hw::framebuffer()) return false;
    auto [width, height] = std::pair(hw::framebuffer()->width, hw::framebuffer()->height);
    if (is_on_its_side(other.orientation) != is_on_its_side(hw_get_fb_orientation()))
        std::swap(width, height);
    return width == other.canvas.width && height == other.canvas.height;
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
    if (!active || !fits_when_turned(*active)) return 0;
    hw_set_fb_orientation(active->orientation);
    copy_rows(active->canvas, *hw::framebuffer());
    return 1;
}

void hw_update_fb_orientation(int orientation) {
    if (hw::framebuffer()) tell_geometry(*hw::framebuffer(), orientation);
}
