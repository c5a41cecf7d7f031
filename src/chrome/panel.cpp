// SPDX-License-Identifier: MIT
// How high the status panel is. What it shows is drawn by the area of its name.
#include "chrome/panel.h"

#include <algorithm>
#include <utility>

#include "chrome/chrome.h"
#include "kelvane/events.h"
#include "kelvane/theme.h"
#include "theme/parameters.h"

namespace {

constexpr int most_of_screen = 3; // one part of so many

int mode = PANEL_BY_THEME;

// Room for the letters and as much around them as rows have.
int own_height() {
    return chrome::panel_text_size() * 9 / 4;
}

int wanted_height() {
    const int of_theme = GetThemeInt("panel.height", 0);
    return mode == PANEL_ON && of_theme < 1 ? own_height() : of_theme;
}

} // namespace

namespace chrome {

bool panel_follows_theme() {
    return mode == PANEL_BY_THEME;
}

int panel_text_size() {
    const ifont *label = theme::ui_parameters().button_font_normal.get();
    const int unit = std::clamp(GetThemeInt("unit.size", 4), 1, 64);
    return std::max(4 * unit, label ? label->size * 12 / 13 : 0);
}

void reset_panel() {
    mode = PANEL_BY_THEME;
}

} // namespace chrome

int SetPanelMode(int wanted) {
    const bool known = wanted >= PANEL_BY_THEME && wanted <= PANEL_OFF;
    return std::exchange(mode, known ? wanted : mode);
}

int PanelHeight() {
    if (mode == PANEL_OFF) return 0;
    return std::clamp(wanted_height(), 0, ScreenHeight() / most_of_screen);
}
