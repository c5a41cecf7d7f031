// SPDX-License-Identifier: MIT
// The model of the panel: every mode from every grey to every other, what it leaves behind, and
// updates side by side and one after the other.
#include "hw_linux/epaper.h"

#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>
#include <random>
#include <vector>

#include "hw_linux/area.h"
#include "hw_linux/change.h"
#include "hw_linux/schedule.h"

namespace {

using hw::Epaper;
using hw::Plane;
using hw::Waveform;

constexpr int greys = 16;
constexpr irect square{0, 0, greys, greys, 0};

// Column x was grey x, and row y shall become grey y.
struct Pairs {
    explicit Pairs(const Waveform &waveform) : former(greys, greys, 0), wanted(former) {
        for (int y = 0; y < greys; ++y)
            for (int x = 0; x < greys; ++x) {
                *former.at(x, y) = static_cast<uint8_t>(x * 17);
                *wanted.at(x, y) = static_cast<uint8_t>(y * 17);
            }
        hw::to_levels(wanted.bytes.data(), wanted.bytes.data(), greys * greys, waveform.levels);
    }
    Plane former, wanted;
};

void update(Epaper &panel, const Plane &former, const Plane &wanted, const Waveform &waveform,
            int64_t start_us) {
    panel.add(1, square, waveform, start_us);
    for (int y = 0; y < greys; ++y) panel.add_row(y, former.at(0, y), wanted.at(0, y));
}

bool all(const Plane &plane, int grey) {
    return std::all_of(plane.bytes.begin(), plane.bytes.end(), [=](int b) { return b == grey; });
}

// On the way no pixel leaves the stretch between its two greys, and one that stays does not move.
void expect_straight(Epaper &panel, const Pairs &pairs, int64_t from_us, int64_t to_us) {
    std::vector<uint8_t> last = pairs.former.bytes;
    for (int64_t t = from_us; t <= to_us; t += 10'000) {
        panel.advance(t);
        for (size_t i = 0; i < last.size(); ++i) {
            const int former = pairs.former.bytes[i], wanted = pairs.wanted.bytes[i];
            const int now = panel.shown().bytes[i];
            EXPECT_TRUE(former == wanted  ? now == former
                        : former < wanted ? now >= last[i] && now <= wanted
                                          : now <= last[i] && now >= wanted)
                << former << " to " << wanted << ": " << now;
        }
        last = panel.shown().bytes;
    }
}

void expect_flashes(Epaper &panel, const Waveform &waveform, int64_t start_us) {
    const int legs = 2 * waveform.flashes + 1;
    for (int leg = 1; leg < legs; ++leg) {
        // Frames are whole: the picture that is all black or white lies within one of them.
        const int64_t at_us = start_us + int64_t{waveform.ms} * 1000 * leg / legs;
        bool seen = false;
        for (int64_t t = at_us - 12'000; t <= at_us + 12'000; t += 4'000) {
            panel.advance(t);
            const auto [darkest, lightest] =
                std::minmax_element(panel.shown().bytes.begin(), panel.shown().bytes.end());
            seen = seen || (leg % 2 == 1 ? *lightest < 40 : *darkest > 215);
        }
        EXPECT_TRUE(seen) << "flash " << leg;
    }
}

TEST(Epaper, EveryModeBringsEveryGreyToEveryOther) {
    constexpr int64_t start_us = 5'000'000;
    for (const Waveform &waveform : hw::waveforms) {
        SCOPED_TRACE(std::to_string(static_cast<int>(waveform.kind)) + " mode " +
                     std::to_string(waveform.mode));
        const Pairs pairs(waveform);
        Epaper panel(pairs.former);
        update(panel, pairs.former, pairs.wanted, waveform, start_us);
        const int64_t end_us = start_us + int64_t{waveform.ms} * 1000;
        EXPECT_EQ(panel.next_end_us(), end_us);
        panel.advance(start_us - 1);
        EXPECT_EQ(panel.shown().bytes, pairs.former.bytes);
        if (waveform.flashes == 0)
            expect_straight(panel, pairs, start_us, end_us - 1);
        else
            expect_flashes(panel, waveform, start_us);
        panel.advance(end_us - 1);
        EXPECT_TRUE(panel.is_moving());
        panel.advance(end_us);
        EXPECT_FALSE(panel.is_moving());
        EXPECT_EQ(panel.take_finished(), 1);
        EXPECT_EQ(panel.take_finished(), std::nullopt);
        for (size_t i = 0; i < pairs.former.bytes.size(); ++i) {
            const int wanted = pairs.wanted.bytes[i], way = pairs.former.bytes[i] - wanted;
            EXPECT_EQ(panel.shown().bytes[i], wanted + way * waveform.residue_percent / 100);
        }
    }
}

TEST(Epaper, ResidueGrowsWithEachUpdateUntilAFlashClearsIt) {
    const struct {
        int mode;
        int left[4]; // after as many changes between black and white
    } cases[] = {{UPDATE_GREY, {10, 17, 22, 26}},       {UPDATE_PARTIAL_GREY, {10, 17, 22, 26}},
                 {UPDATE_PARTIAL_HQ, {5, 8, 11, 13}},   {UPDATE_DU4, {12, 21, 28, 33}},
                 {UPDATE_BW, {15, 26, 34, 40}},         {UPDATE_A2, {20, 35, 46, 54}},
                 {UPDATE_A2_ENTER, {0, 0, 0, 0}},       {12345, {10, 17, 22, 26}},
                 {UPDATE_PARTIAL_BLACK, {5, 8, 11, 13}}};
    const Plane black(greys, greys, 0), white(greys, greys, 255);
    const Waveform &full = hw::waveform_of(hw::UpdateKind::full, 0);
    for (const auto &c : cases) {
        Epaper panel(white);
        const Waveform &waveform = hw::waveform_of(hw::UpdateKind::partial, c.mode);
        for (int n = 0; n < 4; ++n) {
            const bool darkens = n % 2 == 0;
            update(panel, darkens ? white : black, darkens ? black : white, waveform, 0);
            EXPECT_EQ(panel.residue(square), c.left[n] * 100) << c.mode << ' ' << n;
            panel.finish();
            EXPECT_TRUE(all(panel.shown(), darkens ? c.left[n] : 255 - c.left[n]));
        }
        update(panel, white, white, waveform, 0);
        EXPECT_EQ(panel.residue(square), c.left[3] * 100) << "what does not change keeps it";
        update(panel, white, white, full, int64_t{waveform.ms} * 1000);
        EXPECT_EQ(panel.residue(square), 0);
        panel.finish();
        EXPECT_TRUE(all(panel.shown(), 255)) << c.mode;
    }
}

TEST(Epaper, TheHighestBitsOfAGreyNameItsLevel) {
    const struct {
        int mode, levels[greys]; // of 0x08, 0x18, ... 0xF8
    } cases[] = {
        {UPDATE_BW, {0, 0, 0, 0, 0, 0, 0, 0, 255, 255, 255, 255, 255, 255, 255, 255}},
        {UPDATE_DU4, {0, 0, 0, 0, 85, 85, 85, 85, 170, 170, 170, 170, 255, 255, 255, 255}},
        {UPDATE_GREY, {0, 17, 34, 51, 68, 85, 102, 119, 136, 153, 170, 187, 204, 221, 238, 255}},
    };
    for (const auto &c : cases)
        for (int i = 0; i < 256; ++i) {
            auto grey = static_cast<uint8_t>(i);
            const Waveform &waveform = hw::waveform_of(hw::UpdateKind::partial, c.mode);
            hw::to_levels(&grey, &grey, 1, waveform.levels);
            EXPECT_EQ(grey, c.levels[i / 16]) << "mode " << c.mode << ", grey " << i;
        }
}

TEST(Epaper, AnUpdateThatWaitedBeginsWithWhatTheFormerLeft) {
    const Plane white(greys, greys, 255), black(greys, greys, 0);
    const Waveform &fast = hw::waveform_of(hw::UpdateKind::partial, UPDATE_A2);
    const auto shown_at = [&](int64_t us) {
        Epaper panel(white);
        update(panel, white, black, fast, 0);
        update(panel, black, white, fast, 120'000);
        panel.advance(us / 3); // stops on the way change nothing
        panel.advance(us);
        return panel.shown().bytes[0];
    };
    EXPECT_EQ(shown_at(0), 255);
    EXPECT_EQ(shown_at(119'999), 20) << "the last frame";
    EXPECT_EQ(shown_at(120'000), 20);
    EXPECT_GT(shown_at(180'000), 100);
    EXPECT_EQ(shown_at(240'000), 255 - 35);
}

TEST(Epaper, UpdatesThatTouchWaitForEachOther) {
    hw::Schedule schedule;
    const irect left{0, 0, 10, 10, 0}, right{10, 0, 10, 10, 0}, both{9, 9, 2, 2, 0};
    EXPECT_EQ(schedule.idle_us(), 0);
    EXPECT_EQ(schedule.add(left, 100, 50), 100);
    EXPECT_EQ(schedule.add(right, 120, 50), 120) << "side by side";
    EXPECT_EQ(schedule.add(both, 130, 10), 170);
    EXPECT_EQ(schedule.add(left, 200, 50), 200) << "nothing runs any more";
    EXPECT_EQ(schedule.idle_us(), 250);
    schedule.clear();
    for (int i = 0; i < 16; ++i) EXPECT_EQ(schedule.add({20 * i, 0, 10, 10, 0}, 5, 10 + i), 5);
    EXPECT_EQ(schedule.free_us(), 15);
    EXPECT_EQ(schedule.add({20 * 16, 0, 10, 10, 0}, 5, 10), 15) << "one place too few";
}

TEST(Change, CountsWhatTheDefinitionSays) {
    std::mt19937 random(3);
    const auto below = [&](int bound) { return static_cast<int>(random() % bound); };
    for (int round = 0; round < 300; ++round) {
        const int width = 1 + below(70), height = 1 + below(9), x0 = below(50), y0 = below(50);
        Plane former(width, height, 0), now(width, height, 0);
        for (uint8_t &byte : former.bytes) byte = static_cast<uint8_t>(below(3) ? 255 : random());
        now = former;
        for (int i = below(20); i > 0; --i)
            *now.at(below(width), below(height)) = static_cast<uint8_t>(random());
        int changed = 0;
        irect around{};
        std::vector<bool> seen(greys);
        hw::Change change;
        hw::Greys counted;
        for (int y = 0; y < height; ++y) {
            change.add_row(x0, y0 + y, former.at(0, y), now.at(0, y), width);
            counted.add_row(now.at(0, y), width);
            for (int x = 0; x < width; ++x) {
                seen[static_cast<size_t>(*now.at(x, y) / 16)] = true;
                if (*former.at(x, y) / 16 == *now.at(x, y) / 16) continue;
                ++changed;
                around = hw::joined(around, {x0 + x, y0 + y, 1, 1, 0});
            }
        }
        ASSERT_EQ(change.pixels(), changed);
        ASSERT_EQ(counted.count(), std::count(seen.begin(), seen.end(), true));
        const irect &area = change.area();
        ASSERT_EQ(std::tie(area.x, area.y, area.w, area.h),
                  std::tie(around.x, around.y, around.w, around.h));
    }
}

} // namespace
