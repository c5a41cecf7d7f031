// SPDX-License-Identifier: MIT
// Asks the theme, with the defaults of a box that has none.
#include "dialogs/look.h"

#include <algorithm>
#include <optional>

#include "chrome/panel.h"
#include "internal.h"
#include "kelvane/events.h"
#include "kelvane/theme.h"

namespace dialogs {
namespace {

constexpr int icon_mask = 0xFFF;
constexpr int longest_length = 1 << 16;
constexpr int inverted_background = 1;

std::optional<Look> loaded;

Look load() {
    using theme::Picture;
    const int header_color = theme::ui_parameters().header_color;
    return {.separator_color = GetThemeInt("dialog.button.separator.color", header_color),
            .icons = {Picture("icon_information"), Picture("icon_question"),
                      Picture("icon_warning"), Picture("icon_error"), Picture("icon_wifi")},
            .bar_left = Picture("progress_left"),
            .bar_right = Picture("progress_right"),
            .bar_left_empty = Picture("progress_left_empty"),
            .bar_right_empty = Picture("progress_right_empty"),
            .bar_middle = Picture("progress_bar"),
            .label_font =
                text::FontPtr(GetThemeFont("button.font.normal.little_bit_smaller", nullptr))};
}

} // namespace

const Look &look() {
    if (!loaded) loaded = load();
    return *loaded;
}

void drop_look() {
    loaded.reset();
}

const ifont *window_font() {
    return theme::ui_parameters().window_font.get();
}

const ifont *label_font() {
    const ifont *own = look().label_font.get();
    return own ? own : theme::ui_parameters().button_font_normal.get();
}

const ibitmap *icon_of(int flags) {
    const size_t kind = static_cast<size_t>(flags & icon_mask);
    return kind >= 1 && kind <= look().icons.size() ? look().icons[kind - 1].get() : nullptr;
}

int theme_length(const char *name, int deflt) {
    return std::clamp(GetThemeInt(name, deflt), -longest_length, longest_length);
}

namespace {

// Where the device or the application decides on the status panel, its own height goes before what
// the theme says of it.
int rows_below() {
    const bool theme_decides = chrome::panel_follows_theme() && kvstate.panel_position != 1;
    return theme_decides ? theme_length("panel.height", -1) : PanelHeight();
}

} // namespace

Measures measures_with(const ibitmap *icon) {
    return {.screen_w = ScreenWidth(),
            .screen_h = ScreenHeight(),
            .spacing = theme_length("dialog.frame.spacing", 65),
            .below = rows_below(),
            .raised = theme_length("dialog.window.indent.vertical", 0),
            .bar_w = std::max(theme_length("progressbar.width", 266), 0),
            .icon_w = icon ? icon->width : 0,
            .icon_h = icon ? icon->height : 0};
}

bool inverts_selection() {
    return GetThemeInt("selection.background.style", 0) == inverted_background;
}

} // namespace dialogs
