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

constexpr Zoom zoom_of(int mode) {
    switch (mode) {
    case 5:
    case 6:
    case 9:
    case 12:
        return Zoom::half;
    case 10:
        return Zoom::two_thirds;
    default:
        return Zoom::full;
    }
}

constexpr bool is_compress_mode(int mode) {
    return zoom_of(mode) != Zoom::full;
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
