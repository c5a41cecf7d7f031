// SPDX-License-Identifier: MIT
// Loads what most components need once, at its first use.
#include "theme/parameters.h"

#include <cstring>
#include <optional>

#include "kelvane/canvas.h"
#include "kelvane/theme.h"
#include "raster/bitmap.h"

namespace theme {
namespace {

// Never destroyed: an application that just exits leaves its fonts to the system.
std::optional<UiParameters> &parameters = *new std::optional<UiParameters>;
unsigned number = 0;

constexpr int standard_button_width = 124, standard_button_height = 32;

text::FontPtr load_font(const char *name, const char *deflt) {
    return text::FontPtr(GetThemeFont(name, deflt));
}

raster::BitmapPtr load_button(const char *name) {
    return raster::BitmapPtr(GetResource(name, nullptr));
}

// A theme that lacks one of the two gets a plain pair.
void complete_buttons(UiParameters &ui) {
    if (ui.button_normal && ui.button_selected) return;
    ui.button_normal = raster::make_white_bitmap(standard_button_width, standard_button_height);
    ui.button_selected = raster::make_white_bitmap(standard_button_width, standard_button_height);
    if (ui.button_selected)
        std::memset(ui.button_selected->data, 0xAA, raster::pixel_bytes(*ui.button_selected));
}

UiParameters load() {
    UiParameters ui{.title_style =
                        GetThemeInt("title.style", 0) == 1 ? TitleStyle::low : TitleStyle::standard,
                    .window_font = load_font("window.font", "default,20,0"),
                    .header_font = load_font("header.font", "#defaultb,16,0xffffff"),
                    .menu_font_normal = load_font("menu.font.normal", "#defaultb,18,0"),
                    .menu_font_active = load_font("menu.font.active", "#defaultb,18,0xffffff"),
                    .button_font_normal = load_font("button.font.normal", "#defaultb,18,0"),
                    .button_font_active = load_font("button.font.active", "#defaultb,18,0"),
                    .window_color = GetThemeInt("window.color", WHITE),
                    .header_color = GetThemeInt("header.color", BLACK),
                    .menu_color_normal = GetThemeInt("menu.color.normal", WHITE),
                    .menu_color_selected = GetThemeInt("menu.color.selected", BLACK),
                    .menu_color_disabled = GetThemeInt("menu.color.disabled", DGRAY),
                    .button_normal = load_button("button_normal"),
                    .button_selected = load_button("button_selected"),
                    .button_back = Picture("button_back"),
                    .button_prev = Picture("button_prev"),
                    .button_next = Picture("button_next")};
    complete_buttons(ui);
    return ui;
}

} // namespace

void drop_ui_parameters() {
    parameters.reset();
    ++number;
}

unsigned theme_number() {
    return number;
}

const UiParameters &ui_parameters() {
    if (!parameters) parameters = load();
    return *parameters;
}

} // namespace theme
