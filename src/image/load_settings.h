// SPDX-License-Identifier: MIT
// What SetLoadImageFlags() and SetLoadFrameColor() prepare for the next load.
#pragma once

namespace image {

inline constexpr int no_frame = -1;

// The calling thread's LOAD_ bits.
int load_flags();

// After a proportional load.
void reset_load_flags();

// The frame colour, which is none afterwards.
int take_frame_color();

} // namespace image
