// SPDX-License-Identifier: MIT
// Groups of parameters that components read at once.
#include <cstdio>
#include <cstring>
#include <string>

#include "ground/guard.h"
#include "hw.h"
#include "kelvane/bitmaps.h"
#include "kelvane/events.h"
#include "kelvane/theme.h"

namespace {

// How many percent of their own size defaults have on this panel: the least in the steps of the
// themes that make a target of 48 pixels 7 mm high.
int panel_percent() {
    constexpr int target = 48, least_mm = 7, largest = 175, step = 25;
    constexpr double mm_per_inch = 25.4;
    int percent = 100;
    while (percent < largest &&
           target * percent * mm_per_inch < 100.0 * least_mm * device_display_dpi())
        percent += step;
    return percent;
}

// A default in pixels that is meant for 167 dots an inch, on this panel; a half goes up.
int scaled(int length) {
    return (length * panel_percent() + 50) / 100;
}

// A short text, made without memory that could be missing.
struct ShortText {
    char text[64];
    template <class... Parts>
    explicit ShortText(const char *format, Parts... parts) {
        std::snprintf(text, sizeof text, format, parts...);
    }
};

ifont *load_scaled_font(const char *name, const char *face, int size, const char *color) {
    return GetThemeFont(name, ShortText("%s,%d,%s", face, scaled(size), color).text);
}

// A theme without arrows gets white ones.
ibitmap *load_icon(const char *name) {
    alignas(ibitmap) static char white[] = "*(20, 30)";
    return GetResource(name, reinterpret_cast<ibitmap *>(white));
}

iselection_style load_style(const std::string &prefix, const iselection_style &deflt) {
    const auto value = [&prefix](const char *name, int otherwise) {
        return GetThemeInt((prefix + "selection." + name).c_str(), otherwise);
    };
    return {value("style", deflt.style),
            value("background.color", deflt.background_color),
            value("background.style", deflt.background_style),
            value("border.size", deflt.border_size),
            value("border.radius", deflt.border_radius),
            value("indent.horizontal", deflt.indent_horizontal),
            value("indent.left", deflt.indent_left),
            value("indent.right", deflt.indent_right)};
}

irect load_title_rect(const char *name) {
    irect r;
    const int indent = scaled(24);
    kv_getthemerect(name, &r, indent, 0, -1 - indent, 0, ALIGN_LEFT | VALIGN_MIDDLE | TEXT_DOTS);
    return r;
}

} // namespace

itaskmgr_properties LoadTaskManagerProperties() {
    const int border_size = GetThemeInt("taskmgr.border.size", 3);
    return {
        .border_size = border_size,
        .title_height = GetThemeInt("taskmgr.title.height", 52),
        .button_exit_indent_horizontal = GetThemeInt(
            "taskmgr.button.exit.indent.horizontal",
            GetThemeInt("application.caption.button.right.indent.horizontal", border_size)),
        .title_font = GetThemeFont("popup.caption.font",
                                   GetThemeString("taskmgr.title.font", "#defaultb,21,0xffffff")),
        .task_font = GetThemeFont("taskmgr.task.font", "#default,19,0"),
        .task_title_font = GetThemeFont("taskmgr.task.title.font", "#defaultb,19,0"),
        .task_height = GetThemeInt("taskmgr.task.height", 48),
        .style = GetThemeInt("taskmgr.style", 0),
        .profile_present = GetThemeInt("taskmgr.profile.present", 0),
        .profile_height = GetThemeInt("taskmgr.profile.height", 97),
        .profile_font = GetThemeFont("taskmgr.profile.font", "#default,24,0"),
        .shortcut_height = GetThemeInt("taskmgr.shortcut.height", 97),
        .shortcut_width = GetThemeInt("taskmgr.shortcut.width", 131),
        .shortcut_font = GetThemeFont("taskmgr.shortcut.font", "#default,19,0"),
        .width = GetThemeInt("taskmgr.width", 533),
        .separator_size = GetThemeInt("taskmgr.separator.size", 1),
        .indent_from_border = GetThemeInt("taskmgr.indent_from_border", 24),
        .background_style = GetThemeInt("taskmgr.background_style", 0),
        .separator_color =
            GetThemeInt("taskmgr.separator.color", GetThemeInt("separator.color", BLACK)),
        .border_color = GetThemeInt("taskmgr.border.color", GetThemeInt("border.color", BLACK)),
    };
}

