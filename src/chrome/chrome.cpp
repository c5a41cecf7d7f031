// SPDX-License-Identifier: MIT
// Forgets everything of the area at once.
#include "chrome/chrome.h"

namespace chrome {

void reset() {
    reset_borders();
    reset_selection();
    reset_frames();
    reset_caption();
    reset_panel();
}

} // namespace chrome
