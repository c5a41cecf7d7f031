// SPDX-License-Identifier: MIT
// What screens are laid out for. When any of it changes, they are laid out and drawn anew.
#pragma once

#include <string>

#include "kelvane/events.h"
#include "kelvane/panel.h"
#include "lang/translations.h"
#include "theme/circumstances.h"

namespace selectors {

struct Surroundings {
    theme::Circumstances look;
    std::string language = lang::language();
    int orientation = GetOrientation();
    int panel_h = PanelHeight();
    bool operator==(const Surroundings &) const = default;
};

} // namespace selectors
