// SPDX-License-Identifier: MIT
// Does to the device what a script says.
#include "hw_linux/action.h"

#include "hw_linux/device.h"
#include "hw_linux/input.h"
#include "hw_linux/picture.h"
#include "hw_linux/recorder.h"
#include "kelvane/events.h"

namespace hw {

void perform(const Action &action) {
    switch (action.verb) {
    case Verb::key:
        return set_key_bit(action.par1, action.type == EVT_KEYPRESS);
    case Verb::pointer:
        return panel_pointer_input(action.type, action.par1, action.par2);
    case Verb::raw:
        record("raw %d %d %d %d", action.type, action.mod, action.par1, action.par2);
        return push_input(action.type, action.mod, action.par1, action.par2);
    case Verb::command:
        return run_command(action.par1);
    case Verb::frame:
        save_picture(action.file.c_str());
        return;
    case Verb::close:
        window_closed();
    }
}

} // namespace hw
