// SPDX-License-Identifier: MIT
// Borders, selection markers and level replacement.
#include <climits>
#include <cmath>
#include <gtest/gtest.h>

#include "chrome/selection.h"
#include "chrome/transparent.h"
#include "kelvane/frames.h"
#include "raster/bitmap.h"
#include "unit/raster_support.h"
#include "unit/theme_support.h"

namespace {

// Every angle in turn, the bars drawn again at each.
void plain_border(int x, int y, int w, int h, int size, int style, int radius, int color) {
    const char *rounded[] = {"",      "tl tr bl br", "tl tr", "bl br", "tl bl",
                             "tr br", "tl",          "tr",    "bl",    "br"};
    const std::string corners = style >= 1 && style <= 9 && radius > 0 ? rounded[style] : "";
    const auto cut = [&](const char *a) {
        return corners.find(a) != std::string::npos ? radius : 0;
    };
    int last_x = 0, last_y = 0;
    for (int angle = 0; angle < 90; ++angle) {
        const int cx = static_cast<int>(std::lround(std::cos(angle * M_PI / 180) * radius));
        const int cy = static_cast<int>(std::lround(std::sin(angle * M_PI / 180) * radius));
        if (radius > 0 && cx == last_x && cy == last_y) continue;
        last_x = cx, last_y = cy;
        FillArea(x, y + cut("tl"), size, h - cut("tl") - cut("bl"), color);
        FillArea(x + cut("tl"), y, w - cut("tl") - cut("tr"), size, color);
        FillArea(x + w - size, y + cut("tr"), size, h - cut("tr") - cut("br"), color);
        FillArea(x + cut("bl"), y + h - size, w - cut("bl") - cut("br"), size, color);
        const int left = x + radius - cx + 1, right = x + w - radius + cx - size;
        const int top = y + radius - cy + 1, bottom = y + h - size - radius + cy;
        if (cut("tl")) FillArea(left, top, size - 1, size - 1, color);
        if (cut("tr")) FillArea(right, top, size - 1, size - 1, color);
        if (cut("bl")) FillArea(left, bottom, size - 1, size - 1, color);
        if (cut("br")) FillArea(right, bottom, size - 1, size - 1, color);
    }
}

TEST(Border, DrawsLikeThePlainDefinition) {
    Random random{};
    for (int round = 0; round < 3000; ++round) {
        const irect r = iRect(random(-10, 30), random(-10, 30), random(1, 50), random(1, 50), 0);
        const int size = random(-1, 6), style = random(-1, 10), radius = random(-2, 20);
        const int color = random(0, 1) ? BLACK : WHITE;
        TestCanvas expected(60, 50, 8, 0, 128);
        plain_border(r.x, r.y, r.w, r.h, size, style, radius, color);
        TestCanvas drawn(60, 50, 8, 0, 128);
        DrawBorder(&r, size, style, radius, color);
        ASSERT_EQ(expected.memory, drawn.memory)
            << r.x << ',' << r.y << ' ' << r.w << 'x' << r.h << " size " << size << " style "
            << style << " radius " << radius;
    }
}

TEST(Border, RoundCornersByEye) {
    TestCanvas canvas(14, 11);
    const irect r = iRect(1, 1, 12, 9, 0);
    DrawBorder(&r, 2, ROUND_TOP, 4, BLACK);
    EXPECT_EQ(canvas.picture(), R"(
..............
.....####.....
....######....
...##....##...
..##......##..
.##........##.
.##........##.
.##........##.
.############.
.############.
..............
)");
}

// The first colour decides between the two sets; a set of three is none.
TEST(Border, PicturesOfTheThemeAtRoundCorners) {
    struct {
        const char *what, *missing;
        int first_color, style, level;
        const char *picture;
    } const cases[] = {
        {"plain", "", BLACK, ROUND_ALL, 0, R"(
....####....
.##......##.
.##......##.
............
#..........#
###......###
.##......##.
............
............
....####....
)"},
        {"white", "edge_top_left", WHITE, ROUND_LEFT, 8, R"(
....########
.++........#
.++........#
...........#
#..........#
#++........#
.++........#
...........#
...........#
....########
)"},
        {"one is missing", "edge_top_left", BLACK, ROUND_ALL, 0, R"(
....####....
............
............
............
#..........#
#..........#
............
............
............
....####....
)"},
    };
    for (const auto &c : cases) {
        TestTheme theme;
        for (const char *name :
             {"edge_top_left", "edge_top_right", "edge_bottom_left", "edge_bottom_right"}) {
            if (std::strcmp(name, c.missing) != 0) theme.add(name, 2, 2, 0);
            theme.add((name + std::string("_white")).c_str(), 2, 2, 8);
        }
        DrawBorder(nullptr, 0, 0, 0, c.first_color);
        TestCanvas canvas(12, 10);
        const irect r = iRect(0, 0, 12, 10, 0);
        DrawBorder(&r, 1, c.style, 4, BLACK);
        EXPECT_EQ(canvas.picture(), c.picture) << c.what;
    }
}

TEST(Border, RectRoundIsBlackWithPicturesAtTheFoot) {
    TestCanvas canvas(40, 30);
    testing::internal::CaptureStderr();
    DrawRectRound(1, 1, 38, 28, WHITE, RECT_ROUND_TL | RECT_ROUND_TR | RECT_ROUND_BR);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "DrawRectRound() flag RECT_ROUND_TL is not supported\n"
              "DrawRectRound() flag RECT_ROUND_TR is not supported\n");
    const auto black = [&](int x, int y) { return *raster::pixel_address(canvas, x, y) == 0; };
    EXPECT_TRUE(black(1, 1) && black(5, 20) && black(20, 5) && black(38, 1)); // three bars
    EXPECT_FALSE(black(6, 6) || black(33, 6));                                // five thick
    EXPECT_TRUE(black(1, 28) && black(20, 24) && black(24, 28));              // square left corner
    EXPECT_FALSE(black(38, 28) || black(37, 28) || black(38, 27));            // round right corner
    EXPECT_TRUE(black(36, 16) && black(33, 23));
}

