// SPDX-License-Identifier: MIT
// Forgets everything of the area at once.
#include "chrome/chrome.h"

#include "theme/parameters.h"

namespace chrome {

void reset() {
    reset_borders();
    reset_selection();
    reset_frames();
    reset_caption();
    theme::drop_ui_parameters();
}

} // namespace chrome
