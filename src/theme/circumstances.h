// SPDX-License-Identifier: MIT
// What the looks of components depend on: who keeps one loads it anew when any of this changes.
#pragma once

#include "hw.h"
#include "kelvane/languages.h"
#include "theme/parameters.h"

namespace theme {

struct Circumstances {
    unsigned theme = theme_number();
    int dpi = device_display_dpi();
    bool is_turned = is_landscape();
    bool is_rtl = IsRTL() != 0;
    bool operator==(const Circumstances &) const = default;
};

} // namespace theme
