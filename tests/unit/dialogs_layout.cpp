// SPDX-License-Identifier: MIT
// Where the parts of boxes go and what places and keys mean to them. There is no screen.
#include <gtest/gtest.h>
#include <ostream>
#include <string>

#include "dialogs/input.h"
#include "dialogs/layout.h"
#include "kelvane/events.h"
#include "kelvane/text.h"
#include "support/fonts.h"

using namespace dialogs;

namespace {

class DialogLayout : public testing::Test {
  protected:
    DialogLayout() { SetFont(font_, -1); }
    fonts::Folder folder_;
    fonts::Font font_{"default", 20};
};

Measures measures(int w, int h, int icon_w = 0, int icon_h = 0) {
    return {w, h, 65, -1, 0, 266, icon_w, icon_h};
}

std::string str(const irect &r) {
    return std::to_string(r.x) + "," + std::to_string(r.y) + " " + std::to_string(r.w) + "x" +
           std::to_string(r.h);
}

std::string buttons(int w, const Present &present) {
    Layout l = lay_out(Kind::question, measures(w, 800), "", ButtonRow::reserved);
    lay_out_buttons(l, present);
    std::string all;
    for (const irect &r : l.buttons) all += std::to_string(r.x) + "+" + std::to_string(r.w) + " ";
    return all;
}

TEST_F(DialogLayout, EachKindHasItsPlace) {
    const struct {
        Kind kind;
        ButtonRow row;
        int icon;
        const char *box, *text, *column;
    } cases[] = {
        {Kind::question, ButtonRow::reserved, 0, "0,601 600x200", "110,601 380x150",
         "110,601 0x150"},
        {Kind::question, ButtonRow::none, 0, "0,651 600x150", "110,651 380x150", "110,651 0x150"},
        {Kind::question, ButtonRow::reserved, 64, "0,557 600x244", "239,557 251x194",
         "110,557 64x194"},
        {Kind::message, ButtonRow::none, 0, "0,651 600x150", "155,651 350x150", "90,651 0x150"},
        {Kind::message, ButtonRow::none, 64, "0,607 600x194", "219,607 286x194", "90,607 64x194"},
        {Kind::progress, ButtonRow::reserved, 0, "0,601 600x200", "110,601 380x109",
         "110,601 0x150"},
    };
    for (const auto &c : cases) {
        const Layout l = lay_out(c.kind, measures(600, 800, c.icon, c.icon), "", c.row);
        EXPECT_EQ(str(l.box), c.box);
        EXPECT_EQ(str(l.text), c.text);
        EXPECT_EQ(str(l.icon), c.column);
    }
    const Layout bar = lay_out(Kind::progress, measures(600, 800), "", ButtonRow::none);
    EXPECT_EQ(str(bar.bar), "151,760 266x41");
    const std::string long_text(5000, 'w');
    const Layout full =
        lay_out(Kind::progress, measures(600, 800), long_text.c_str(), ButtonRow::none);
    EXPECT_LE(full.text.y + full.text.h, full.bar.y + 21) << "the bar keeps half of its place";
    const Layout wide = lay_out(Kind::question, measures(801, 600), "", ButtonRow::reserved);
    EXPECT_EQ(str(wide.box), "100,401 600x200") << "as wide as the shorter side, in the middle";
}

TEST_F(DialogLayout, OnlyDialogsAreRaisedAndAllStandOnThePanel) {
    Measures m = measures(600, 800);
    m.below = 36;
    m.raised = 20;
    EXPECT_EQ(str(lay_out(Kind::question, m, "", ButtonRow::reserved).box), "0,544 600x200");
    EXPECT_EQ(str(lay_out(Kind::message, m, "", ButtonRow::none).box), "0,614 600x150");
    EXPECT_EQ(str(lay_out(Kind::progress, m, "", ButtonRow::none).box), "0,614 600x150");
}

TEST_F(DialogLayout, ABoxGrowsWithItsTextUpToTheScreen) {
    std::string text = "word";
    int last = 0;
    for (int words = 1; words < 4000; words *= 2, text += " " + text) {
        for (const Kind kind : {Kind::message, Kind::progress, Kind::question}) {
            const Layout l = lay_out(kind, measures(600, 800), text.c_str(), ButtonRow::reserved);
            EXPECT_GE(l.box.h, last);
            EXPECT_GE(l.box.y, 0);
            EXPECT_EQ(l.box.y + l.box.h, 801);
            EXPECT_EQ(l.row.y + l.row.h, 801) << "the buttons stay on the screen";
            const int needed = TextRectHeight(l.text.w, text.c_str(), ALIGN_LEFT);
            EXPECT_TRUE(l.box.y <= 1 || l.text.h >= needed) << words;
            if (kind == Kind::question) last = l.box.h;
        }
    }
    EXPECT_EQ(last, 800);
}

TEST_F(DialogLayout, WhatIsLeftByRoundingGoesToTheLastButton) {
    EXPECT_EQ(buttons(600, {true, false, false}), "0+600 0+0 0+0 ");
    EXPECT_EQ(buttons(599, {true, true, false}), "0+299 299+300 0+0 ");
    EXPECT_EQ(buttons(599, {true, true, true}), "0+199 199+199 398+201 ");
    EXPECT_EQ(buttons(600, {true, false, true}), "0+300 0+0 300+300 ");
}

TEST_F(DialogLayout, EdgesAreOutsideAndButtonsReachTenPixelsFurther) {
    Layout l = lay_out(Kind::question, measures(600, 800), "", ButtonRow::reserved);
    const Present two{true, true, false}, one{true, false, false};
    lay_out_buttons(l, two);
    const struct {
        int x, y, item;
    } cases[] = {{1, 742, 1},    {0, 770, -1},   {299, 770, 1},  {300, 770, 0}, {301, 770, 2},
                 {599, 810, 2},  {599, 811, -1}, {100, 741, 0},  {100, 602, 0}, {100, 601, -1},
                 {600, 770, -1}, {300, 300, -1}, {300, 801, -1}, {300, 800, 0}};
    for (const auto &c : cases) EXPECT_EQ(item_at(l, two, c.x, c.y), c.item) << c.x << "," << c.y;
    l.buttons = {};
    lay_out_buttons(l, one);
    EXPECT_EQ(item_at(l, one, 100, 602), 1) << "all of the box is its one button";
    EXPECT_EQ(item_at(l, one, 100, 601), -1);
}

TEST(DialogInput, TheSelectionGoesRoundThePresentButtons) {
    const struct {
        Present present;
        const char *before, *after; // from -1, 1, 2, 3
    } cases[] = {{{true, false, false}, "1 1 1 1", "1 1 1 1"},
                 {{true, true, false}, "1 2 1 2", "1 2 1 1"},
                 {{true, true, true}, "1 3 1 2", "1 2 3 1"},
                 {{true, false, true}, "1 3 1 1", "1 1 3 1"}};
    for (const auto &c : cases) {
        std::string before, after;
        for (const int from : {-1, 1, 2, 3}) {
            before += std::to_string(button_before(c.present, from)) + (from == 3 ? "" : " ");
            after += std::to_string(button_after(c.present, from)) + (from == 3 ? "" : " ");
        }
        EXPECT_EQ(before, c.before);
        EXPECT_EQ(after, c.after);
    }
}

TEST(DialogInput, OnMultiTouchOnlyOkMeansSomething) {
    for (int key = 0; key < 40; ++key)
        EXPECT_EQ(meaning_of(key, Panel::multi_touch),
                  key == KEY_OK ? Meaning::choose : Meaning::nothing);
    EXPECT_EQ(meaning_of(KEY_UP, Panel::keys_and_touch), Meaning::nothing);
}

} // namespace
