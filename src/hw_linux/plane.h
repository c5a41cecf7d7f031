// SPDX-License-Identifier: MIT
// A byte for each pixel of the canvas.
#pragma once

#include <cstdint>
#include <vector>

#include "hw_linux/panel.h"
#include "kelvane/canvas.h"

namespace hw {

struct Plane {
    Plane(int plane_width, int plane_height, uint8_t value)
        : width(plane_width), height(plane_height),
          bytes(static_cast<size_t>(plane_width) * static_cast<size_t>(plane_height), value) {}

    uint8_t *at(int x, int y) { return bytes.data() + int64_t{y} * width + x; }
    const uint8_t *at(int x, int y) const { return bytes.data() + int64_t{y} * width + x; }

    int width, height;
    std::vector<uint8_t> bytes;
};

// The plane as what is painted; it stays the owner.
icanvas as_canvas(Plane &plane);

// The same places of the panel, after the canvas was turned: `before` and `after` are its turns.
// What was not on the panel has this value.
Plane turned(const Plane &plane, int before, int after, uint8_t value);

} // namespace hw
