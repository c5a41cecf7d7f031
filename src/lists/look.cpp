// SPDX-License-Identifier: MIT
// Reads pictures, fonts and lengths when a list is drawn for the first time in a theme.
#include "lists/look.h"

#include <algorithm>
#include <optional>

#include "kelvane/languages.h"
#include "kelvane/theme.h"
#include "raster/bitmap.h"
#include "theme/circumstances.h"

namespace lists {
namespace {

constexpr int longest_length = 1 << 10;

int length(const char *name, int deflt, int least) {
    return std::clamp(GetThemeInt(name, deflt), least, longest_length);
}

text::FontPtr font(const char *name, int size) {
    return text::FontPtr(OpenFont(name, std::max(size, 1), 1));
}

int size_of(const text::FontPtr &of, int otherwise) {
    return of ? of->size : otherwise;
}

void load_lengths(Look &look) {
    look.unit = length("unit.size", 4, 1);
    look.hairline = length("separator.size", 1, 1);
    look.margin = 6 * look.unit;
    look.row_h = length("context_menu.item.height", 12 * look.unit, 1);
    look.strip_h = length("pager.height", 12 * look.unit, 1);
    look.has_lines = GetThemeInt("context_menu.separator.frequency", 0) == 1;
    look.is_rtl = IsRTL() != 0;
    look.disabled_color = GetThemeInt("menu.color.disabled", 0x666666);
}

// Themes with larger text have larger rows too.
void load_fonts(Look &look) {
    const theme::UiParameters &ui = theme::ui_parameters();
    const int body = std::max(look.units(50), size_of(ui.window_font, 0));
    const int small = std::max(look.units(40), body * 4 / 5);
    look.body = font("default", body);
    look.bold = font("defaultb", body);
    look.small = font("default", small);
    look.counter = font("defaultb", std::max(look.units(45), size_of(ui.button_font_normal, 0)));
}

LookPtr make_look() {
    using theme::Picture;
    auto look = std::make_shared<Look>();
    load_lengths(*look);
    load_fonts(*look);
    look->bullet = Picture("context_menu_bullet_unselected");
    look->bullet_chosen = Picture("context_menu_bullet_selected");
    look->page_left = Picture("arrow_page_prev", "button_prev");
    look->page_right = Picture("arrow_page_next", "button_next");
    look->arrow = Picture("context_menusubmenu_close");
    if (look->is_rtl) look->mirrored_arrow = raster::mirrored(look->arrow.get(), MIRROR_HORIZONTAL);
    return look;
}

// Never destroyed: an application that just exits leaves its fonts to the system.
struct Kept {
    std::optional<theme::Circumstances> when;
    LookPtr look;
};
Kept &kept = *new Kept;

} // namespace

LookPtr look() {
    const theme::Circumstances now;
    if (!kept.look || kept.when != now) kept = {now, make_look()};
    return kept.look;
}

void drop_look() {
    kept.look.reset();
}

} // namespace lists
