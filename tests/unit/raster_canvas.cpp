// SPDX-License-Identifier: MIT
// The current canvas, its clip, and colour maps.
#include <gtest/gtest.h>

#include <climits>

#include "raster_support.h"

namespace {

std::string text(const irect &r) {
    std::string s;
    for (int v : {r.x, r.y, r.w, r.h}) s += std::to_string(v) + ' ';
    return s;
}

TEST(RasterCanvas, ClipIsStoredAsGiven) {
    const struct {
        int x, w, first, last, got_w;
    } cases[] = {
        {10, 5, 10, 14, 5},
        {10, -5, 6, 10, 5},
        {10, -1, 10, 10, 1},
        {10, 0, 10, 9, 0},
        {-7, 500, -7, 492, 500},
        {INT_MAX, INT_MAX, INT_MAX, INT_MAX, 1},
        {INT_MIN, INT_MIN, INT_MIN, INT_MIN, 1},
        {INT_MAX, INT_MIN, 0, INT_MAX, INT_MAX},
        {-1, INT_MIN, INT_MIN, -1, INT_MAX},
    };
    TestCanvas canvas(20, 20);
    for (const auto &c : cases) {
        SetClip(c.x, 3, c.w, 3);
        EXPECT_EQ(canvas.clipx1, c.first) << c.x;
        EXPECT_EQ(canvas.clipx2, c.last) << c.x;
        const irect turned = iRect(3, c.x, -3, c.w, 9);
        SetClipRect(&turned);
        EXPECT_EQ(canvas.clipy1, c.first) << c.x;
        EXPECT_EQ(canvas.clipy2, c.last) << c.x;
        EXPECT_EQ(text(GetClipRect()), text({1, c.first, 3, c.got_w, 0}));
    }
    int x = 7, h = 7;
    GetClip(&x, nullptr, nullptr, &h);
    EXPECT_EQ(x, 1);
    EXPECT_EQ(h, INT_MAX);
}

TEST(RasterCanvas, MergeKeepsAWidthThatWasMovedRight) {
    const struct {
        int x, w, merged_x, merged_w;
    } cases[] = {
        {12, 5, 12, 5},   // inside
        {15, 50, 15, 15}, // cut at the right edge
        {5, 8, 10, 8},    // moved right: as wide as before
        {5, 50, 10, 20},  // moved right and cut
        {30, 4, 30, 0},   // right at the edge + 1 it stays
        {31, 4, 10, 4},   // beyond, it starts over
        {12, -3, 12, -3}, {INT_MAX, INT_MAX, 10, 20}, {INT_MIN, INT_MIN, 10, INT_MIN},
    };
    TestCanvas canvas(9, 9);
    SetClip(10, 10, 20, 20);
    for (const auto &c : cases) {
        const irect r = iRect(c.x, c.x, c.w, c.w, 77);
        const irect merged = MergeClipRect(&r);
        EXPECT_EQ(text(merged), text({c.merged_x, c.merged_x, c.merged_w, c.merged_w, 0})) << c.x;
        EXPECT_EQ(merged.flags, 77);
    }
    EXPECT_EQ(text(MergeClipRect(nullptr)), "0 0 0 0 ");
}

TEST(RasterCanvas, SwitchesBackToTheScreen) {
    icanvas screen{};
    kvstate.framebuffer = &screen;
    {
        TestCanvas canvas(3, 2, 24, 2, 0);
        EXPECT_EQ(GetCanvas(), &canvas);
        SetClip(1, 1, 1, 1);
        ClearScreen();
        // Between the rows may lie the rest of a larger picture.
        for (int i = -1; i <= canvas.scanline * 2; ++i)
            EXPECT_EQ(canvas.addr[i],
                      i >= 0 && i % canvas.scanline < 9 && i < canvas.scanline * 2 ? 0xFF : 0);
    }
    EXPECT_EQ(GetCanvas(), &screen);
    kvstate.framebuffer = nullptr;
    SetCanvas(nullptr);
    int x = 7;
    SetClip(1, 1, 1, 1);
    SetClipRect(nullptr);
    GetClip(&x, nullptr, nullptr, nullptr);
    EXPECT_EQ(x, 0);
    EXPECT_EQ(text(GetClipRect()), "0 0 0 0 ");
}

TEST(RasterColorMap, StartsWithoutColours) {
    for (int size : {0, -1, INT_MIN}) EXPECT_EQ(ColorMapCreate(size), nullptr);
    icolor_map *map = nullptr;
    for (const int size : {1, 3}) {
        map = ColorMapCreate(size);
        ASSERT_NE(map, nullptr);
        EXPECT_EQ(map->size, size);
        EXPECT_EQ(std::count(map->from_color, map->from_color + size, -1), size);
        EXPECT_EQ(std::count(map->to_color, map->to_color + size, -1), size);
        ColorMapDestroy(&map);
    }
    EXPECT_EQ(map, nullptr);
    ColorMapDestroy(&map);
    ColorMapDestroy(nullptr);
}

} // namespace
