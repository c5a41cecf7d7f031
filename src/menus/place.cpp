// SPDX-License-Identifier: MIT
// Chooses sides and keeps menus on the screen.
#include "menus/place.h"

#include <algorithm>

#include "chrome/panel.h"
#include "kelvane/events.h"
#include "kelvane/frames.h"
#include "kelvane/languages.h"
#include "raster/box.h"

namespace menus {
namespace {

constexpr int margin = 8, turned_margin = 14;
constexpr int turned = 3;

int fit(int64_t at, int length, int start, int room) {
    const int64_t last = int64_t{start} + std::max(room - length, 0);
    return static_cast<int>(std::clamp<int64_t>(at, start, last));
}

int opposite(int side) {
    switch (side) {
    case MENU_SIDE_ABOVE:
        return MENU_SIDE_BELOW;
    case MENU_SIDE_BELOW:
        return MENU_SIDE_ABOVE;
    case MENU_SIDE_RIGHT:
        return MENU_SIDE_LEFT;
    default:
        return MENU_SIDE_RIGHT;
    }
}

// The room of the area beyond that side of the item.
int64_t room_at(int side, const irect &item, const irect &area) {
    switch (side) {
    case MENU_SIDE_ABOVE:
        return int64_t{item.y} - area.y;
    case MENU_SIDE_BELOW:
        return int64_t{area.y} + area.h - item.y - item.h;
    case MENU_SIDE_RIGHT:
        return int64_t{area.x} + area.w - item.x - item.w;
    default:
        return int64_t{item.x} - area.x;
    }
}

bool is_sideways(int side) {
    return side == MENU_SIDE_LEFT || side == MENU_SIDE_RIGHT;
}

int automatic_side(const irect &item, const irect &area) {
    const int64_t middle = int64_t{item.y} + item.h / 2;
    return middle < int64_t{area.y} + area.h / 2 ? MENU_SIDE_BELOW : MENU_SIDE_ABOVE;
}

// The wanted side, unless only the opposite one has room enough.
int choose_side(const Anchor &anchor, int w, int h, const irect &area) {
    const bool known = anchor.side >= MENU_SIDE_ABOVE && anchor.side <= MENU_SIDE_LEFT;
    const int side = known ? anchor.side : automatic_side(anchor.item, area);
    const int64_t needed = int64_t{is_sideways(side) ? w : h} - anchor.overlap;
    const bool fits = room_at(side, anchor.item, area) >= needed;
    return !fits && room_at(opposite(side), anchor.item, area) >= needed ? opposite(side) : side;
}

irect beside(const Anchor &anchor, int w, int h, const irect &area) {
    const int side = choose_side(anchor, w, h, area);
    const irect &item = anchor.item;
    const int64_t overlap = anchor.overlap;
    int64_t x = item.x + (int64_t{item.w} - w) / 2, y = item.y;
    if (side == MENU_SIDE_ABOVE) y = int64_t{item.y} - h + overlap;
    if (side == MENU_SIDE_BELOW) y = int64_t{item.y} + item.h - overlap;
    if (side == MENU_SIDE_LEFT) x = int64_t{item.x} - w + overlap;
    if (side == MENU_SIDE_RIGHT) x = int64_t{item.x} + item.w - overlap;
    return {fit(x, w, area.x, area.w), fit(y, h, area.y, area.h), w, h, side};
}

} // namespace

irect page_area() {
    const int top = GetCaptionHeight();
    return {0, top, ScreenWidth(), std::max(ScreenHeight() - PanelHeight() - top, 0), 0};
}

irect menu_area() {
    const int edge = GetOrientation() == turned ? turned_margin : margin;
    const irect page = page_area();
    return {edge, page.y + edge, std::max(page.w - 2 * edge, 1), std::max(page.h - 2 * edge, 1), 0};
}

irect place(const Anchor &anchor, int w, int h, const irect &area) {
    if (anchor.by != PlacedBy::corner) return beside(anchor, w, h, area);
    return {fit(anchor.x, w, area.x, area.w), fit(anchor.y, h, area.y, area.h), w, h, 0};
}

irect place_pointer(const irect &placed, const irect &item, const Pointer &pointer) {
    const bool below = placed.flags == MENU_SIDE_BELOW && placed.y >= item.y + item.h;
    const bool above = placed.flags == MENU_SIDE_ABOVE && placed.y + placed.h <= item.y;
    if (!below && !above) return {};
    const int base = pointer.border + 1, corner = pointer.radius + pointer.border;
    const int first = placed.x + corner;
    const int last = std::max(placed.x + placed.w - corner - pointer.w, first);
    const int middle = raster::saturated(item.x + (int64_t{item.w} - pointer.w) / 2);
    const int y = below ? placed.y + base - pointer.h : placed.y + placed.h - base;
    return {std::clamp(middle, first, last), y, pointer.w, pointer.h, 0};
}

} // namespace menus

void CalculatePosition(irect *item, irect *placement, irect *result) {
    if (!item || !placement || !result) return;
    const menus::Anchor anchor{
        .by = menus::PlacedBy::item, .item = *item, .side = placement->flags};
    *result = menus::place(anchor, placement->w, placement->h, menus::menu_area());
}
