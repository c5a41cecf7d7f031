// SPDX-License-Identifier: MIT
// Scroll views: where keys and fingers lead in content of any height.
#include <algorithm>
#include <climits>
#include <gtest/gtest.h>

#include "lists_support.h"

using namespace list_test;

namespace {

const irect place = {0, 100, 600, 400, 0};

class ScrollViews : public list_test::Test {
  protected:
    ScrollViews() {
        view = ScrollView_Create(draw, this);
        ScrollView_SetRect(view, &place);
        headless::on_event([this](int type, int p1, int p2) {
            const int taken = ScrollView_HandleEvent(view, type, p1, p2);
            if (type == EVT_POINTERDOWN || type == EVT_POINTERUP)
                captured = kvstate.tsc[0].captured != 0;
            return taken;
        });
    }
    ~ScrollViews() override { ScrollView_Destroy(view); }

    // A line of text every 50 pixels.
    static void draw(const irect *area, int top, void *test) {
        ++static_cast<ScrollViews *>(test)->draws;
        for (int y = -(top % 50); y < area->h; y += 50)
            FillArea(area->x, area->y + y, area->w, 1 + (top / 50 + y / 50) % 40, BLACK);
    }
    int top() const { return ScrollView_GetTop(view); }
    int top_after(int key) const {
        headless::press(key);
        return top();
    }
    iscrollview *view;
    int draws = 0;
    bool captured = false;
};

TEST_F(ScrollViews, KeysGoByPagesThatCutNoLine) {
    ScrollView_SetContent(view, 30 * 50, 50);
    EXPECT_EQ(top_after(KEY_DOWN), 200);
    EXPECT_EQ(top_after(KEY_NEXT), 600);
    EXPECT_EQ(top_after(KEY_RIGHT), 1000);
    EXPECT_EQ(top_after(KEY_NEXT2), 1100) << "the end";
    headless::clear_updates();
    EXPECT_EQ(top_after(KEY_DOWN), 1100);
    EXPECT_EQ(boxes::update_calls(), "");
    EXPECT_EQ(top_after(KEY_PREV), 700);
    EXPECT_EQ(boxes::update_calls(), "PartialUpdate ");
    hold(KEY_UP, 1200);
    EXPECT_EQ(top(), 100) << "half a page, and a whole one when held";
    ScrollView_SetContent(view, 1490, 50);
    ScrollView_SetTop(view, INT_MAX);
    EXPECT_EQ(top(), 1100) << "the last line is whole";
    ScrollView_SetTop(view, 120);
    EXPECT_EQ(top(), 100);
    const std::vector<uint8_t> here = screen();
    ScrollView_Draw(view);
    ScrollView_SetContent(view, 300, 50);
    EXPECT_EQ(top(), 0);
    EXPECT_EQ(ScrollView_HandleEvent(view, EVT_KEYPRESS, KEY_DOWN, 0), 0) << "all is in sight";
}

TEST_F(ScrollViews, CutsNoLineAtItsFoot) {
    const irect odd = {0, 100, 600, 430, 0};
    ScrollView_SetRect(view, &odd);
    ScrollView_SetContent(view, 1010, 50);
    ScrollView_Draw(view);
    const uint8_t *foot = kvstate.framebuffer->addr + 500 * kvstate.framebuffer->scanline;
    EXPECT_EQ(std::count(foot, foot + 500, 0), 0) << "the ninth line is on the next page";
    ScrollView_SetTop(view, INT_MAX);
    EXPECT_EQ(top(), 650) << "what is in sight reaches the end";
    ScrollView_SetContent(view, 425, 50);
    ScrollView_Draw(view);
    EXPECT_EQ(std::count(foot, foot + 500, 0), 500) << "all of it is in sight";
    for (const int h : {1, 3, 15}) { // lower than the thumb
        const irect low = {0, 100, 600, h, 0};
        ScrollView_SetRect(view, &low);
        ScrollView_Draw(view);
    }
}

TEST_F(ScrollViews, FingersTurnPagesAndTakeTheBar) {
    ScrollView_SetContent(view, 4000, 1);
    swipe(300, 400, 300, 200);
    EXPECT_EQ(top(), 400);
    EXPECT_TRUE(captured) << "until it has been lifted";
    swipe(300, 200, 310, 400);
    EXPECT_EQ(top(), 0);
    headless::pointer(EVT_POINTERDOWN, 590, 120);
    headless::pointer(EVT_POINTERMOVE, 590, 300);
    EXPECT_EQ(top(), 0) << "nothing follows a finger";
    headless::clear_updates();
    headless::pointer(EVT_POINTERUP, 590, 300);
    EXPECT_EQ(top(), 1800);
    EXPECT_EQ(boxes::update_calls(), "PartialUpdate ");
    headless::tap(590, 499);
    EXPECT_EQ(top(), 3600);
    headless::tap(300, 300);
    headless::tap(300, 50);
    EXPECT_FALSE(captured) << "it went down elsewhere";
    EXPECT_EQ(top(), 3600);
}

TEST_F(ScrollViews, AnyHeightAndPlaceIsHarmless) {
    for (const int height : {0, 1, -1, 401, INT_MAX, INT_MIN})
        for (const int line : {0, 7, INT_MAX, INT_MIN})
            for (const irect &r :
                 {irect{}, place, irect{0, 0, INT_MAX, INT_MAX, 0}, irect{590, 790, 5, 3, 0}}) {
                ScrollView_SetRect(view, &r);
                ScrollView_SetContent(view, height, line);
                ScrollView_SetTop(view, INT_MAX);
                EXPECT_LT(top(), std::max(height, 1)) << "something is in sight";
                ScrollView_Draw(view);
                press_all({KEY_UP, KEY_NEXT, KEY_DOWN, KEY_PREV});
                headless::tap(595, 795);
                ScrollView_SetTop(view, INT_MIN);
                EXPECT_EQ(top(), 0);
            }
    ScrollView_Destroy(nullptr);
    ScrollView_Draw(nullptr);
    EXPECT_EQ(ScrollView_GetWidth(nullptr), 0);
    EXPECT_EQ(ScrollView_HandleEvent(nullptr, EVT_KEYPRESS, KEY_DOWN, 0), 0);
}

} // namespace
