// SPDX-License-Identifier: MIT
// The commands of the device window's menu: one table for the window, scripts and the monkey.
#pragma once

namespace hw {

enum class ItemKind { plain, radio };

struct MenuItem {
    const char *path; // parts divided by '/'
    int command;
    ItemKind kind; // the radio items of one submenu form a group
};

inline constexpr int command_quit = 901;
inline constexpr int command_orientation = 800; // and the three after it

inline constexpr MenuItem menu_items[] = {
    {"/Battery/Level 5", 205, ItemKind::radio},
    {"/Battery/Level 4", 204, ItemKind::radio},
    {"/Battery/Level 3", 203, ItemKind::radio},
    {"/Battery/Level 2", 202, ItemKind::radio},
    {"/Battery/Level 1", 201, ItemKind::radio},
    {"/SD Card/Inserted", 301, ItemKind::radio},
    {"/SD Card/Removed", 302, ItemKind::radio},
    {"/USB Cable/Plugged", 401, ItemKind::radio},
    {"/USB Cable/Unplugged", 402, ItemKind::radio},
    {"/Position/Default", 500, ItemKind::radio},
    {"/Position/Portrait 0", 501, ItemKind::radio},
    {"/Position/Landscape 90", 502, ItemKind::radio},
    {"/Position/Landscape 270", 503, ItemKind::radio},
    {"/Position/Portrait 180", 504, ItemKind::radio},
    {"/Display Mode/600x800", 601, ItemKind::radio},
    {"/Display Mode/758x1024", 602, ItemKind::radio},
    {"/Display Mode/768x1024", 603, ItemKind::radio},
    {"/Display Mode/828x1200", 604, ItemKind::radio},
    {"/Display Mode/1200x1600", 605, ItemKind::radio},
    {"/Display Mode/1200x1600 half size", 606, ItemKind::radio},
    {"/Display Mode/758x1024 half size", 607, ItemKind::radio},
    {"/Display Mode/480x800", 608, ItemKind::radio},
    {"/Display Mode/1072x1448", 609, ItemKind::radio},
    {"/Display Mode/1072x1448 half size", 610, ItemKind::radio},
    {"/Display Mode/1072x1448 two thirds", 611, ItemKind::radio},
    {"/Display Mode/1404x1872", 612, ItemKind::radio},
    {"/Display Mode/1404x1872 half size", 613, ItemKind::radio},
    {"/Orientation/Portrait 0", 800, ItemKind::radio},
    {"/Orientation/Landscape 90", 801, ItemKind::radio},
    {"/Orientation/Landscape 270", 802, ItemKind::radio},
    {"/Orientation/Portrait 180", 803, ItemKind::radio},
    {"/Special Events/EVT_FOREGROUND", 701, ItemKind::plain},
    {"/Special Events/EVT_BACKGROUND", 702, ItemKind::plain},
    {"/Special Events/EVT_SDIN", 703, ItemKind::plain},
    {"/Special Events/EVT_SDOUT", 704, ItemKind::plain},
    {"/AVRCP Events/Play", 2001, ItemKind::plain},
    {"/AVRCP Events/Pause", 2002, ItemKind::plain},
    {"/AVRCP Events/Play-Pause", 2003, ItemKind::plain},
    {"/AVRCP Events/Stop", 2004, ItemKind::plain},
    {"/AVRCP Events/Next", 2005, ItemKind::plain},
    {"/AVRCP Events/Previous", 2006, ItemKind::plain},
    {"/AVRCP Events/Set volume/0", 2100, ItemKind::plain},
    {"/AVRCP Events/Set volume/10", 2101, ItemKind::plain},
    {"/AVRCP Events/Set volume/20", 2102, ItemKind::plain},
    {"/AVRCP Events/Set volume/30", 2103, ItemKind::plain},
    {"/AVRCP Events/Set volume/40", 2104, ItemKind::plain},
    {"/AVRCP Events/Set volume/50", 2105, ItemKind::plain},
    {"/AVRCP Events/Set volume/60", 2106, ItemKind::plain},
    {"/AVRCP Events/Set volume/70", 2107, ItemKind::plain},
    {"/AVRCP Events/Set volume/80", 2108, ItemKind::plain},
    {"/AVRCP Events/Set volume/90", 2109, ItemKind::plain},
    {"/AVRCP Events/Set volume/100", 2110, ItemKind::plain},
    {"/Quit", command_quit, ItemKind::plain},
};

// Whether the radio item of this command shows the present state of the device.
bool is_selected(int command);

} // namespace hw