TEST(Border, NothingOrAbsurdDrawsNothingOutside) {
    TestCanvas canvas(20, 20);
    const std::vector<uint8_t> white = canvas.memory;
    for (const irect &r :
         {iRect(3, 3, 0, 5, 0), iRect(3, 3, 5, -1, 0), iRect(3, 3, INT_MIN, 5, 0)}) {
        DrawBorder(&r, 2, ROUND_ALL, 3, BLACK);
        DrawRectRound(r.x, r.y, r.w, r.h, BLACK, 12);
        DrawPickOutEx(&r, "any");
        EXPECT_EQ(canvas.memory, white);
    }
    DrawBorder(nullptr, 2, 1, 3, BLACK);
    DrawPickOutEx(nullptr, nullptr);
    const int values[] = {INT_MIN, -1, 0, 1, 7, INT_MAX};
    Random random{};
    for (int round = 0; round < 2000; ++round) {
        const irect r =
            iRect(random.of(values), random.of(values), random.of(values), random.of(values), 0);
        DrawBorder(&r, random.of(values), random(0, 9), random.of(values), BLACK);
        DrawRectRound(r.x, r.y, r.w, r.h, 0, random(0, 3) * 4);
        Transparent(r.x, r.y, r.w, r.h, random.of(values));
        chrome::draw_selection(r,
                               {random(0, 5), 0, random(0, 3), random.of(values), random.of(values),
                                random.of(values), random.of(values), random.of(values)});
    }
}

TEST(Selection, Styles) {
    struct {
        const char *what;
        iselection_style style;
        const char *picture;
    } const cases[] = {
        {"background",
         {0, BLACK, 0, 3, 5, 1, 0, 0},
         "\n........\n..####..\n..####..\n..####..\n........\n"},
        {"inverted",
         {9, WHITE, 1, 3, 5, 0, 2, 0},
         "\n........\n...####.\n...####.\n...####.\n........\n"},
        {"hatched",
         {0, BLACK, 2, 3, 5, 0, 0, 1},
         "\n........\n..#..#..\n.#..#...\n...#..#.\n........\n"},
        {"square border",
         {1, BLACK, 0, 1, 5, 0, 0, 0},
         "\n........\n.######.\n.#....#.\n.######.\n........\n"},
        {"underline",
         {3, BLACK, 0, 2, 5, 0, 0, 0},
         "\n........\n........\n..#####.\n.#######\n........\n"},
        {"bar",
         {4, BLACK, 0, 2, 5, 0, 0, 0},
         "\n........\n........\n.######.\n.######.\n........\n"},
    };
    for (const auto &c : cases) {
        TestCanvas canvas(8, 5);
        chrome::draw_selection(iRect(1, 1, 6, 3, 0), c.style);
        EXPECT_EQ(canvas.picture(), c.picture) << c.what;
    }
    TestCanvas round(30, 30), border(30, 30);
    const irect r = iRect(2, 2, 20, 20, 0);
    DrawBorder(&r, 3, ROUND_ALL, 5, BLACK);
    SetCanvas(&round);
    chrome::draw_selection(r, {2, BLACK, 0, 3, 5, 0, 0, 0});
    EXPECT_EQ(round.memory, border.memory);
}

