// SPDX-License-Identifier: MIT
// Draws the theme's lock near the upper right corner.
#include "keylock/keylock.h"

#include <optional>

#include "kelvane/events.h"
#include "modal/saved_area.h"
#include "raster/screen_scope.h"
#include "theme/parameters.h"

namespace {

constexpr int icon_top = 32, icon_right_margin = 32;

std::optional<theme::Picture> icon;
modal::SavedArea under_icon;

// Updates are cheapest at columns that are multiples of 16.
int icon_left() {
    return (ScreenWidth() - icon->width() - icon_right_margin) & ~15;
}

} // namespace

namespace keylock {

bool show_icon() {
    if (!icon) icon.emplace("keylock");
    const irect place{icon_left(), icon_top, icon->width(), icon->height(), 0};
    if (!*icon || !under_icon.save(place)) return false;
    const raster::ScreenScope screen;
    DrawBitmap(place.x, place.y, icon->get());
    return true;
}

void restore_under_icon() {
    under_icon.restore();
}

void reset() {
    icon.reset();
    under_icon.drop();
}

} // namespace keylock
