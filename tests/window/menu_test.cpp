// SPDX-License-Identifier: MIT
// The menu of the window: every kind of item, chosen by clicks on the real menu.
#include <algorithm>

#include <X11/keysym.h>

#include "menu_clicks.h"
#include "session.h"

namespace {

class MenuTest : public WindowTest {
  protected:
    void choose(const std::string &path) {
        choose_from_menu(server_, root_x(40), root_y(40), path);
    }
    // Whether the mark of a radio submenu stands, or comes to stand, in this row.
    bool is_marked(const std::string &submenu, int rows, int row);
};

int count_ink(const desktop::Image &image, int top, int bottom) {
    constexpr int left = 5, right = 16;
    const uint32_t paper = image.pixels[static_cast<size_t>(top * image.width + left)];
    int ink = 0;
    for (int y = top; y < bottom; ++y)
        for (int x = left; x < right; ++x)
            ink += image.pixels[static_cast<size_t>(y * image.width + x)] != paper;
    return ink;
}

// The row with the most ink left of the labels.
int find_mark(const desktop::Image &image, int rows) {
    if (image.pixels.empty()) return -1;
    constexpr int border = 3;
    int most = 0, marked = -1;
    for (int row = 0; row < rows; ++row) {
        const int ink = count_ink(image, image.height * row / rows + border,
                                  image.height * (row + 1) / rows - border);
        if (ink > most) most = ink, marked = row;
    }
    return marked;
}

bool MenuTest::is_marked(const std::string &submenu, int rows, int row) {
    const unsigned long menu = choose_from_menu(server_, root_x(40), root_y(40), submenu);
    const bool marked = desktop::await([&] { return find_mark(server_.grab(menu), rows) == row; });
    for (int open = 0; open < 2; ++open) server_.stroke(XK_Escape);
    return marked;
}

} // namespace

TEST_F(MenuTest, ItemsReachTheApplication) {
    const struct {
        const char *path;
        int command;
        const char *event;
    } items[] = {
        {"/Special Events/EVT_FOREGROUND", 701, "151 0 0"},
        {"/Special Events/EVT_SDOUT", 704, "162 0 0"},
        {"/AVRCP Events/Play", 2001, "264 5 0"},
        {"/AVRCP Events/Previous", 2006, "264 1 0"},
        {"/AVRCP Events/Set volume/30", 2103, "264 6 30"},
        {"/Orientation/Landscape 90", 801, "32 1 0"},
    };
    start();
    for (const auto &item : items) {
        SCOPED_TRACE(item.path);
        choose(item.path);
        until("Command " + std::to_string(item.command) + " selected");
        until(item.event);
    }
}

TEST_F(MenuTest, RadioItemsKeepTheirMark) {
    const struct {
        const char *submenu;
        int rows, marked;
        const char *choice;
        int command, chosen;
    } groups[] = {
        {"/Battery", 5, 0, "/Battery/Level 2", 202, 3},
        {"/SD Card", 2, 0, "/SD Card/Removed", 302, 1},
        {"/USB Cable", 2, 1, "/USB Cable/Plugged", 401, 0},
        {"/Position", 5, 0, "/Position/Landscape 90", 502, 2},
        {"/Display Mode", 13, 7, "/Display Mode/758x1024", 602, 1},
        {"/Orientation", 4, 0, "/Orientation/Portrait 180", 803, 3},
    };
    start({}, "emu_resmode=7\n");
    for (const auto &group : groups) {
        SCOPED_TRACE(group.submenu);
        EXPECT_TRUE(is_marked(group.submenu, group.rows, group.marked));
        choose(group.choice);
        // The item that loses the mark runs no command of its own.
        const std::string command = "Command " + std::to_string(group.command) + " selected";
        const Lines lines = until(command);
        EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                                [](const auto &line) { return line.starts_with("Command "); }),
                  1);
        if (group.command == 803) until("32 3 0"); // its mark follows the application
        EXPECT_TRUE(is_marked(group.submenu, group.rows, group.chosen));
    }
    const std::string settings = sandbox_.read("system/config/global.cfg");
    EXPECT_NE(settings.find("orientation=2"), std::string::npos) << settings;
    EXPECT_NE(settings.find("emu_resmode=1"), std::string::npos) << settings;
}
