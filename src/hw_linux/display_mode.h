// SPDX-License-Identifier: MIT
// The display modes that the emulated device can be switched to.
#pragma once

#include <algorithm>
#include <iterator>

namespace hw {

struct DisplayMode {
    int width, height; // of the emulated framebuffer
};

inline constexpr DisplayMode resmode_list[] = {
    {600, 800}, {758, 1024},  {768, 1024},  {828, 1200},  {1200, 1600}, {1200, 1600}, {758, 1024},
    {480, 800}, {1072, 1448}, {1072, 1448}, {1072, 1448}, {1404, 1872}, {1404, 1872},
};
inline constexpr int display_modes = static_cast<int>(std::size(resmode_list));

inline constexpr int longest_side =
    std::max_element(std::begin(resmode_list), std::end(resmode_list),
                     [](auto a, auto b) { return a.height < b.height; }) -> height;

// How much smaller the drawing area is than the framebuffer.
enum class Zoom { full, half, two_thirds };

constexpr bool is_compress_mode(int mode) {
    return mode == 5 || mode == 6 || mode == 9 || mode == 10 || mode == 12;
}

constexpr Zoom zoom_of(int mode) {
    if (!is_compress_mode(mode)) return Zoom::full;
    return mode == 10 ? Zoom::two_thirds : Zoom::half;
}

constexpr int to_drawing_area(Zoom zoom, int length) {
    switch (zoom) {
    case Zoom::full:
        return length;
    case Zoom::half:
        return length / 2;
    case Zoom::two_thirds:
        return length * 2 / 3;
    }
    return length;
}

} // namespace hw
