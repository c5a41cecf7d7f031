// SPDX-License-Identifier: MIT
// The status panel, as far as layouts must know of it.
#pragma once

#include "kelvane/panel.h"

namespace chrome {

// Whether the theme alone says how high the panel is.
bool panel_follows_theme();
// The size of the panel's letters.
int panel_text_size();

} // namespace chrome
