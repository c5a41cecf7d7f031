// SPDX-License-Identifier: MIT
// What a person sees in the window, against the framebuffer that the application kept.
#include <algorithm>

#include <X11/keysym.h>

#include "session.h"

namespace {

struct Mode {
    int number, width, height; // of the framebuffer
    int step, kept;            // of every `step` columns and rows, so many are shown
};

struct Grey {
    const std::string &bytes;
    int width, height;
    int at(int x, int y) const {
        x = std::min(x, width - 1), y = std::min(y, height - 1);
        return static_cast<unsigned char>(bytes[static_cast<size_t>(y * width + x)]);
    }
};

// The grey of a shown pixel: itself, the mean of its 2x2 block, or a blend with the neighbours
// that are left out.
int blend(const Grey &grey, int step, int x, int y) {
    if (step == 1) return grey.at(x, y);
    const int nx = x + (step == 3 && x % 3 == 2 ? -1 : 1);
    const int ny = y + (step == 3 && y % 3 == 2 ? -1 : 1);
    const int centre = grey.at(x, y), sides = grey.at(nx, y) + grey.at(x, ny);
    if (step == 2) return (centre + sides + grey.at(nx, ny)) / 4;
    return (4 * centre + 2 * sides + grey.at(nx, ny)) / 9;
}

bool is_shown(int step, int position) {
    return step == 1 || (step == 2 ? position % 2 == 0 : position % 3 != 1);
}

std::vector<uint32_t> expected_pixels(const Grey &grey, const Mode &mode, int orientation) {
    const int width = mode.width * mode.kept / mode.step;
    const int height = mode.height * mode.kept / mode.step;
    std::vector<uint32_t> pixels(static_cast<size_t>(width) * height, 0xFFFFFF);
    const int w = grey.width, h = grey.height;
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
            if (!is_shown(mode.step, x) || !is_shown(mode.step, y)) continue;
            const int turned[4][2] = {{x, y}, {h - y, x}, {y, w - x}, {w - x, h - y}};
            const int px = turned[orientation][0] * mode.kept / mode.step;
            const int py = turned[orientation][1] * mode.kept / mode.step;
            if (px >= width || py >= height) continue;
            pixels[static_cast<size_t>(py) * width + px] =
                static_cast<uint32_t>(blend(grey, mode.step, x, y)) * 0x010101;
        }
    return pixels;
}

} // namespace

TEST_F(WindowTest, TheWindowShowsTheFramebuffer) {
    const Mode modes[] = {{0, 600, 800, 1, 1}, {6, 758, 1024, 2, 1}, {10, 1072, 1448, 3, 2}};
    for (const Mode &mode : modes)
        for (int orientation = 0; orientation < 4; ++orientation) {
            const std::string number = std::to_string(mode.number);
            const std::string turn = std::to_string(orientation);
            SCOPED_TRACE("mode " + number + " orientation " + turn);
            start({"seed=" + number + turn, "orientation=" + turn}, "emu_resmode=" + number + "\n");
            const bool sideways = orientation == 1 || orientation == 2;
            const std::string bytes = sandbox_.read("framebuffer");
            ASSERT_EQ(bytes.size(), static_cast<size_t>(mode.width) * mode.height);
            const auto expected = expected_pixels(
                {bytes, sideways ? mode.height : mode.width, sideways ? mode.width : mode.height},
                mode, orientation);
            desktop::Image seen;
            EXPECT_TRUE(
                desktop::await([&] { return (seen = server_.grab(window_)).pixels == expected; }));
            EXPECT_EQ(seen.width, mode.width * mode.kept / mode.step);
        }
}

// On a panel of 16 greys the noise is coarser.
TEST_F(WindowTest, AKeyShowsThePanelAsEpaperAndBack) {
    start({"seed=7"});
    const std::string bytes = sandbox_.read("framebuffer");
    const auto at_once = expected_pixels({bytes, 600, 800}, {0, 600, 800, 1, 1}, 0);
    auto epaper = at_once;
    for (uint32_t &pixel : epaper) pixel = (pixel & 0xF0F0F0) | ((pixel & 0xF0F0F0) >> 4);
    const auto shows = [&](const std::vector<uint32_t> &pixels) {
        return desktop::await([&] { return server_.grab(window_).pixels == pixels; });
    };
    EXPECT_TRUE(shows(at_once));
    server_.stroke(XK_F9);
    EXPECT_TRUE(shows(epaper));
    server_.stroke(XK_F9);
    EXPECT_TRUE(shows(at_once));
    server_.stroke(XK_Left);
    EXPECT_EQ(until("26 19 0"), (Lines{"25 19 0", "26 19 0"})) << "nothing was heard of F9";
}
