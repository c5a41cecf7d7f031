// SPDX-License-Identifier: MIT
#include "chrome/keylock.h"

#include <optional>

#include "chrome/chrome.h"
#include "kelvane/bitmaps.h"
#include "kelvane/events.h"
#include "raster/bitmap.h"
#include "theme/parameters.h"

namespace {

std::optional<theme::Picture> icon;

constexpr int icon_top = 32, icon_right_margin = 32;
raster::BitmapPtr under_icon;

// Updates are cheapest at columns that are multiples of 16.
int icon_left() {
    return (ScreenWidth() - icon->width() - icon_right_margin) & ~15;
}

// The whole screen is drawn on while it lives, whatever canvas is current and whatever its clip.
class ScreenScope {
  public:
    ScreenScope() : canvas_(GetCanvas()), screen_(*kvstate.framebuffer) {
        SetCanvas(nullptr);
        SetClip(0, 0, screen_.width, screen_.height);
    }
    ~ScreenScope() {
        *kvstate.framebuffer = screen_;
        SetCanvas(canvas_);
    }
    ScreenScope(const ScreenScope &) = delete;
    ScreenScope &operator=(const ScreenScope &) = delete;

  private:
    icanvas *canvas_;
    icanvas screen_;
};

} // namespace

namespace chrome {

void reset_keylock() {
    icon.reset();
    under_icon.reset();
}

bool show_keylock_icon() {
    if (!icon) icon.emplace("keylock");
    if (!*icon || !kvstate.framebuffer) return false;
    const ScreenScope screen;
    under_icon.reset(BitmapFromScreen(icon_left(), icon_top, icon->width(), icon->height()));
    if (!under_icon) return false;
    DrawBitmap(icon_left(), icon_top, icon->get());
    return true;
}

void restore_under_keylock_icon() {
    if (!under_icon || !kvstate.framebuffer) return;
    const ScreenScope screen;
    DrawBitmap(icon_left(), icon_top, under_icon.get());
    under_icon.reset();
}

} // namespace chrome
