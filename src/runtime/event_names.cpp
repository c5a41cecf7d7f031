// SPDX-License-Identifier: MIT
// Names of device events, for logs.
#include <array>

#include "kelvane/events.h"

namespace {

constexpr int name_table_size = 512;

// Only what a device sends has a name.
constexpr auto names = [] {
    std::array<const char *, name_table_size> table{};
    table[EVT_KEYPRESS] = "EVT_KEYPRESS";
    table[EVT_KEYRELEASE] = "EVT_KEYRELEASE";
    table[EVT_KEYREPEAT] = "EVT_KEYREPEAT";
    table[EVT_POINTERUP] = "EVT_POINTERUP";
    table[EVT_POINTERDOWN] = "EVT_POINTERDOWN";
    table[EVT_POINTERMOVE] = "EVT_POINTERMOVE";
    table[EVT_POINTERLONG] = "EVT_POINTERLONG";
    table[EVT_POINTERHOLD] = "EVT_POINTERHOLD";
    table[EVT_MTSYNC] = "EVT_MTSYNC";
    table[EVT_FOREGROUND] = "EVT_FOREGROUND";
    table[EVT_BACKGROUND] = "EVT_BACKGROUND";
    table[EVT_SDIN] = "EVT_SDIN";
    table[EVT_SDOUT] = "EVT_SDOUT";
    return table;
}();

} // namespace

const char *evt2str(int code) {
    const bool named = code >= 0 && code < name_table_size && names[code];
    return named ? names[code] : "EVT_UNKNOWN";
}
