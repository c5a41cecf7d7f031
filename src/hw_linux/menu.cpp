// SPDX-License-Identifier: MIT
// What the commands of the window's menu do.
#include "hw_linux/menu.h"

#include <cstdio>

#include "hw_linux/device.h"
#include "hw_linux/display_mode.h"
#include "hw_linux/recorder.h"
#include "hw_linux/settings.h"
#include "kelvane/events.h"

namespace hw {
namespace {

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

void turn_device(int orientation) {
    std::fprintf(stderr, "Orientation: %d changed\n", orientation);
    push_input(EVT_ORIENTATION, 0, orientation, 0);
}

constexpr bool in_range(int command, int first, int last) {
    return command >= first && command <= last;
}

} // namespace

void run_command(int command) {
    std::fprintf(stderr, "Command %d selected\n", command);
    record("command %d", command);
    if (in_range(command, 201, 205)) emulated().battery = command - 200;
    if (in_range(command, 301, 302)) emulated().card_inserted = command == 301;
    if (in_range(command, 401, 402)) emulated().charging = command == 401;
    if (in_range(command, 500, 504)) set_position(command - 500);
    if (in_range(command, 601, 600 + display_modes)) set_display_mode(command - 601);
    if (in_range(command, command_orientation, command_orientation + 3))
        turn_device(command - command_orientation);
    if (in_range(command, 2100, 2110))
        hooks.post_to_main(EVT_AVRCP_COMMAND, AVRCP_SET_VOLUME, 10 * (command - 2100));
    switch (command) {
    case 701:
        return hooks.post_to_main(EVT_FOREGROUND, 0, 0);
    case 702:
        return hooks.post_to_main(EVT_BACKGROUND, 0, 0);
    case 703:
        return hooks.post_to_main(EVT_SDIN, 0, 0);
    case 704:
        return hooks.post_to_main(EVT_SDOUT, 0, 0);
    case 2001:
        return hooks.post_to_main(EVT_AVRCP_COMMAND, AVRCP_PLAY, 0);
    case 2002:
        return hooks.post_to_main(EVT_AVRCP_COMMAND, AVRCP_PAUSE, 0);
    case 2003:
        return hooks.post_to_main(EVT_AVRCP_COMMAND, AVRCP_PLAY_PAUSE, 0);
    case 2004:
        return hooks.post_to_main(EVT_AVRCP_COMMAND, AVRCP_STOP, 0);
    case 2005:
        return hooks.post_to_main(EVT_AVRCP_COMMAND, AVRCP_NEXT, 0);
    case 2006:
        return hooks.post_to_main(EVT_AVRCP_COMMAND, AVRCP_PREVIOUS, 0);
    case command_quit:
        return hooks.end_loop();
    default:
        return;
    }
}

bool is_selected(int command) {
    const EmulatedState &state = emulated();
    return command == 200 + state.battery || command == (state.card_inserted ? 301 : 302) ||
           command == (state.charging ? 401 : 402) || command == 501 + get_orientation() ||
           command == 601 + get_display_mode() ||
           command == command_orientation + hw_get_fb_orientation();
}

} // namespace hw
