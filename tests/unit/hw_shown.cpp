// SPDX-License-Identifier: MIT
// The panel as e-paper on the headless device: its time, its pictures, its films and its turns.
#include "hw_linux/shown.h"

#include <cstring>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "hw.h"
#include "hw_linux/clock.h"
#include "hw_linux/device.h"
#include "hw_linux/screen.h"
#include "hw_linux/trace.h"
#include "kelvane/updates.h"
#include "support/tempdir.h"

namespace {

class Shown : public testing::Test {
  protected:
    Shown() {
        setenv("KELVANE_DEVICE", "headless", 1);
        hw::set_horizon(0); // the clock is ours
        hw::observe_updates([](const hw::UpdateRecord &u) { last = u; });
    }
    ~Shown() override { hw_close(); }

    static icanvas &open(const char *panel, const char *config = "") {
        hw_close();
        write_file("system/config/global.cfg", config);
        setenv("KELVANE_PANEL", panel, 1);
        EXPECT_EQ(hw_init(), 1);
        start_us = hw::boot_time_us();
        return *hw_getframebuffer();
    }
    static void fill(const icanvas &canvas, uint8_t grey) {
        std::memset(canvas.addr, grey, static_cast<size_t>(canvas.width) * canvas.height);
    }
    static int64_t passed_ms() { return (hw::boot_time_us() - start_us) / 1000; }
    static void pass_until(int64_t ms) { hw::pass_time((ms - passed_ms()) * 1000); }
    static int grey_at(int x, int y) {
        hw::refresh_pixels();
        const hw::PixelBuffer pixels = hw::device()->pixels();
        return pixels.data[y * pixels.stride + x * 4];
    }

