// SPDX-License-Identifier: MIT
// When updates run: side by side where their areas are apart, one after the other where they are
// not, as a controller of e-paper does it.
#pragma once

#include <array>
#include <cstdint>

#include "kelvane/canvas.h"

namespace hw {

class Schedule {
  public:
    // Takes an update of a part of the screen in. It waits for those that touch it, and for a free
    // place among the 16 that a controller has.
    // @return when it begins
    int64_t add(const irect &area, int64_t now_us, int64_t duration_us);
    // When a place is free.
    int64_t free_us() const;
    // When all have ended.
    int64_t idle_us() const;
    void clear() { places_ = {}; }

  private:
    struct Place {
        irect area;
        int64_t end_us;
    };
    std::array<Place, 16> places_{};
};

} // namespace hw
