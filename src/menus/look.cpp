// SPDX-License-Identifier: MIT
// Reads properties and pictures as a menu opens, so that each has the theme of its time. With the
// fonts of the theme their glyphs are kept between menus.
#include "menus/look.h"

#include <algorithm>
#include <optional>

#include "kelvane/languages.h"
#include "raster/bitmap.h"
#include "theme/circumstances.h"

namespace menus {
namespace {

constexpr int longest_length = 1 << 12;
constexpr int units_per_row = 12;

int length(int value, int least = 0) {
    return std::clamp(value, least, longest_length);
}

// Themes may say anything.
void cut_lengths(icontext_menu_properties &p) {
    for (int *value : {&p.item_border_indent_horizontal, &p.item_border_indent_vertical,
                       &p.separator_indent_horizontal, &p.separator_indent_vertical,
                       &p.separator_height, &p.marker_height, &p.marker_indent_horizontal,
                       &p.border_size, &p.border_radius, &p.title_height})
        *value = length(*value);
    p.item_height = length(p.item_height, 1);
}

LookPtr make_look(const icontext_menu_properties *properties) {
    using theme::Picture;
    auto look = std::make_shared<Look>();
    look->p = properties ? *properties : LoadContextMenuProperties();
    icontext_menu_properties &p = look->p;
    if (!properties)
        look->fonts = {text::FontPtr(p.font_normal), text::FontPtr(p.font_selected),
                       text::FontPtr(p.font_disabled)};
    cut_lengths(p);
    look->unit = length(GetThemeInt("unit.size", p.item_height / units_per_row), 1);
    const int small = p.font_normal ? p.font_normal->size * 4 / 5 : 4 * look->unit;
    look->small_font.reset(OpenFont("default", small, 1));
    look->bullet = Picture("context_menu_bullet_unselected");
    look->bullet_selected = Picture("context_menu_bullet_selected");
    look->arrow = Picture("context_menusubmenu_close");
    look->arrow_open = Picture("context_menu_submenu_opens");
    if (IsRTL()) look->mirrored_arrow = raster::mirrored(look->arrow.get(), MIRROR_HORIZONTAL);
    look->exit = Picture("close");
    look->exit_pressed = Picture("close_inv");
    look->pointer = Picture("context_menu_pointer");
    look->pointer_down = raster::mirrored(look->pointer.get(), MIRROR_VERTICAL);
    look->exit_x = length(GetThemeInt("button.exit.indent.horizontal", 2 * look->unit));
    look->exit_y = length(GetThemeInt("button.exit.indent.vertical", 5 * look->unit / 2));
    return look;
}

// Never destroyed: an application that just exits leaves its fonts to the system.
struct Kept {
    std::optional<theme::Circumstances>
        when; // read late: statics of other sources may not be made yet
    LookPtr look;
};
Kept &kept = *new Kept;

} // namespace

LookPtr load_look(const icontext_menu_properties *properties) {
    if (properties) return make_look(properties);
    const theme::Circumstances now;
    if (!kept.look || kept.when != now) kept = {now, make_look(nullptr)};
    return kept.look;
}

void drop_look() {
    kept.look.reset();
}

} // namespace menus
