// SPDX-License-Identifier: MIT
// What the panel shows of the framebuffer, in every display mode, orientation and position.
#include "hw_linux/panel.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "hw.h"
#include "hw_linux/clock.h"
#include "hw_linux/screen.h"
#include "internal.h"
#include "kelvane/updates.h"
#include "support/tempdir.h"

namespace {

using hw::PanelView;
using hw::PixelBuffer;
using hw::Zoom;

constexpr uint8_t untouched = 0x5A;

struct Buffer {
    Buffer(int width, int height)
        : bytes(static_cast<size_t>(width * 4 + 12) * height, untouched), view{bytes.data(), width,
                                                                               height,
                                                                               width * 4 + 12} {}
    std::vector<uint8_t> bytes;
    PixelBuffer view;
};

// The definition, pixel by pixel.
class Definition {
  public:
    Definition(const PanelView &view, const icanvas &canvas, const PixelBuffer &pixels)
        : v_(view), c_(canvas), out_(pixels) {}

    void paint(int64_t left, int64_t top, int64_t right, int64_t bottom) const {
        for (int64_t y = top; y < bottom; ++y)
            for (int64_t x = left; x < right; ++x) pixel(x, y);
    }

  private:
    unsigned at(int64_t x, int64_t y) const {
        x = std::min<int64_t>(x, c_.width - 1);
        y = std::min<int64_t>(y, c_.height - 1);
        return c_.addr[y * c_.scanline + x];
    }

    void pixel(int64_t x, int64_t y) const {
        if (v_.zoom == Zoom::full) return put(x, y, at(x, y));
        if (v_.zoom == Zoom::half) {
            x &= ~1;
            y &= ~1;
            return put(x, y, (at(x, y) + at(x + 1, y) + at(x, y + 1) + at(x + 1, y + 1)) / 4);
        }
        if (x % 3 == 1 || y % 3 == 1) return;
        const int64_t h = x % 3 == 0 ? x + 1 : x - 1, v = y % 3 == 0 ? y + 1 : y - 1;
        put(x, y, (4 * at(x, y) + 2 * at(h, y) + 2 * at(x, v) + at(h, v)) / 9);
    }

    int64_t zoomed(int64_t n) const {
        if (v_.zoom == Zoom::half) return n / 2;
        return v_.zoom == Zoom::two_thirds ? n * 2 / 3 : n;
    }

    void put(int64_t x, int64_t y, unsigned grey) const {
        y = (y + v_.shift_rows) % c_.height;
        const int64_t px[] = {x, c_.height - y, y, c_.width - x};
        const int64_t py[] = {y, x, c_.width - x, c_.height - y};
        const int64_t to_x = px[v_.turn], to_y = py[v_.turn];
        if (to_x < 0 || to_y < 0 || zoomed(to_x) >= out_.width || zoomed(to_y) >= out_.height)
            return;
        uint8_t *rgba = out_.data + zoomed(to_y) * out_.stride + zoomed(to_x) * 4;
        rgba[0] = rgba[1] = rgba[2] = static_cast<uint8_t>(grey);
        rgba[3] = 255;
    }

    PanelView v_;
    icanvas c_;
    PixelBuffer out_;
};

class RandomCanvas {
  public:
    RandomCanvas(std::mt19937 &random, int width, int height)
        : bytes_(static_cast<size_t>(width) * height) {
        for (uint8_t &byte : bytes_) byte = static_cast<uint8_t>(random());
        canvas = {width, height, width, 8, 0, width - 1, 0, height - 1, bytes_.data()};
    }
    icanvas canvas{};