icontext_menu_properties LoadContextMenuProperties() {
    const auto value = [](const char *name, int deflt) {
        return GetThemeInt(ShortText("context_menu.%s", name).text, deflt);
    };
    const auto length = [&value](const char *name, int deflt) {
        return value(name, scaled(deflt));
    };
    const auto font = [](const char *name, const char *face, const char *color) {
        return load_scaled_font(ShortText("context_menu.font.%s", name).text, face, 20, color);
    };
    icontext_menu_properties p{};
    p.font_normal = font("normal", "default", "0");
    p.font_selected = font("selected", "defaultb", "0xFFFFFF");
    p.font_disabled = font("disabled", "default", "0x666666");
    p.background_color_normal = value("background.color.normal", WHITE);
    p.background_color_disabled = value("background.color.disabled", WHITE);
    p.blackout = value("blackout", 0);
    p.item_height = length("item.height", 48);
    p.item_border_indent_horizontal = length("item.border.indent.horizontal", 18);
    p.item_border_indent_vertical = length("item.border.indent.vertical", 6);
    p.separator_indent_horizontal = length("separator.indent.horizontal", 18);
    p.separator_indent_vertical = length("separator.indent.vertical", 4);
    p.separator_height = length("separator.height", 1);
    p.separator_style = value("separator.style", 0);
    p.separator_color = value("separator.color", BLACK);
    p.separator_frequency = value("separator.frequency", 2);
    p.marker_height = length("marker.height", 4);
    p.marker_indent_horizontal = length("marker.indent.horizontal", 0);
    p.marker_style = value("marker.style", 1);
    p.marker_color = value("marker.color", BLACK);
    p.border_size = value("border.size", GetThemeInt("border.size", scaled(3)));
    p.border_radius = value("border.radius", GetThemeInt("border.radius", scaled(8)));
    p.title_height = value("title.height", GetThemeInt("dialog.title.height", scaled(52)));
    p.enable_pointer = value("pointer.enable", 1);
    p.font_normal_color = value("font.normal.color", BLACK);
    p.font_selected_color = value("font.selected.color", WHITE);
    p.font_disabled_color = value("font.disabled.color", 0x666666);
    p.bullet_show = value("bullet.show", 1);
    p.bullet_style = value("bullet.style", 0);
    p.background_style = value("background.style", 0);
    return p;
}

ipager LoadPagerProperties() {
    ipager p{};
    p.page_font = GetThemeFont("pager.font", "defaultb,18,0");
    p.height = GetThemeInt("pager.height", 42);
    p.indent_horizontal = GetThemeInt("pager.indent.horizontal", 35);
    p.left_width = GetThemeInt("pager.element.left.width", 180);
    p.page_width = GetThemeInt("pager.element.page.width", 160);
    p.rigth_width = GetThemeInt("pager.element.right.width", 180);
    p.separator_size = GetThemeInt("separator.size", 1);
    p.icon_left = load_icon("arrow_page_prev");
    p.icon_right = load_icon("arrow_page_next");
    return p;
}

icaption_properties LoadApplicationCaptionProperties() {
    return {load_scaled_font("application.caption.font", "defaultb", 24, "0"),
            GetThemeInt("application.caption.height", scaled(48)),
            GetThemeInt("application.caption.color.background", WHITE),
            load_title_rect("application.caption.title.position.landscape"),
            load_title_rect("application.caption.title.position.portrait"),
            GetThemeInt("application.caption.text.uppercase", 0)};
}

iselection_style LoadSelectionProperties(const char *key) {
    iselection_style style = {0, 0, 0, 3, 5, 0, 0, 0};
    ground::guarded([&] { // what was read before memory ran out counts
        style = load_style("", style);
        if (key && std::strcmp(key, "default") != 0)
            style = load_style(std::string(key) + ".", style);
    });
    return style;
}
