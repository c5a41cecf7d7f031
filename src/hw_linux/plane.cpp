// SPDX-License-Identifier: MIT
// Turns planes as the canvas turns.
#include "hw_linux/plane.h"

#include <utility>

namespace hw {
namespace {

icanvas sized(int width, int height, uint8_t *bytes) {
    return {width, height, width, 8, 0, width - 1, 0, height - 1, bytes};
}

bool lies(int turn) {
    return turn == 1 || turn == 2;
}

} // namespace

icanvas as_canvas(Plane &plane) {
    return sized(plane.width, plane.height, plane.bytes.data());
}

Plane turned(const Plane &plane, int before, int after, uint8_t value) {
    int width = plane.width, height = plane.height;
    if (lies(before) != lies(after)) std::swap(width, height);
    Plane result(width, height, value);
    const PanelView from{Zoom::full, before, 0}, to{Zoom::full, after, 0};
    const icanvas old = sized(plane.width, plane.height, nullptr);
    const icanvas now = sized(width, height, nullptr);
    const auto former_place = [&](int x, int y) {
        return from_panel(from, old, to_panel(to, now, {x, y}));
    };
    for (int y = 0; y < height; ++y) {
        Point place = former_place(0, y);
        const Point second = former_place(1, y), step{second.x - place.x, second.y - place.y};
        for (int x = 0; x < width; ++x, place.x += step.x, place.y += step.y)
            if (place.x >= 0 && place.y >= 0 && place.x < old.width && place.y < old.height)
                *result.at(x, y) = *plane.at(static_cast<int>(place.x), static_cast<int>(place.y));
    }
    return result;
}

} // namespace hw
