// SPDX-License-Identifier: MIT
// What the status panel has to show: the device's own news, and what the application sets.
#pragma once

#include <string>

namespace panel {

enum class Network { off, missing, connected };

struct Contents {
    std::string clock; // empty where the settings show none
    std::string text, pages;
    std::string percent;
    int battery_level = 0; // 0 to 5
    bool is_charging = false;
    bool is_locked = false;
    Network network = Network::off;
};

// As it is now. Throws bad_alloc.
Contents read_contents();
// Milliseconds until the clock shows another time.
int next_minute_ms();
// What the application has set is gone.
void reset_contents();

} // namespace panel
