// SPDX-License-Identifier: MIT
// Rows, pages and the selection, without a screen.
#include <gtest/gtest.h>

#include "menus/level.h"
#include "menus_support.h"

using namespace menus;

namespace {

// A menu of 100 rows of pixels: rows of items are 10 high, titles 20 and separators 3.
constexpr Rules rules{.border = 2,
                      .indent = 3,
                      .limit = 100,
                      .header_h = 20,
                      .item_h = 10,
                      .separator_h = 3,
                      .lines = Lines::as_items,
                      .flow = Flow::pages};
constexpr Rules with_lines = [] {
    Rules r = rules;
    r.lines = Lines::between_items;
    return r;
}();

Level level_of(const std::vector<int> &types, int position = -1, const Rules &r = rules) {
    menu_test::Items items(types);
    return build_level(read_items(items.get(), OwnFonts::ignored), r, position);
}

// "y/page" of each row.
std::string places(const Level &level) {
    std::string text;
    for (const Row &row : level.rows)
        text += std::to_string(row.y) + "/" + std::to_string(row.page) + " ";
    return text;
}

std::vector<int> many(int count, int type = ITEM_ACTIVE) {
    return std::vector<int>(static_cast<size_t>(count), type);
}

TEST(MenuLevels, RowsStandBelowEachOther) {
    const struct {
        std::vector<int> types;
        const Rules &rules;
        const char *places;
        int height;
    } cases[] = {
        {{2, 2}, rules, "5/0 15/0 ", 30},
        {{1, 2, 6, 7}, rules, "2/0 25/0 35/0 38/0 ", 53},
        {{2, 0x82, 4, 0x20 | 31, 6, 2}, rules, "5/0 15/0 18/0 ", 33},
        {{0x80}, rules, "", 10},
        {{2, 1, 2}, rules, "2/0 15/0 35/0 ", 50},
        {{1, 2, 6, 2, 2}, with_lines, "2/0 25/0 38/0 38/0 51/0 ", 66},
    };
    for (const auto &c : cases) {
        const Level level = level_of(c.types, -1, c.rules);
        EXPECT_EQ(places(level), c.places);
        EXPECT_EQ(level.height, c.height);
        EXPECT_EQ(level.last_page, 0);
        menu_test::Items items(c.types);
        EXPECT_EQ(unbroken_height(read_items(items.get(), OwnFonts::ignored), c.rules), c.height);
    }
}

TEST(MenuLevels, TitlesAreRepeatedOnEveryPage) {
    std::vector<int> types = many(15);
    types[0] = ITEM_HEADER;
    const Level level = level_of(types, 14);
    EXPECT_EQ(level.last_page, 1);
    EXPECT_EQ(level.page, 1);
    EXPECT_EQ(level.rows.size(), 16U);
    EXPECT_EQ(level.current, 15);
    const Row &repeated = level.rows[8];
    EXPECT_EQ(repeated.item.kind, ITEM_HEADER);
    EXPECT_EQ(repeated.item.text, "Item 0");
    EXPECT_EQ(repeated.item.index, 0);
    EXPECT_EQ(repeated.y, rules.border);
    EXPECT_EQ(repeated.page, 1);
    EXPECT_EQ(level.rows[9].y, 25);
    EXPECT_LE(level.height, rules.limit);
}

TEST(MenuLevels, TheLastTitleSeenIsRepeated) {
    std::vector<int> types = many(30);
    types[3] = ITEM_HEADER;
    types[11] = ITEM_HEADER;
    const Level level = level_of(types);
    for (const Row &row : level.rows)
        if (row.item.position < 0) {
            EXPECT_EQ(row.item.text, row.page == 1 ? "Item 3" : "Item 11") << row.page;
        }
}

TEST(MenuLevels, AThousandItemsAndNoPageTooHigh) {
    for (const Rules &r : {rules, with_lines}) {
        const Level level = level_of(many(1000), 999, r);
        EXPECT_EQ(level.rows.size(), 1000U);
        EXPECT_EQ(level.current, 999);
        EXPECT_EQ(level.page, level.last_page);
        for (const Row &row : level.rows) EXPECT_LE(row.y + row.h, 95);
    }
    Rules scrolled = rules;
    scrolled.flow = Flow::scrolled;
    const Level level = level_of(many(1000), 999, scrolled);
    EXPECT_EQ(level.last_page, 0);
    EXPECT_EQ(level.height, 10010);
    Rules low = rules;
    low.limit = 1;
    EXPECT_EQ(level_of(many(3), -1, low).last_page, 2) << "a page takes at least one row";
}

TEST(MenuLevels, TheFirstSelectionWalksBackwards) {
    const struct {
        std::vector<int> types;
        int position, current;
    } cases[] = {{{2, 2, 2}, 1, 1},    {{3, 2, 5}, 0, 2}, {{2, 6, 3}, 2, 0}, {{1, 3, 6}, 1, -1},
                 {{2, 2}, -1, -1},     {{2, 2}, 7, -1},   {{7, 3}, 1, 0},    {{2, 0x82, 2}, 1, -1},
                 {{0x82, 3, 2}, 2, 1}, {{1, 2, 3}, 0, 1}};
    for (const auto &c : cases) EXPECT_EQ(level_of(c.types, c.position).current, c.current);
}

TEST(MenuLevels, StepsGoRoundPastWhatCannotBeChosen) {
    const struct {
        std::vector<int> types;
        int from, back, forward;
    } cases[] = {{{2, 2, 2}, 0, 2, 1},      {{2, 6, 3, 2}, 0, 3, 3}, {{1, 2, 3}, 1, 1, 1},
                 {{1, 2, 5, 3}, -1, 2, 1},  {{3, 1, 6}, -1, -1, -1}, {{1, 7, 6, 2}, 3, 1, 1},
                 {{0x82, 4, 2, 2}, 1, 0, 0}};
    for (const auto &c : cases) {
        Level level = level_of(c.types);
        level.current = c.from;
        EXPECT_EQ(next_selectable(level, Direction::back), c.back);
        EXPECT_EQ(next_selectable(level, Direction::forward), c.forward);
    }
}

TEST(MenuLevels, PagesWithoutAChoiceArePassed) {
    std::vector<int> types = many(30, ITEM_INACTIVE); // nine on a page
    types[2] = types[29] = ITEM_ACTIVE;
    Level level = level_of(types, 2);
    EXPECT_EQ(first_of_next_page(level, Direction::forward), 29);
    EXPECT_EQ(first_of_next_page(level, Direction::back), -1);
    level = level_of(types, 29);
    EXPECT_EQ(first_of_next_page(level, Direction::back), 2);
}

} // namespace