TEST(Selection, WithoutThemeEveryKeyFills) {
    for (const char *key : {"menu", "default", static_cast<const char *>(nullptr)}) {
        TestCanvas canvas(4, 3);
        DrawPickOut(1, 1, 2, 1, key);
        EXPECT_EQ(canvas.picture(), "\n....\n.##.\n....\n");
    }
}

TEST(Selection, StyleIsKeptWhileTheKeyStaysTheSame) {
    TestTheme theme;
    theme.texts["menu.selection.background.color"] = "0x0";
    theme.texts["selection.background.color"] = "0x808080";
    const auto drawn = [](const char *key) {
        TestCanvas canvas(2, 1);
        DrawPickOut(0, 0, 1, 1, key);
        return canvas.picture();
    };
    EXPECT_EQ(drawn("menu"), "\n#.\n");
    theme.texts["menu.selection.background.color"] = "0xffffff";
    EXPECT_EQ(drawn("menu"), "\n#.\n");
    EXPECT_EQ(drawn(nullptr), "\n+.\n");
    theme.texts["selection.background.color"] = "0";
    EXPECT_EQ(drawn(nullptr), "\n+.\n");
    EXPECT_EQ(drawn("default"), "\n#.\n"); // the same record under another key
    EXPECT_EQ(drawn("menu"), "\n..\n");
    EXPECT_EQ(drawn("other"), "\n#.\n"); // lacks a colour
}

TEST(Selection, HatchOfAnEndlessMarkerIsCountedFromItsRightEdge) {
    for (int right = INT_MAX - 2; right < INT_MAX; ++right) {
        TestCanvas endless(9, 3), same(9, 3);
        DrawDiagonalHatch(0, 0, 9 + right % 3, 3, 3, BLACK);
        SetCanvas(&endless);
        chrome::draw_selection(iRect(0, 0, right, 3, 0), {0, BLACK, 2, 0, 0, 0, 0, 0});
        EXPECT_EQ(endless.picture(), same.picture());
    }
}

TEST(Selection, FarReachingIndentsCoverTheWholeCanvas) {
    TestCanvas canvas(2, 1);
    chrome::draw_selection(iRect(0, 0, 2, 1, 0), {0, BLACK, 0, 0, 0, 0, INT_MIN, INT_MIN});
    EXPECT_EQ(canvas.picture(), "\n##\n");
}

TEST(Transparent, ReplacesFourBitLevels) {
    struct {
        int percent;
        int level[16];
    } const cases[] = {
        {100, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}},
        {50, {8, 8, 9, 9, 10, 10, 11, 11, 12, 12, 13, 13, 14, 14, 15, 15}},
        {-50, {0, 0, 1, 1, 2, 2, 3, 3, 4, 4, 5, 5, 6, 6, 7, 7}},
        {-100, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}},
    };
    for (int round = 0; round < 2; ++round) // built, then found again
        for (const auto &c : cases) {
            const raster::BitmapPtr bm = raster::make_bitmap(17, 2, 4);
            for (size_t i = 0; i < 18; ++i) bm->data[i] = static_cast<uint8_t>(i % 9 * 0x22 + 1);
            const raster::BitmapPtr before(CopyBitmap(bm.get()));
            chrome::replace_levels(*bm, c.percent);
            for (size_t i = 0; i < 18; ++i) {
                const int high = c.level[before->data[i] >> 4];
                const int low = i % 9 == 8 ? before->data[i] & 15 : c.level[before->data[i] & 15];
                EXPECT_EQ(bm->data[i], high << 4 | low) << c.percent << "% byte " << i;
            }
        }
    // At 0 % every level is 16: it leaves its own four bits and lands in the pixel to its left.
    const raster::BitmapPtr bm = raster::make_bitmap(2, 1, 4);
    bm->data[0] = 0x37;
    chrome::replace_levels(*bm, 0);
    EXPECT_EQ(bm->data[0], 0x10);
}

TEST(Transparent, LeavesByteCanvasesAlone) {
    for (const int bits : {8, 24}) {
        TestCanvas canvas(8, 4, bits, 0, 77);
        const std::vector<uint8_t> before = canvas.memory;
        Transparent(0, 0, 8, 4, 0);
        TransparentRect(iRect(0, 0, 8, 4, 0), -50);
        EXPECT_EQ(canvas.memory, before);
    }
}

} // namespace
