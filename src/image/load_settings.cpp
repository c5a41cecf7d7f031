// SPDX-License-Identifier: MIT
// Keeps the settings of the next load for each thread.
#include "image/load_settings.h"

#include <utility>

#include "kelvane/pictures.h"

namespace image {

namespace {

thread_local int flags;
int frame_color = no_frame;

} // namespace

int load_flags() {
    return flags;
}

void reset_load_flags() {
    flags = 0;
}

int take_frame_color() {
    return std::exchange(frame_color, no_frame);
}

} // namespace image

void SetLoadImageFlags(int flags) {
    image::flags = flags;
}

void SetLoadFrameColor(int color) {
    image::frame_color = color;
}
