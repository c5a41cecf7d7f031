// SPDX-License-Identifier: MIT
// The items of the window's menu, what they do and what they show.
#include "hw_linux/menu.h"

#include <algorithm>
#include <cstdio>

#include "hw.h"
#include "hw_linux/device.h"
#include "hw_linux/display_mode.h"
#include "hw_linux/recorder.h"
#include "hw_linux/settings.h"
#include "kelvane/events.h"

namespace hw {
namespace {

void set_battery(int level) {
    emulated().battery = level;
}

void set_card(int inserted) {
    emulated().card_inserted = inserted != 0;
}

void set_cable(int plugged) {
    emulated().charging = plugged != 0;
}

void set_position(int stored) {
    store_setting("orientation", stored);
    std::fprintf(stderr, "Orientation: %d installed. Restart application to apply changes.\n",
                 stored);
}

void set_display_mode(int mode) {
    store_setting("emu_resmode", mode);
    std::fprintf(stderr, "Videomode: %dx%d installed. Restart application to apply changes.\n",
                 resmode_list[mode].width, resmode_list[mode].height);
}

void turn_device(int turned) {
    std::fprintf(stderr, "Orientation: %d changed\n", turned);
    push_input(EVT_ORIENTATION, 0, turned, 0);
}

constexpr MenuAction battery{set_battery, [] { return emulated().battery; }};
constexpr MenuAction card{set_card, [] { return int{emulated().card_inserted}; }};
constexpr MenuAction cable{set_cable, [] { return int{emulated().charging}; }};
constexpr MenuAction position{set_position, [] { return get_orientation() + 1; }};
constexpr MenuAction display_mode{set_display_mode, get_display_mode};
constexpr MenuAction orientation{turn_device, hw_get_fb_orientation};
constexpr MenuAction event{[](int type) { hooks.post_to_main(type, 0, 0); }};
constexpr MenuAction media{[](int command) { hooks.post_to_main(EVT_AVRCP_COMMAND, command, 0); }};
constexpr MenuAction volume{
    [](int percent) { hooks.post_to_main(EVT_AVRCP_COMMAND, AVRCP_SET_VOLUME, percent); }};
constexpr MenuAction quit{[](int) { hooks.end_loop(); }};

constexpr MenuItem items[] = {
    {"/Battery/Level 5", 205, battery, 5},
    {"/Battery/Level 4", 204, battery, 4},
    {"/Battery/Level 3", 203, battery, 3},
    {"/Battery/Level 2", 202, battery, 2},
    {"/Battery/Level 1", 201, battery, 1},
    {"/SD Card/Inserted", 301, card, 1},
    {"/SD Card/Removed", 302, card, 0},
    {"/USB Cable/Plugged", 401, cable, 1},
    {"/USB Cable/Unplugged", 402, cable, 0},
    {"/Position/Default", 500, position, 0},
    {"/Position/Portrait 0", 501, position, 1},
    {"/Position/Landscape 90", 502, position, 2},
    {"/Position/Landscape 270", 503, position, 3},
    {"/Position/Portrait 180", 504, position, 4},
    {"/Display Mode/600x800", 601, display_mode, 0},
    {"/Display Mode/758x1024", 602, display_mode, 1},
    {"/Display Mode/768x1024", 603, display_mode, 2},
    {"/Display Mode/828x1200", 604, display_mode, 3},
    {"/Display Mode/1200x1600", 605, display_mode, 4},
    {"/Display Mode/1200x1600 half size", 606, display_mode, 5},
    {"/Display Mode/758x1024 half size", 607, display_mode, 6},
    {"/Display Mode/480x800", 608, display_mode, 7},
    {"/Display Mode/1072x1448", 609, display_mode, 8},
    {"/Display Mode/1072x1448 half size", 610, display_mode, 9},
    {"/Display Mode/1072x1448 two thirds", 611, display_mode, 10},
    {"/Display Mode/1404x1872", 612, display_mode, 11},
    {"/Display Mode/1404x1872 half size", 613, display_mode, 12},
    {"/Orientation/Portrait 0", 800, orientation, 0},
    {"/Orientation/Landscape 90", 801, orientation, 1},
    {"/Orientation/Landscape 270", 802, orientation, 2},
    {"/Orientation/Portrait 180", 803, orientation, 3},
    {"/Special Events/EVT_FOREGROUND", 701, event, EVT_FOREGROUND},
    {"/Special Events/EVT_BACKGROUND", 702, event, EVT_BACKGROUND},
    {"/Special Events/EVT_SDIN", 703, event, EVT_SDIN},
    {"/Special Events/EVT_SDOUT", 704, event, EVT_SDOUT},
    {"/AVRCP Events/Play", 2001, media, AVRCP_PLAY},
    {"/AVRCP Events/Pause", 2002, media, AVRCP_PAUSE},
    {"/AVRCP Events/Play-Pause", 2003, media, AVRCP_PLAY_PAUSE},
    {"/AVRCP Events/Stop", 2004, media, AVRCP_STOP},
    {"/AVRCP Events/Next", 2005, media, AVRCP_NEXT},
    {"/AVRCP Events/Previous", 2006, media, AVRCP_PREVIOUS},
    {"/AVRCP Events/Set volume/0", 2100, volume, 0},
    {"/AVRCP Events/Set volume/10", 2101, volume, 10},
    {"/AVRCP Events/Set volume/20", 2102, volume, 20},
    {"/AVRCP Events/Set volume/30", 2103, volume, 30},
    {"/AVRCP Events/Set volume/40", 2104, volume, 40},
    {"/AVRCP Events/Set volume/50", 2105, volume, 50},
    {"/AVRCP Events/Set volume/60", 2106, volume, 60},
    {"/AVRCP Events/Set volume/70", 2107, volume, 70},
    {"/AVRCP Events/Set volume/80", 2108, volume, 80},
    {"/AVRCP Events/Set volume/90", 2109, volume, 90},
    {"/AVRCP Events/Set volume/100", 2110, volume, 100},
    {"/Quit", command_quit, quit},
};

} // namespace

std::span<const MenuItem> menu_items() {
    return items;
}

const MenuItem *find_menu_item(int command) {
    const auto *found = std::find_if(std::begin(items), std::end(items),
                                     [=](const MenuItem &it) { return it.command == command; });
    return found == std::end(items) ? nullptr : found;
}

void run_command(int command) {
    std::fprintf(stderr, "Command %d selected\n", command);
    record("command %d", command);
    if (const MenuItem *item = find_menu_item(command)) item->action.run(item->value);
}

} // namespace hw