  private:
    std::vector<uint8_t> bytes_;
};

TEST(Panel, PaintsWhatTheDefinitionSays) {
    std::mt19937 random(1);
    const auto below = [&](int bound) { return static_cast<int>(random() % bound); };
    for (int round = 0; round < 4000; ++round) {
        const int width = 2 + 2 * below(40), height = 2 + 2 * below(30);
        const PanelView view{static_cast<Zoom>(below(3)), below(4),
                             below(3) ? 0 : below(std::min(9, height))};
        RandomCanvas source(random, width, height);
        const bool sideways = view.turn == 1 || view.turn == 2;
        Buffer fast(to_drawing_area(view.zoom, sideways ? height : width),
                    to_drawing_area(view.zoom, sideways ? width : height));
        Buffer plain(fast.view.width, fast.view.height);
        const int x = below(width + 20) - 10, y = below(height + 20) - 10;
        const int w = below(width + 20) - 5, h = below(height + 20) - 5;
        hw::eink_waveform(view, source.canvas, {x, y, w, h, 0}, fast.view);
        Definition(view, source.canvas, plain.view)
            .paint(std::max(x, 0), std::max(y, 0), std::min(x + w, width), std::min(y + h, height));
        ASSERT_EQ(fast.bytes, plain.bytes)
            << round << " zoom " << static_cast<int>(view.zoom) << " turn " << view.turn;
    }
}

TEST(Panel, KnownPixels) {
    const struct {
        PanelView view;
        std::vector<uint8_t> greys; // of a square
        std::vector<uint8_t> shown; // of 2 by 2 pixels
    } cases[] = {
        {{Zoom::full, 0, 0}, {1, 2, 3, 4}, {1, 2, 3, 4}},
        {{Zoom::full, 1, 0}, {1, 2, 3, 4}, {untouched, 3, untouched, 4}},
        {{Zoom::full, 2, 0}, {1, 2, 3, 4}, {untouched, untouched, 2, 4}},
        {{Zoom::full, 3, 0}, {1, 2, 3, 4}, {untouched, untouched, untouched, 4}},
        {{Zoom::half, 0, 0}, {10, 20, 31, 41}, {25, untouched, untouched, untouched}},
        {{Zoom::two_thirds, 0, 0}, {9, 18, 27, 36, 45, 54, 63, 72, 81}, {21, 33, 57, 69}},
    };
    for (auto c : cases) {
        const int side = c.greys.size() == 9 ? 3 : 2;
        icanvas canvas{side, side, side, 8, 0, side - 1, 0, side - 1, c.greys.data()};
        Buffer buffer(2, 2);
        hw::eink_waveform(c.view, canvas, {0, 0, side, side, 0}, buffer.view);
        std::vector<uint8_t> shown;
        for (const int at : {0, 4, 20, 24}) shown.push_back(buffer.bytes[at]);
        EXPECT_EQ(shown, c.shown) << static_cast<int>(c.view.zoom) << ' ' << c.view.turn;
    }
}

TEST(Panel, AbsurdAreasPaintWhatLiesInside) {
    std::mt19937 random(2);
    RandomCanvas source(random, 30, 20);
    const PanelView view{Zoom::full, 0, 0};
    const irect areas[] = {{INT_MIN, 0, INT_MAX, 5, 0},
                           {INT_MAX, INT_MAX, INT_MAX, INT_MAX, 0},
                           {0, 0, INT_MIN, INT_MIN, 0},
                           {-5, -5, 5, 40, 0},
                           {30, 0, 1, 1, 0},
                           {3, 3, 0, 9, 0}};
    Buffer buffer(30, 20);
    const std::vector<uint8_t> before = buffer.bytes;
    for (const irect &area : areas) hw::eink_waveform(view, source.canvas, area, buffer.view);
    EXPECT_EQ(buffer.bytes, before);
    Buffer whole(30, 20);
    hw::eink_waveform(view, source.canvas, {0, 0, INT_MAX, INT_MAX, 0}, whole.view);
    hw::eink_waveform(view, source.canvas, {INT_MIN, -1, INT_MAX, 21, 0}, buffer.view);
    EXPECT_EQ(buffer.bytes, before);
    hw::eink_waveform(view, source.canvas, {-1000, -1000, INT_MAX, INT_MAX, 0}, buffer.view);
    EXPECT_EQ(buffer.bytes, whole.bytes);
}

class Device : public testing::Test {
  protected:
    Device() {
        setenv("KELVANE_DEVICE", "headless", 1);
        hw::set_horizon(0); // the clock is ours
    }
    ~Device() override { hw_close(); }
    static icanvas &open(const std::string &config) {
        hw_close();
        write_file("system/config/global.cfg", config);
        EXPECT_EQ(hw_init(), 1);
        return *hw_getframebuffer();
    }
    TempDir dir_;
};

TEST_F(Device, DisplayModesGiveTheSizes) {
    const struct {
        const char *config;
        int width, height, area_width, area_height;
    } cases[] = {
        {"", 600, 800, 600, 800},
        {"emu_resmode=0\n", 600, 800, 600, 800},
        {"emu_resmode=1\n", 758, 1024, 758, 1024},
        {"emu_resmode=5\n", 1200, 1600, 600, 800},
        {"emu_resmode=6\n", 758, 1024, 379, 512},
        {"emu_resmode=9\n", 1072, 1448, 536, 724},
        {"emu_resmode=10\n", 1072, 1448, 714, 965},
        {"emu_resmode=12\n", 1404, 1872, 702, 936},
        {"emu_resmode=13\n", 600, 800, 600, 800},
        {"emu_resmode=-2\n", 600, 800, 600, 800},
        {"emu_resmode=10\norientation=2\n", 1448, 1072, 965, 714},
        {"emu_resmode=7\norientation=3\n", 800, 480, 800, 480},
        {"emu_resmode=7\norientation=4\n", 480, 800, 480, 800},
        {"emu_resmode=7\norientation=5\n", 480, 800, 480, 800},
    };
    for (const auto &c : cases) {
        const icanvas &canvas = open(c.config);
        const PixelBuffer pixels = hw::device()->pixels();
        int w = 0, h = 0;
        hw_displaysize(&w, &h);
        hw_displaysize(nullptr, nullptr);
        EXPECT_EQ(std::tie(canvas.width, canvas.height), std::tie(c.width, c.height)) << c.config;
        EXPECT_EQ(std::tie(w, h), std::tie(c.width, c.height)) << c.config;
        EXPECT_EQ(std::tie(pixels.width, pixels.height), std::tie(c.area_width, c.area_height));
        EXPECT_EQ(canvas.depth, 8);
        EXPECT_EQ(canvas.scanline, canvas.width);
        const std::vector<uint8_t> white(static_cast<size_t>(c.width) * (c.height + 16), 255);
        EXPECT_EQ(std::memcmp(canvas.addr, white.data(), white.size()), 0) << "spare rows too";
    }
}

TEST_F(Device, TurningSwapsTheSidesAndOpensTheClip) {
    for (int position = -1; position < 4; ++position) {
        icanvas &canvas = open("orientation=" + std::to_string(position + 1) + "\n");
        for (int orientation : {1, 0, 3, 2, 0, 7, -1}) {
            canvas.clipx1 = 17;
            canvas.clipy2 = 3;
            hw_set_fb_orientation(orientation);
            if (orientation < 0 || orientation > 3) {
                EXPECT_EQ(hw_get_fb_orientation(), 0);
                EXPECT_EQ(canvas.clipx1, 17);
                continue;
            }
            const bool sideways = orientation == 1 || orientation == 2;
            EXPECT_EQ(canvas.width, sideways ? 800 : 600) << position << orientation;
            EXPECT_EQ(canvas.height, sideways ? 600 : 800);
            EXPECT_EQ(canvas.scanline, canvas.width);
            EXPECT_EQ(canvas.clipx1, 0);
            EXPECT_EQ(canvas.clipy1, 0);
            EXPECT_EQ(canvas.clipx2, canvas.width - 1);
            EXPECT_EQ(canvas.clipy2, canvas.height - 1);
        }
    }
}

TEST_F(Device, TurningLeavesNothingOfTheFormerPicture) {
    icanvas &canvas = open("");
    for (int orientation : {1, 2, 3}) {
        std::memset(canvas.addr, 0, static_cast<size_t>(canvas.width) * canvas.height);
        hw_fullupdate();
        hw_set_fb_orientation(orientation);
        std::memset(canvas.addr, 255, static_cast<size_t>(canvas.width) * canvas.height);
        hw_fullupdate();
        const PixelBuffer p = hw::device()->pixels();
        EXPECT_EQ(std::count(p.data, p.data + int64_t{p.height} * p.stride, 0), 0) << orientation;
        hw_set_fb_orientation(0);
    }
}

// Where a single black pixel of the canvas shows up; {-1, -1} when it does not.
hw::Point shown_at(icanvas &canvas, int x, int y) {
    uint8_t &pixel = canvas.addr[y * canvas.scanline + x];
    pixel = 0;
    hw_update(0, 0, canvas.width, canvas.height, UPDATE_GREY);
    pixel = 255;
    const PixelBuffer pixels = hw::device()->pixels();
    for (int py = 0; py < pixels.height; ++py)
        for (int px = 0; px < pixels.width; ++px)
            if (pixels.data[py * pixels.stride + px * 4] == 0) {
                pixels.data[py * pixels.stride + px * 4] = 255;
                return {px, py};
            }
    return {-1, -1};
}

TEST_F(Device, ATouchLandsOnThePixelThatIsShownThere) {
    for (int position = -1; position < 4; ++position) {
        icanvas &canvas = open("orientation=" + std::to_string(position + 1) + "\n");
        for (int orientation = 0; orientation < 4; ++orientation) {
            hw_set_fb_orientation(orientation);
            for (int shift : {0, 1}) {
                kvstate.panel_position = shift;
                hw::hooks.panel_height = [] { return 30; };
                const hw::Point at = shown_at(canvas, 123, 45);
                int x = static_cast<int>(at.x), y = static_cast<int>(at.y);
                EXPECT_TRUE(hw::panel_to_canvas(x, y));
                EXPECT_EQ(std::pair(x, y), std::pair(123, 45)) << position << orientation << shift;
                EXPECT_TRUE(position != orientation || (at.x == 123 && at.y == 45 + 30 * shift));
            }
        }
    }
    kvstate.panel_position = 0;
    for (int far : {INT_MIN, -1, 800, INT_MAX}) {
        int x = far, y = far;
        EXPECT_FALSE(hw::panel_to_canvas(x, y));
        EXPECT_EQ(x, far);
    }
}

TEST_F(Device, UpdatesPaintTheAreaAndTakeTheirTime) {
    icanvas &canvas = open("");
    const auto grey_at = [](int x, int y) {
        const PixelBuffer pixels = hw::device()->pixels();
        return pixels.data[y * pixels.stride + x * 4];
    };
    std::memset(canvas.addr, 0, static_cast<size_t>(canvas.width) * canvas.height);
    EXPECT_EQ(hw_update(-1, 0, 10, 10, 0), 0);
    EXPECT_EQ(hw_update(0, -1, 10, 10, 0), 0);
    EXPECT_EQ(grey_at(0, 0), 255);
    EXPECT_EQ(hw_update(4, 8, 12, 16, UPDATE_PARTIAL_GREY), 1);
    EXPECT_EQ(grey_at(4, 8), 0);
    EXPECT_EQ(grey_at(15, 23), 0);
    EXPECT_EQ(grey_at(3, 8), 255);
    EXPECT_EQ(grey_at(16, 23), 255);
    EXPECT_EQ(hw_update(0, 0, INT_MAX, INT_MAX, 0), 1);
    EXPECT_EQ(grey_at(599, 799), 0);

    const struct {
        const char *name;
        int (*update)();
        int ms;
    } cases[] = {{"plain", [] { return hw_update(0, 0, 8, 8, UPDATE_GREY); }, 10},
                 {"enter A2", [] { return hw_update(0, 0, 8, 8, UPDATE_A2_ENTER); }, 20},
                 {"leave A2", [] { return hw_update(0, 0, 8, 8, UPDATE_A2_EXIT); }, 20},
                 {"A2", [] { return hw_update(0, 0, 8, 8, UPDATE_A2); }, 10},
                 {"full", hw_fullupdate, 20},
                 {"refine", hw_refine16, 110}};
    for (const auto &c : cases) {
        const long long start = hw_boottime_ms();
        EXPECT_EQ(c.update(), 1) << c.name;
        EXPECT_EQ(hw_boottime_ms() - start, c.ms) << c.name;
    }
    hw_close();
    EXPECT_EQ(hw_update(0, 0, 8, 8, 0), 0) << "closed";
    EXPECT_EQ(hw_fullupdate(), 0);
    EXPECT_EQ(hw_getframebuffer(), nullptr);
}

} // namespace
