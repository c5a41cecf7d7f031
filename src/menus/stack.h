// SPDX-License-Identifier: MIT
// The open levels, one above the other. Only the top one is heard; it also draws.
#pragma once

#include "kelvane/menus.h"
#include "menus/layout.h"
#include "menus/place.h"
#include "modal/takeover.h"

namespace menus {

inline constexpr int most_levels = 6;

// What a finger does on a level.
struct Touch {
    int item = -1;  // where it went down, until it is lifted or drags
    int drag_y = 0; // where it was last
    int down_y = 0;
    bool is_dragging = false;
    bool on_exit = false; // it went down on the exit button
};

struct Menu {
    modal::Takeover taken;
    kv_menuhandler hproc = nullptr;
    const icontext_menu *context = nullptr; // null for a plain menu
    LookPtr look;
    Request request{};
    Anchor anchor;
    Layout layout;
    irect rect{};    // of the menu
    irect pointer{}; // of its pointer; empty without one
    irect covered{}; // with rim and pointer
    irect beside{};  // of the level below, on which no rim is drawn; empty without one
    int scroll = 0;  // how far a finger moved the rows up
    bool submenu_is_open = false;
    Touch touch;

    Level &level() { return layout.level; }
    const Level &level() const { return layout.level; }
    bool is_scrolled_by_finger() const { return layout.content_h > layout.h; }
    // How far the rows can be moved up.
    int most_scroll() const { return layout.content_h - layout.h; }
    irect row_rect(const Row &row) const {
        return {rect.x, rect.y + row.y - scroll, rect.w, row.h, 0};
    }
};

// What is asked of a level; its look and place follow.
struct Opening {
    const imenuex *menu;
    int position;
    kv_menuhandler hproc;
    Anchor anchor;
    const icontext_menu *context;
};

// Opens a level with the input. Nothing for a null or empty menu, without a callback, on a seventh
// level or without a screen.
void open(const Opening &opening);
// Opens the submenu of the selected row, when there is one.
void open_submenu();

// Null when none is open.
Menu *top();
int level_count();
// Whether the event that arrives was queued for a menu that has closed since. Counts it.
bool is_for_former_menu();

// Closes the top level; the one below shows its selection again.
void close_top();
// Closes every level and calls the top one's callback.
void finish(int index);

// Takes everything away as the screen closes. Nobody is told.
void reset();

} // namespace menus
