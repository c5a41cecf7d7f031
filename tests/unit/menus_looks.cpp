// SPDX-License-Identifier: MIT
// What themes, languages, fonts and screens make of menus.
#include <algorithm>
#include <gtest/gtest.h>

#include "chrome/panel.h"
#include "menus_support.h"
#include "support/theme_file.h"

using namespace menu_test;

namespace {

void use_theme(const std::string &parameters) {
    write_file("system/themes/look.tqt", ThemeFile(parameters).bytes());
    OpenTheme("look");
}

// The black pixels of a line of the menu, inside its border.
int ink(int y) {
    const icanvas &c = *kvstate.framebuffer;
    const menus::Menu &menu = *menus::top();
    const int border = menu.look->p.border_size;
    const uint8_t *line = c.addr + y * c.scanline;
    return static_cast<int>(
        std::count(line + menu.rect.x + border, line + menu.rect.x + menu.rect.w - border, 0));
}

class MenuLooks : public menu_test::Test {};

TEST_F(MenuLooks, MarkersAndSeparatorsAreTheThemes) {
    Items items({ITEM_ACTIVE, ITEM_SEPARATOR, ITEM_ACTIVE, ITEM_ACTIVE});
    const std::string plain = "context_menu.separator.indent.horizontal=13\n"
                              "context_menu.border.size=3\ncontext_menu.border.radius=0\n";
    const struct {
        const char *parameters;
        int head, foot; // rows of pixels of the selected row that are black from border to border
        int separator;  // of so many pixels less than the width one is drawn
        int step;
    } cases[] = {{"", 1, 1, 20, 1},
                 {"context_menu.marker.style=0\n", 0, 1, 20, 1},
                 {"context_menu.marker.style=7\ncontext_menu.marker.height=0\n", 0, 0, 20, 1},
                 {"context_menu.separator.style=1\n", 1, 1, 20, 2},
                 {"context_menu.separator.style=2147483647\n", 1, 1, 20, 4097},
                 {"context_menu.separator.style=-5\n", 1, 1, 20, 1}};
    for (const auto &c : cases) {
        use_theme(plain + c.parameters);
        items.open();
        const irect row = row_rect(0), separator = row_rect(1);
        const int w = row.w - 6;
        EXPECT_EQ(ink(row.y) == w, c.head == 1) << c.parameters;
        EXPECT_EQ(ink(row.y + row.h - 1) == w, c.foot == 1) << c.parameters;
        EXPECT_EQ(ink(separator.y + 4), (w - c.separator + c.step - 1) / c.step) << c.parameters;
        headless::press(KEY_BACK);
    }
}

// Every row is drawn alone where the selection was and where it goes.
TEST_F(MenuLooks, AStepShowsWhatAMenuOpenedThereShows) {
    Items items({ITEM_HEADER, ITEM_ACTIVE, ITEM_SEPARATOR, ITEM_BULLET, ITEM_INACTIVE, ITEM_SUBMENU,
                 ITEM_ACTIVE});
    const auto lines = "context_menu.separator.frequency=1\n";
    for (const char *parameters :
         {"", lines, "context_menu.marker.style=0\ncontext_menu.separator.frequency=1\n",
          "context_menu.item.height=400\n", "context_menu.bullet.show=0\n",
          "context_menu.border.size=250\ncontext_menu.border.radius=300\n"}) {
        use_theme(parameters);
        for (const auto turn : {write_left_to_right, write_right_to_left}) {
            turn();
            std::vector<std::vector<uint8_t>> opened;
            for (const int pos : {1, 3, 5, 6}) {
                items.open(pos);
                opened.push_back(screen());
                headless::press(KEY_BACK);
            }
            items.open(1);
            for (size_t i = 0; i < 8; ++i) {
                EXPECT_TRUE(screen() == opened[i % 4]) << parameters << i;
                headless::press(KEY_DOWN);
            }
            headless::press(KEY_BACK);
            EXPECT_TRUE(screen() == before);
        }
    }
    use_theme(lines);
    items.open(1);
    const irect row = row_rect(1);
    EXPECT_EQ(ink(row.y + row.h), row.w - 2 * menus::top()->look->p.border_size)
        << "a filled row reaches as far as the next one";
    EXPECT_EQ(row_rect(2).h, 0) << "separators take no room among lines";
}

TEST_F(MenuLooks, AThemeOrLanguageShapesTheNextMenu) {
    write_file("system/language/aa.txt", "A\n@word=W\n");
    write_file("system/language/bb.txt", "B\n%RTL\n@word=A word of that language\n");
    imenu menu[] = {{ITEM_ACTIVE, 1, "@word", nullptr}, {ITEM_ACTIVE, 2, "@word", nullptr}, {}};
    LoadLanguage("aa");
    OpenMenu(menu, 0, 300, 40, answer);
    const irect r = menus::top()->rect;
    use_theme("context_menu.item.height=70\n");
    LoadLanguage("bb");
    headless::press(KEY_DOWN);
    EXPECT_EQ(menus::top()->rect.w, r.w) << "the open one stays";
    headless::press(KEY_OK);
    OpenMenu(menu, 0, 300, 40, answer);
    EXPECT_EQ(row_rect(0).h, 70);
    EXPECT_GT(menus::top()->rect.w, r.w);
    headless::press(KEY_OK);
    expect_closed_with("2 1 ");
}

TEST_F(MenuLooks, FontsOfItemsCountWhereTheContextSaysSo) {
    ifont *large = OpenFont("default", 40, 1), *small = OpenFont("default", 9, 1);
    Items items({ITEM_ACTIVE});
    items.items[0].font = large;
    icontext_menu *context = CreateContextMenu("fonts");
    const auto width = [&] {
        SetContextMenuStruct(context);
        items.open();
        const int w = menus::top()->layout.w;
        headless::press(KEY_BACK);
        return w;
    };
    items.labels[0] = "A label that is wider than the least menu";
    items.items[0].text = items.labels[0].c_str();
    const int plain = width();
    context->use_own_font = 1;
    const int own = width();
    EXPECT_GT(own, plain);
    SetMenuFont(small);
    EXPECT_EQ(width(), own);
    context->use_own_font = 0;
    EXPECT_LT(width(), plain);
    SetMenuFont(nullptr);
    EXPECT_EQ(width(), plain);
    CloseFont(large);
    CloseFont(small);
}

TEST_F(MenuLooks, MissingFontsLeaveMenusThatCanBeUsed) {
    restart_with(""); // a device without fonts
    before = screen();
    for (const char *parameters : {"context_menu.font.normal=missing,20,0\n",
                                   "context_menu.font.selected=,\ncontext_menu.font.disabled="
                                   "\ncontext_menu.font.normal=,-7\n"}) {
        answers.clear();
        use_theme(parameters);
        Items items({ITEM_HEADER, ITEM_ACTIVE, ITEM_INACTIVE, ITEM_ACTIVE});
        items.open(1);
        press_all({KEY_DOWN, KEY_OK});
        expect_closed_with("3 ");
    }
}

TEST_F(MenuLooks, AFingerHitsTheRowsOfEveryScreen) {
    for (int mode = 0; mode <= 12; ++mode) {
        restart_with("emu_resmode=" + std::to_string(mode) + "\n");
        fonts::link_all();
        before = screen();
        answers.clear();
        Items items(std::vector<int>(40, ITEM_ACTIVE));
        items.open(39, 5000, 5000);
        constexpr double mm_per_inch = 25.4, least_mm = 7;
        EXPECT_GE(row_rect(39).h * mm_per_inch, least_mm * device_display_dpi()) << mode;
        const irect r = menus::top()->rect;
        EXPECT_LE(r.x + r.w, ScreenWidth());
        EXPECT_LE(r.y + r.h, ScreenHeight() - PanelHeight());
        headless::press(KEY_DOWN);
        EXPECT_EQ(current(), 0);
        tap_row(3);
        expect_closed_with("3 ");
    }
}

} // namespace
