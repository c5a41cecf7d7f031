// SPDX-License-Identifier: MIT
// What scripts and the monkey do to the device, as a person at the window would.
#pragma once

#include <cstdint>
#include <string>

namespace hw {

enum class Verb { key, pointer, raw, command, frame, await, clock, close };

struct Action {
    Verb verb = Verb::raw;
    int64_t delay_ms = 0; // to wait after the action before this one
    // key: type, par1 = bit of the key table. pointer: type and panel pixels. raw: as it is.
    // command: par1.
    int type = 0, mod = 0, par1 = 0, par2 = 0;
    int64_t time_s = 0;    // clock: of the wall clock
    std::string file = {}; // frame: where the picture goes; await: the name of a task
    int line = 0;          // of the script, from 1; 0 for what stands in none
};

// Does it on behalf of `script`, whose name a failure is said with; then false.
bool perform(const Action &action, const char *script);

} // namespace hw
