// SPDX-License-Identifier: MIT
// Turns white to black in the framebuffer while an area is shown, and back.
#include "runtime/night.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

#include "ground/guard.h"
#include "ground/number.h"
#include "internal.h"
#include "kelvane/updates.h"
#include "raster/screen_scope.h"

namespace night {
namespace {

using raster::Area;

constexpr int most_pictures = 64;

struct State {
    bool is_on = false;
    Areas pictures; // none overlaps another
};
State state;

Area common(const Area &a, const Area &b) {
    const int x = std::max(a.x, b.x), y = std::max(a.y, b.y);
    return {x, y, std::min(a.x + a.w, b.x + b.w) - x, std::min(a.y + a.h, b.y + b.h) - y};
}

// What is left of an area without a part of it: above, below, and at both sides.
void add_without(Areas &areas, const Area &a, const Area &part) {
    const int right = part.x + part.w, bottom = part.y + part.h;
    for (const Area &left :
         {Area{a.x, a.y, a.w, part.y - a.y}, Area{a.x, bottom, a.w, a.y + a.h - bottom},
          Area{a.x, part.y, part.x - a.x, part.h}, Area{right, part.y, a.x + a.w - right, part.h}})
        if (!left.empty()) areas.push_back(left);
}

struct Split {
    Areas inside, outside;
};

Split split(const Areas &areas, const Area &by) {
    Split parts;
    for (const Area &a : areas) {
        const Area part = common(a, by);
        if (part.empty()) {
            parts.outside.push_back(a);
            continue;
        }
        parts.inside.push_back(part);
        add_without(parts.outside, a, part);
    }
    return parts;
}

Areas with(const Areas &pictures, const Area &added) {
    Areas all = split(pictures, added).outside;
    all.push_back(added);
    return all;
}

// Within the screen, so that no sum of sides overflows.
Area on_screen(const irect &r) {
    const raster::Bounds screen{0, 0, ScreenWidth() - 1, ScreenHeight() - 1};
    return raster::clip_area(screen, r.x, r.y, r.w, r.h);
}

void invert(const Area &a) {
    if (!a.empty()) InvertArea(a.x, a.y, a.w, a.h);
}

} // namespace

void Turned::turn() const {
    if (!state.is_on || !kvstate.framebuffer) return;
    const raster::ScreenScope screen;
    invert(area_);
    for (const Area &picture : state.pictures) invert(common(picture, area_));
}

Areas take_pictures(const Area &area) {
    Split parts = split(state.pictures, area);
    state.pictures = std::move(parts.outside);
    return std::move(parts.inside);
}

void put_pictures(const Areas &areas) {
    Areas pictures = state.pictures;
    for (const Area &area : areas) pictures = with(pictures, area);
    state.pictures = std::move(pictures);
}

void reset() {
    state = {};
}

} // namespace night

void SetNightMode(int on) {
    night::state.is_on = on != 0;
}

int GetNightMode() {
    return night::state.is_on ? 1 : 0;
}

void SetNightPictures(const irect *areas, int count) {
    // Without memory there are none.
    ground::guarded([&] {
        night::Areas pictures;
        night::state.pictures.clear();
        for (int i = 0; areas && i < std::min(count, night::most_pictures); ++i) {
            const raster::Area area = night::on_screen(areas[i]);
            if (!area.empty()) pictures = night::with(pictures, area);
        }
        night::state.pictures = std::move(pictures);
    });
}
