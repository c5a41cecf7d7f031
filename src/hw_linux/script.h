// SPDX-License-Identifier: MIT
// The language of scripts: one action a line. docs/headless.md lists the verbs.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "hw_linux/action.h"

namespace hw {

struct ScriptError {
    int line; // from 1
    std::string message;
};

struct Script {
    std::vector<Action> actions;
    int64_t final_delay_ms = 0; // waits after the last action
    std::vector<ScriptError> errors;
};

// A script with errors is not meant to be played. Takes any bytes.
Script parse_script(std::string_view text);

} // namespace hw
