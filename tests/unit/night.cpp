// SPDX-License-Identifier: MIT
// What the panel shows at night beside what it shows by day, and when turned pages flash.
#include <cstring>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "dialogs/stack.h"
#include "hw_linux/device.h"
#include "kelvane/bitmaps.h"
#include "kelvane/dialogs.h"
#include "kelvane/hourglass.h"
#include "kelvane/lists.h"
#include "kelvane/updates.h"
#include "modal/saved_area.h"
#include "raster/bitmap.h"
#include "support/headless.h"
#include "support/repeats.h"

namespace {

using Pixels = std::vector<uint8_t>;

// The greys that a person sees.
Pixels panel() {
    const hw::PixelBuffer p = hw::device()->pixels();
    Pixels greys;
    for (int y = 0; y < p.height; ++y)
        for (int x = 0; x < p.width; ++x) greys.push_back(p.data[y * p.stride + x * 4]);
    return greys;
}

class Night : public headless::Test {
  protected:
    Night() {
        std::mt19937 random(3);
        const icanvas *c = GetCanvas();
        for (int i = 0; i < c->scanline * c->height; ++i)
            c->addr[i] = static_cast<uint8_t>(random() % 16 * 17);
        FullUpdate();
        day = panel();
        canvas.assign(c->addr, c->addr + c->scanline * c->height);
    }
    bool canvas_is_as_drawn() const {
        return std::memcmp(canvas.data(), GetCanvas()->addr, canvas.size()) == 0;
    }
    // Places where the panel shows neither day nor night as `is_night` says.
    template <class IsNight>
    int wrong(IsNight is_night) const {
        const Pixels now = panel();
        const int width = ScreenWidth();
        int count = 0;
        for (int i = 0; i < int(now.size()); ++i)
            count += now[size_t(i)] !=
                     (is_night(i % width, i / width) ? 255 - day[size_t(i)] : day[size_t(i)]);
        return count;
    }
    // Pixels that are not turned; no grey is its own opposite.
    int as_by_day(const irect &r) const {
        const Pixels now = panel();
        int count = 0;
        for (int y = r.y; y < r.y + r.h; ++y)
            for (int x = r.x; x < r.x + r.w; ++x) {
                const auto i = static_cast<size_t>(y * ScreenWidth() + x);
                count += now[i] == day[i];
            }
        return count;
    }
    static bool in(const irect &r, int x, int y) {
        return x >= r.x && x < r.x + r.w && y >= r.y && y < r.y + r.h;
    }
    Pixels day, canvas;
};

TEST_F(Night, EveryUpdateTurnsWhatItShows) {
    SetNightMode(1);
    EXPECT_EQ(GetNightMode(), 1);
    EXPECT_EQ(wrong([](int, int) { return false; }), 0) << "nothing yet";
    const irect area = {40, 80, 100, 60, 0};
    using Update = void (*)(int, int, int, int);
    for (const Update update :
         {PartialUpdate, PartialUpdateBlack, PartialUpdateBW, PartialUpdateHQ, PartialUpdateDU4,
          DynamicUpdate, DynamicUpdateBW, DynamicUpdateA2}) {
        SetNightMode(0);
        FullUpdate();
        SetNightMode(1);
        update(area.x, area.y, area.w, area.h);
        EXPECT_EQ(wrong([&](int x, int y) { return in(area, x, y); }), 0);
        EXPECT_TRUE(canvas_is_as_drawn());
    }
    for (void (*const update)() :
         {FullUpdate, FullUpdateHQ, SoftUpdate, SoftUpdateHQ, FineUpdate}) {
        SetNightMode(0);
        FullUpdate();
        SetNightMode(1);
        update();
        EXPECT_EQ(wrong([](int, int) { return true; }), 0);
        EXPECT_TRUE(canvas_is_as_drawn());
    }
    headless::clear_updates();
    PartialUpdate(40, 80, 8, 8);
    EXPECT_EQ(headless::updates().at(0).mode, UPDATE_PARTIAL_BLACK);
    SetNightMode(0);
    FullUpdate();
    EXPECT_EQ(wrong([](int, int) { return false; }), 0);
    SetNightMode(1);
    restart_with("");
    EXPECT_EQ(GetNightMode(), 0) << "the night ends with the screen";
}

// Whatever clip and canvas are current, and however pictures overlap and reach out.
TEST_F(Night, PicturesStayAsTheyAre) {
    std::mt19937 random(5);
    SetNightMode(1);
    uint8_t other_pixels[16];
    icanvas other = {4, 4, 4, 8, 0, 3, 0, 3, other_pixels};
    for (int round = 0; round < repeats(8, 3); ++round) {
        std::vector<irect> pictures(random() % 8);
        for (irect &r : pictures)
            r = {int(random() % 700) - 50, int(random() % 900) - 50, int(random() % 300) - 10,
                 int(random() % 300) - 10, 0};
        SetNightPictures(pictures.data(), int(pictures.size()));
        SetClip(10, 10, 5, 5);
        if (round % 2) SetCanvas(&other);
        FullUpdate();
        const auto is_night = [&](int x, int y) {
            for (const irect &r : pictures)
                if (in(r, x, y)) return false;
            return true;
        };
        PartialUpdate(8, 12, 400, 600); // nothing changes
        EXPECT_EQ(wrong(is_night), 0);
        SetCanvas(nullptr);
        EXPECT_TRUE(canvas_is_as_drawn());
    }
    const irect all[] = {{-5, -5, INT32_MAX, INT32_MAX, 0},
                         {INT32_MAX, 0, INT32_MAX, 3, 0},
                         {INT32_MIN, 0, INT32_MIN, 3, 0}};
    SetNightPictures(all, 3);
    FullUpdate();
    EXPECT_EQ(wrong([](int, int) { return false; }), 0);
    SetNightPictures(nullptr, 5);
    FullUpdate();
    EXPECT_EQ(wrong([](int, int) { return true; }), 0);
}

// What covers a part of a picture is none; below, and when it has gone, it is one.
TEST_F(Night, BoxesAboveAPictureAreTurned) {
    const irect picture = {100, 100, 200, 200, 0}, box = {200, 200, 200, 200, 0};
    SetNightMode(1);
    SetNightPictures(&picture, 1);
    FullUpdate();
    modal::SavedArea under;
    ASSERT_TRUE(under.save(box));
    FullUpdate();
    EXPECT_EQ(wrong([&](int x, int y) { return !in(picture, x, y) || in(box, x, y); }), 0);
    ASSERT_TRUE(under.restore());
    FullUpdate();
    const auto is_night = [&](int x, int y) { return !in(picture, x, y); };
    EXPECT_EQ(wrong(is_night), 0);
}

// A dialog is turned, and not the part of a picture that it only dims; whenever the application
// says what its pictures are.
TEST_F(Night, DialogsTurnWhatTheyCover) {
    const irect page = {0, 0, ScreenWidth(), ScreenHeight(), 0};
    for (const bool was_set_before : {true, false}) {
        SetNightPictures(&page, was_set_before ? 1 : 0);
        Dialog(ICON_INFORMATION, "title", "text", "button", nullptr, nullptr);
        const irect box = dialogs::top(dialogs::Kind::question)->layout.box;
        ASSERT_GT(box.h, 100);
        SetNightMode(0);
        FullUpdate();
        day = panel(); // with the box
        SetNightMode(1);
        SetNightPictures(&page, 1);
        FullUpdate();
        EXPECT_EQ(wrong([&](int x, int y) { return in(box, x, y); }), 0);
        SetNightPictures(nullptr, 0);
        FullUpdate();
        EXPECT_EQ(wrong([](int, int) { return true; }), 0);
        if (was_set_before) SetNightPictures(&page, 1);
        CloseDialog();
        headless::advance(100);
        SetNightMode(0);
        FullUpdate();
        day = panel();
        SetNightMode(1);
        FullUpdate();
        EXPECT_EQ(wrong([&](int, int) { return !was_set_before; }), 0) << "as was said last";
    }
}

// Those that are on the screen now; the other pixels of the list turn, and all when it has gone.
TEST_F(Night, CoversInListsStayAsTheyAre) {
    const raster::BitmapPtr cover(BitmapFromScreen(3, 5, 120, 160));
    ilist list{};
    list.rows.count = 30;
    list.rows.height = LIST_COVER_ROWS;
    list.rows.context = cover.get();
    list.rows.fill = [](int row, ilistrow *out, void *picture) {
        out->title = "Title";
        out->picture = row % 3 != 0 ? static_cast<ibitmap *>(picture) : nullptr;
    };
    const Pixels page = day;
    const irect below = {100, 20, 200, 500, 0};
    SetNightPictures(&below, 1);
    const int opened = OpenList(&list);
    int size = 0; // of a cover
    for (const int selected : {0, 20, 1}) {
        ShowHourglass(); // goes before the pictures that are drawn meanwhile
        SelectListRow(opened, selected);
        HideHourglass();
        ShowHourglass(); // leaves what lies below
        HideHourglass();
        SetNightMode(0);
        FullUpdate();
        day = panel();
        SetNightMode(1);
        FullUpdate();
        int covers = 0;
        for (int row = 0; row < list.rows.count; ++row) {
            const irect r = GetListRowRect(opened, row);
            const int kept = as_by_day(r);
            if (r.h < 1 || row % 3 == 0) {
                EXPECT_EQ(kept, 0) << row;
                continue;
            }
            if (size == 0) size = kept;
            EXPECT_EQ(kept, size) << row;
            ++covers;
        }
        EXPECT_GT(covers, 2);
        EXPECT_EQ(as_by_day({0, 0, ScreenWidth(), ScreenHeight(), 0}), covers * size);
    }
    CloseList(opened);
    FullUpdate();
    day = page;
    EXPECT_EQ(wrong([&](int x, int y) { return !in(below, x, y); }), 0);

    iselectionlist *widget = SelectionList_Create(&list.rows);
    const irect place = {40, 100, 500, 400, 0};
    SelectionList_SetRect(widget, &place);
    SelectionList_Draw(widget);
    SetNightMode(0);
    FullUpdate();
    day = panel();
    SetNightMode(1);
    FullUpdate();
    EXPECT_GT(as_by_day(place), 1000);
    SetNightPictures(nullptr, 0);
    FullUpdate();
    EXPECT_EQ(as_by_day(place), 0) << "the application says what its pictures are";
    SelectionList_Destroy(widget);
}

// What nobody takes away again is no picture.
TEST_F(Night, WhatStaysIsTurned) {
    const irect picture = {100, 100, 200, 200, 0}, box = {200, 200, 200, 200, 0};
    SetNightMode(1);
    SetNightPictures(&picture, 1);
    modal::SavedArea under;
    ASSERT_TRUE(under.save(box));
    under.drop();
    FullUpdate();
    EXPECT_EQ(wrong([&](int x, int y) { return !in(picture, x, y) || in(box, x, y); }), 0);
    SetNightPictures(&picture, 1);
    FullUpdate();
    EXPECT_EQ(wrong([&](int x, int y) { return !in(picture, x, y); }), 0);
}

TEST_F(Night, PagesFlashWhenDueOrAskedFor) {
    const auto turns = [](int every, int count) {
        headless::clear_updates();
        for (int i = 0; i < count; ++i) PageUpdate(every);
        std::string kinds;
        for (const headless::Update &u : headless::updates())
            kinds += u.kind == hw::UpdateKind::full ? 'F' : u.w == ScreenWidth() ? 's' : '?';
        return kinds;
    };
    EXPECT_EQ(turns(3, 8), "ssFssFss");
    FullUpdate(); // counts as well
    EXPECT_EQ(turns(3, 3), "ssF");
    EXPECT_EQ(turns(0, 5), "sssss");
    EXPECT_EQ(turns(-1, 1), "s");
    EXPECT_EQ(turns(3, 1), "F") << "six turns without a flash";
    CleanNextPage();
    EXPECT_EQ(turns(0, 2), "Fs");
    CleanNextPage();
    FullUpdate();
    EXPECT_EQ(turns(3, 3), "ssF");
    EXPECT_EQ(turns(1, 2), "FF");
    CleanNextPage();
    FineUpdate(); // refines without a flash
    EXPECT_EQ(turns(0, 1), "F");
    EXPECT_EQ(turns(3, 1), "s");
    FineUpdate();
    EXPECT_EQ(turns(3, 2), "sF");
    CleanNextPage();
    FullUpdateHQ();
    EXPECT_EQ(turns(0, 1), "s");
}

} // namespace