    TempDir dir_;
    static inline hw::UpdateRecord last{};
    static inline int64_t start_us = 0;
};

TEST_F(Shown, UpdatesTakeThePanelsTimeAndNotTheApplications) {
    icanvas &canvas = open("epaper");
    fill(canvas, 0);
    hw_update(0, 0, 100, 100, UPDATE_PARTIAL_GREY);
    EXPECT_EQ(passed_ms(), 10);
    hw_update(200, 0, 100, 100, UPDATE_PARTIAL_GREY);
    EXPECT_EQ(last.wait_ms, 0) << "apart from the first";
    fill(canvas, 255);
    hw_update(96, 96, 8, 8, UPDATE_A2);
    EXPECT_EQ(last.wait_ms, 450 - 20);
    EXPECT_EQ(last.panel_ms, 120);
    EXPECT_EQ(hw_update_busy(), 1);
    pass_until(225);
    EXPECT_NEAR(grey_at(50, 50), 128, 20) << "halfway";
    pass_until(449);
    EXPECT_LT(grey_at(50, 50), 20);
    pass_until(450);
    EXPECT_EQ(grey_at(50, 50), 10);
    EXPECT_EQ(grey_at(98, 98), 10) << "what waited begins now";
    hw_wait_luts_complete();
    EXPECT_EQ(passed_ms(), 570);
    EXPECT_EQ(hw_update_busy(), 0);
    EXPECT_EQ(grey_at(98, 98), 255 - 27) << "and leaves residue on residue";
    hw_fullupdate();
    EXPECT_EQ(last.residue, 0);
    hw_wait_luts_complete();
    EXPECT_EQ(passed_ms(), 570 + 450);
    EXPECT_EQ(grey_at(98, 98), 255);
}

TEST_F(Shown, MoreUpdatesThanTheControllerHasPlacesForWait) {
    open("epaper");
    for (int i = 0; i < 17; ++i) hw_update(i * 20, 0, 10, 10, UPDATE_PARTIAL_GREY);
    EXPECT_EQ(last.wait_ms, 450 - 160);
    EXPECT_EQ(passed_ms(), 450 + 10) << "the call returns with a place";
}

TEST_F(Shown, WithoutTheModelNothingWaitsAndGreysAreWhatTheyAre) {
    for (const char *panel : {"", "plain"}) {
        icanvas &canvas = open(panel);
        fill(canvas, 0x7B);
        hw_update(0, 0, 100, 100, UPDATE_A2);
        EXPECT_EQ(grey_at(50, 50), 0x7B);
        hw_wait_luts_complete();
        EXPECT_EQ(hw_update_busy(), 0);
        EXPECT_EQ(passed_ms(), 10);
        EXPECT_EQ(last.residue, -1);
    }
}

// Calls work(place on the panel, pixel of the canvas) for all pixels.
template <class Work>
void each_pixel(const icanvas &canvas, Work work) {
    constexpr int64_t far = 2000; // from one row of places to the next
    for (int y = 0; y < canvas.height; ++y)
        for (int x = 0; x < canvas.width; ++x) {
            const hw::Point p = hw::to_panel(hw::panel_view(), canvas, {x, y});
            work(static_cast<size_t>(p.y * far + p.x), canvas.addr[y * canvas.scanline + x]);
        }
}

TEST_F(Shown, ATurnOfTheCanvasTurnsWhatIsKept) {
    for (const char *config : {"", "orientation=2\n", "emu_resmode=5\n"}) {
        icanvas &canvas = open("epaper", config);
        for (int y = 50; y < 250; ++y) std::memset(canvas.addr + y * canvas.scanline + 100, 0, 200);
        hw_update(0, 0, canvas.width, canvas.height, UPDATE_PARTIAL_GREY);
        EXPECT_EQ(last.changed, 200 * 200);
        for (const int orientation : {1, 2, 3, 0, 2, 1, 0}) {
            if (orientation == hw_get_fb_orientation()) continue;
            std::vector<uint8_t> panel(4000 * 2000, 255);
            each_pixel(canvas, [&](size_t place, uint8_t pixel) { panel[place] = pixel; });
            hw_set_fb_orientation(orientation);
            each_pixel(canvas, [&](size_t place, uint8_t &pixel) { pixel = panel[place]; });
            hw_update(0, 0, canvas.width, canvas.height, UPDATE_PARTIAL_GREY);
            EXPECT_EQ(last.changed, 0) << config << orientation;
            EXPECT_EQ(last.wait_ms, 0) << "a turn ends what runs";
            EXPECT_EQ(last.greys, 2);
            EXPECT_GT(last.residue, 0);
        }
    }
}

// A page turn, its film and its frames.
std::vector<std::string> filmed(const std::filesystem::path &place) {
    setenv("KELVANE_FILM", (place / "film:20").c_str(), 1);
    setenv("KELVANE_FRAMES", (place / "frames").c_str(), 1);
    setenv("KELVANE_TRACE", (place / "trace").c_str(), 1);
    std::filesystem::create_directories(place);
    EXPECT_EQ(hw_init(), 1);
    icanvas &canvas = *hw_getframebuffer();
    for (const uint8_t grey : {0, 0xA5}) {
        std::memset(canvas.addr, grey, static_cast<size_t>(canvas.scanline) * 300);
        hw_update(0, 0, 600, 400, UPDATE_PARTIAL_GREY);
        hw::pass_time(3600'000'000LL);
    }
    hw_update(600, 0, 10, 10, UPDATE_PARTIAL_GREY); // beside the screen
    hw_fullupdate();
    hw_close();
    for (const char *name : {"KELVANE_FILM", "KELVANE_FRAMES", "KELVANE_TRACE"}) unsetenv(name);
    std::vector<std::string> bytes;
    for (const char *folder : {"film", "frames"})
        for (int i = 1;; ++i) {
            char name[16];
            std::snprintf(name, sizeof name, "%06d.png", i);
            bytes.push_back(read_file(place / folder / name));
            if (bytes.back().empty()) break;
        }
    bytes.push_back(read_file(place / "trace"));
    return bytes;
}

TEST_F(Shown, FilmsAndFramesAreTheSameEachTime) {
    setenv("KELVANE_PANEL", "epaper", 1);
    const std::vector<std::string> first = filmed(dir_.path() / "a");
    // An earlier film was longer than this one; what else lies there is not the film's.
    write_file(dir_.path() / "a/film/000072.png", "former");
    write_file(dir_.path() / "a/film/1000000.png", "former");
    for (const char *other : {"12345.png", "000001.jpg", "a00001.png", "000001.png.png"})
        write_file(dir_.path() / "a/film" / other, "other");
    std::filesystem::create_directory(dir_.path() / "a/film/000099.png");
    EXPECT_EQ(filmed(dir_.path() / "a"), first);
    const std::filesystem::directory_iterator film(dir_.path() / "a/film");
    EXPECT_EQ(std::distance(begin(film), end(film)), 71 + 5);
    const auto film_end = std::find(first.begin(), first.end(), "");
    // Two updates of 450 ms with the second of rest that is kept, and the last one to its end.
    EXPECT_EQ(film_end - first.begin(), 2 * (9 + 21) + 11);
    EXPECT_NE(first[0], first[5]);
    const std::vector<std::string> frames(film_end + 1, std::find(film_end + 1, first.end(), ""));
    ASSERT_EQ(frames.size(), 4u);
    EXPECT_EQ(frames[0], first[20]) << "a frame waits for the panel";
    EXPECT_EQ(frames[1], first[50]);
    EXPECT_EQ(frames[2], frames[1]) << "an update of nothing has its picture";
    EXPECT_EQ(frames[3], *(film_end - 1));
    EXPECT_NE(frames[1], frames[3]) << "the full update clears the residue";
    EXPECT_NE(first.back().find("\"panel_ms\":450,\"residue\":7.50}"), std::string::npos);
}

TEST_F(Shown, SettingsAreTakenAndMistakesInThemTold) {
    const struct {
        const char *variable, *value, *why;
    } cases[] = {{"KELVANE_PANEL", "lcd", "KELVANE_PANEL=lcd: no such panel (plain or epaper)\n"},
                 {"KELVANE_FILM", "film", "KELVANE_FILM=film: directory:fps is meant"},
                 {"KELVANE_FILM", "film:86", "fps from 1 to 85"},
                 {"KELVANE_FILM", "film:0", "fps from 1 to 85"},
                 {"KELVANE_FILM", ":9", "directory:fps is meant"},
                 {"KELVANE_FILM", "film:9x", "directory:fps is meant"},
                 {"KELVANE_FILM", "file/film:9", "Not a directory"}};
    write_file("file", "");
    for (const auto &c : cases) {
        setenv(c.variable, c.value, 1);
        testing::internal::CaptureStderr();
        EXPECT_EQ(hw_init(), 0) << c.value;
        EXPECT_NE(testing::internal::GetCapturedStderr().find(c.why), std::string::npos) << c.why;
        unsetenv(c.variable);
    }
    for (const char *film : {"film:1", "film:85"}) {
        setenv("KELVANE_FILM", film, 1);
        EXPECT_EQ(hw_init(), 1) << film;
        hw_close();
    }
    unsetenv("KELVANE_FILM");
}

} // namespace
