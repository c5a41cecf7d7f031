// SPDX-License-Identifier: MIT
#include "chrome/chrome.h"

#include "theme/parameters.h"

namespace chrome {

void reset() {
    reset_borders();
    reset_selection();
    reset_frames();
    reset_caption();
    reset_pager();
    reset_keylock();
    theme::drop_ui_parameters();
}

} // namespace chrome
