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
};

struct Picture {
    unsigned cover; // the one that it is drawn on; 0: on the application's page
    Area area;
};
using Pictures = std::vector<Picture>;

struct State {
    bool is_on = false;
    Pictures pictures; // none overlaps another one on the same cover
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

unsigned top_cover() {
    return state.covers.empty() ? 0 : state.covers.back().id;
}

// Those on other covers stay as they are.
Pictures without(const Pictures &pictures, const Area &cut, unsigned cover) {
    Pictures left;
    for (const Picture &p : pictures)
        for (const Area &a : p.cover == cover ? without(Areas{p.area}, cut) : Areas{p.area})
            left.push_back({p.cover, a});
    return left;
}

void add(const Area &area, unsigned cover) {
    if (area.empty()) return;
    Pictures all = without(state.pictures, area, cover);
    all.push_back({cover, area});
    state.pictures = std::move(all);
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
        Areas shown;
        for (const Picture &picture : state.pictures) {
            Areas rest{picture.area};
            for (const Covering &cover : state.covers)
                if (cover.id > picture.cover) rest = without(rest, cover.area);
            shown.insert(shown.end(), rest.begin(), rest.end());
        }
        state.shown = std::move(shown);
    });
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
        state.covers.push_back({last_id + 1, area});
        id_ = ++last_id;
    });
    find_shown();
}

void Cover::drop() {
    const unsigned id = std::exchange(id_, 0);
    if (id == 0) return;
    std::erase_if(state.pictures, [=](const Picture &p) { return p.cover == id; });
    if (std::erase_if(state.covers, [=](const Covering &c) { return c.id == id; }) > 0)
        find_shown();
}

void Cover::stay() {
    for (const Covering &cover : state.covers)
        if (cover.id == id_)
            ground::guarded([&] { state.pictures = without(state.pictures, cover.area, 0); });
    drop();
}

void add_picture(const irect &r) {
    ground::guarded([&] { add(on_screen(r), top_cover()); });
    find_shown();
}

void remove_pictures(const irect &place) {
    ground::guarded(
        [&] { state.pictures = without(state.pictures, on_screen(place), top_cover()); });
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
    std::erase_if(night::state.pictures, [](const auto &p) { return p.cover == 0; });
    // Without memory there are none.
    ground::guarded([&] {
        for (int i = 0; areas && i < std::min(count, night::most_pictures); ++i)
            night::add(night::on_screen(areas[i]), 0);
    });
    night::find_shown();
}
