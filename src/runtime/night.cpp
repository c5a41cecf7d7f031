// SPDX-License-Identifier: MIT
// Turns white to black in the framebuffer while an area is shown, and back.
#include "runtime/night.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>
#include <vector>

#include "ground/guard.h"
#include "ground/number.h"
#include "internal.h"
#include "kelvane/updates.h"
#include "raster/screen_scope.h"

namespace night {
namespace {

using raster::Area;

constexpr int most_pictures = 64;

using Areas = std::vector<Area>;

struct Covering {
    unsigned id;
    Area area;
    Areas pictures; // above it
};

struct State {
    bool is_on = false;
    Areas pictures; // as the application says; none overlaps another
    std::vector<Covering> covers;
    Areas shown; // pictures that nothing covers
};
State state;
unsigned last_id = 0; // a cover may outlive the state

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

Areas without(const Areas &areas, const Area &cut) {
    Areas left;
    for (const Area &a : areas) {
        const Area part = common(a, cut);
        if (part.empty())
            left.push_back(a);
        else
            add_without(left, a, part);
    }
    return left;
}

Areas with(const Areas &pictures, const Area &added) {
    Areas all = without(pictures, added);
    all.push_back(added);
    return all;
}

// Within the screen, so that no sum of sides overflows.
Area on_screen(const irect &r) {
    const raster::Bounds screen{0, 0, ScreenWidth() - 1, ScreenHeight() - 1};
    return raster::clip_area(screen, r.x, r.y, r.w, r.h);
}

// Turning twice takes no memory in between. Where there is none now, there are no pictures.
void find_shown() {
    state.shown.clear();
    ground::guarded([] {
        Areas shown = state.pictures;
        for (const Covering &cover : state.covers) {
            shown = without(shown, cover.area);
            for (const Area &picture : cover.pictures) shown = with(shown, picture);
        }
        state.shown = std::move(shown);
    });
}

// Of what an area is drawn on: the last of these covers that it lies within, or the application's
// page.
Areas &pictures_below(const Area &a, size_t covers) {
    while (covers > 0) {
        Covering &cover = state.covers[--covers];
        const Area inside = common(a, cover.area);
        if (inside.w == a.w && inside.h == a.h) return cover.pictures;
    }
    return state.pictures;
}

Areas &pictures_below(const Area &a) {
    return pictures_below(a, state.covers.size());
}

void invert(const Area &a) {
    if (!a.empty()) InvertArea(a.x, a.y, a.w, a.h);
}

} // namespace

void Turned::turn() const {
    if (!state.is_on || !kvstate.framebuffer) return;
    const raster::ScreenScope screen;
    invert(area_);
    for (const Area &picture : state.shown) invert(common(picture, area_));
}

Cover::Cover(const raster::Area &area) {
    ground::guarded([&] {
        state.covers.push_back({last_id + 1, area, {}});
        id_ = ++last_id;
    });
    find_shown();
}

void Cover::drop() {
    const unsigned id = std::exchange(id_, 0);
    if (std::erase_if(state.covers, [=](const Covering &c) { return c.id == id; }) > 0)
        find_shown();
}

void Cover::stay() {
    for (size_t i = 0; i < state.covers.size(); ++i) {
        const Covering &cover = state.covers[i];
        if (cover.id != id_) continue;
        Areas &pictures = pictures_below(cover.area, i);
        ground::guarded([&] { pictures = without(pictures, cover.area); });
    }
    drop();
}

void stays(const irect &area) {
    const Area picture = on_screen(area);
    if (picture.empty()) return;
    Areas &pictures = pictures_below(picture);
    ground::guarded([&] { pictures = with(pictures, picture); });
    find_shown();
}

void turns(const irect &area) {
    const Area turned = on_screen(area);
    Areas &pictures = pictures_below(turned);
    ground::guarded([&] { pictures = without(pictures, turned); });
    find_shown();
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
    night::state.pictures.clear();
    // Without memory there are none.
    ground::guarded([&] {
        night::Areas pictures;
        for (int i = 0; areas && i < std::min(count, night::most_pictures); ++i) {
            const raster::Area area = night::on_screen(areas[i]);
            if (!area.empty()) pictures = night::with(pictures, area);
        }
        night::state.pictures = std::move(pictures);
    });
    night::find_shown();
}
