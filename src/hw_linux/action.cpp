// SPDX-License-Identifier: MIT
// Does to the device what a script says.
#include "hw_linux/action.h"

#include <climits>
#include <cstdio>

#include "hw_linux/clock.h"
#include "hw_linux/device.h"
#include "hw_linux/input.h"
#include "hw_linux/picture.h"
#include "hw_linux/recorder.h"
#include "hw_linux/shown.h"
#include "kelvane/events.h"

namespace hw {
namespace {

bool save_frame(const Action &action, const char *script) {
    char asker[PATH_MAX + 32];
    std::snprintf(asker, sizeof asker, "%s:%d: frame", script, action.line);
    refresh_pixels();
    return save_picture(action.file.c_str(), asker);
}

} // namespace

bool perform(const Action &action, const char *script) {
    switch (action.verb) {
    case Verb::key:
        set_key_bit(action.par1, action.type == EVT_KEYPRESS);
        break;
    case Verb::pointer:
        panel_pointer_input(action.type, action.par1, action.par2);
        break;
    case Verb::raw:
        record("raw %d %d %d %d", action.type, action.mod, action.par1, action.par2);
        push_input(action.type, action.mod, action.par1, action.par2);
        break;
    case Verb::command:
        run_command(action.par1);
        break;
    case Verb::frame:
        return save_frame(action, script);
    case Verb::await:
        std::fprintf(stderr, "%s:%d: await: %s was not shown\n", script, action.line,
                     action.file.c_str());
        return false;
    case Verb::clock:
        set_wall_clock(action.time_s);
        break;
    case Verb::close:
        window_closed();
    }
    return true;
}

} // namespace hw
