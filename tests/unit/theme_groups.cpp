// SPDX-License-Identifier: MIT
// Groups of theme parameters: what they fall back on, and the sizes they have without a theme.
#include <gtest/gtest.h>
#include <string>

#include "hw.h"
#include "kelvane/events.h"
#include "kelvane/text.h"
#include "kelvane/theme.h"
#include "support/fonts.h"
#include "support/headless.h"
#include "support/tempdir.h"
#include "support/theme_file.h"

namespace {

class ThemeGroups : public headless::Test {
  protected:
    ThemeGroups() { fonts::link_all(); }
    ~ThemeGroups() override {
        for (ifont *font : fonts_) CloseFont(font);
    }
    static void open(const char *parameters) {
        write_file("system/themes/t.tqt", ThemeFile(parameters).bytes());
        OpenTheme("t");
    }
    // "SIZE/COLOUR", a "#" before it for a font without smooth edges.
    std::string text_of(ifont *font) {
        if (!font) return "null";
        fonts_.push_back(font);
        return (font->aa ? "" : "#") + std::to_string(font->size) + "/" +
               std::to_string(font->color);
    }

  private:
    std::vector<ifont *> fonts_;
};

TEST_F(ThemeGroups, TaskManagerFallsBackInSteps) {
    struct {
        const char *parameters;
        int indent, separator, border;
        const char *title;
    } const cases[] = {
        {"", 3, 0, 0, "#21/16777215"},
        {"taskmgr.border.size=7\nseparator.color=5\nborder.color=6\npopup.caption.font=default,30,"
         "9",
         7, 5, 6, "30/9"},
        {"application.caption.button.right.indent.horizontal=11\ntaskmgr.separator.color=1\n"
         "taskmgr.border.color=2\ntaskmgr.title.font=#default,31,8\npopup.caption.font=default,30,"
         "9",
         11, 1, 2, "30/9"},
        {"taskmgr.title.font=#default,31,8", 3, 0, 0, "#31/8"},
    };
    for (const auto &c : cases) {
        open(c.parameters);
        const itaskmgr_properties p = LoadTaskManagerProperties();
        EXPECT_EQ(p.button_exit_indent_horizontal, c.indent) << c.parameters;
        EXPECT_EQ(p.separator_color, c.separator) << c.parameters;
        EXPECT_EQ(p.border_color, c.border) << c.parameters;
        EXPECT_EQ(text_of(p.title_font), c.title) << c.parameters;
        EXPECT_EQ(text_of(p.task_font), "#19/0");
        EXPECT_EQ(text_of(p.task_title_font), "#19/0");
        EXPECT_EQ(text_of(p.profile_font), "#24/0");
        EXPECT_EQ(text_of(p.shortcut_font), "#19/0");
    }
}

TEST_F(ThemeGroups, SelectionsTakeWhatTheyLackFromTheCommonOne) {
    open("selection.border.size=4\nselection.style=3\nrow.selection.style=2\n"
         "row.selection.indent.left=-6");
    const iselection_style common = LoadSelectionProperties("default"),
                           row = LoadSelectionProperties("row");
    EXPECT_TRUE(common.style == 3 && common.border_size == 4 && common.border_radius == 5);
    EXPECT_TRUE(row.style == 2 && row.border_size == 4 && row.indent_left == -6);
    EXPECT_EQ(LoadSelectionProperties(nullptr).style, 3);
}

TEST_F(ThemeGroups, DefaultsSuitTheDotsAnInch) {
    struct {
        const char *description;
        int dpi, caption, item, border, font, indent;
    } const panels[] = {{"0x1", 167, 48, 48, 3, 20, 24},
                        {"0x2", 212, 60, 60, 4, 25, 30},
                        {"0xb", 227, 72, 72, 5, 30, 36},
                        {"0x8", 300, 84, 84, 5, 35, 42}};
    for (const auto &s : panels) {
        loadHwConfigEmulator(s.description);
        ASSERT_EQ(device_display_dpi(), s.dpi);
        const icaption_properties caption = LoadApplicationCaptionProperties();
        const icontext_menu_properties menu = LoadContextMenuProperties();
        EXPECT_EQ(caption.height, s.caption);
        const irect &title = caption.portrait;
        EXPECT_EQ(std::tuple(title.x, title.y, title.w, title.h),
                  std::tuple(s.indent, 0, -s.indent - 1, 0));
        EXPECT_TRUE(menu.item_height == s.item && menu.border_size == s.border);
        EXPECT_EQ(menu.item_border_indent_vertical, (s.item + 4) / 8);
        EXPECT_EQ(text_of(menu.font_normal), std::to_string(s.font) + "/0");
        EXPECT_EQ(text_of(menu.font_disabled), std::to_string(s.font) + "/6710886");
        for (ifont *font : {caption.font, menu.font_selected}) text_of(font);
    }
    open("border.size=9\ndialog.title.height=70\ncontext_menu.font.normal=default,12,3");
    const icontext_menu_properties menu = LoadContextMenuProperties();
    EXPECT_TRUE(menu.border_size == 9 && menu.title_height == 70);
    EXPECT_EQ(text_of(menu.font_normal), "12/3");
    for (ifont *font : {menu.font_selected, menu.font_disabled}) text_of(font);
}

} // namespace
