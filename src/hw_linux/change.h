// SPDX-License-Identifier: MIT
// What an update brings onto the panel, in numbers.
#pragma once

#include <cstdint>

#include "kelvane/canvas.h"

namespace hw {

// The greys that a waveform of so many levels, 2, 4 or 16, shows for these: their highest one, two
// or four bits name the level, as a controller reads them, and the levels stand evenly from 0 to
// 255.
void to_levels(const uint8_t *row, uint8_t *to, int count, int levels);

// Compares rows of an area with what was shown there before, in the panel's 16 greys.
class Change {
  public:
    // `former` and `now` are `count` pixels from (x, y) on, the same columns each time.
    void add_row(int x, int y, const uint8_t *former, const uint8_t *now, int count);

    int pixels() const { return pixels_; }
    // The smallest area around them.
    const irect &area() const { return area_; }

  private:
    int pixels_ = 0;
    irect area_{};
};

// Counts how many of the panel's greys stand in rows.
class Greys {
  public:
    void add_row(const uint8_t *row, int count);
    int count() const;

  private:
    unsigned seen_ = 0; // a bit for each
};

} // namespace hw
