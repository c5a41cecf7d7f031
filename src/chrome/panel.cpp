// SPDX-License-Identifier: MIT
// There is no status panel in this build.
#include "chrome/panel.h"

int PanelHeight() {
    return 0;
}
