// SPDX-License-Identifier: MIT
// Groups of parameters that components read at once.
#include <cstring>
#include <string>

#include "kelvane/bitmaps.h"
#include "theme/builtin.h"
#include "theme/theme.h"

namespace {

// The caller owns what it gets, so a built-in picture is copied.
ibitmap *load_icon(const char *name) {
    ibitmap *icon = GetResource(name, theme::builtin_image(name));
    return theme::is_builtin_image(icon) ? CopyBitmap(icon) : icon;
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
    kv_getthemerect(name, &r, 10, 0, -11, 0, ALIGN_CENTER | VALIGN_MIDDLE | TEXT_DOTS);
    return r;
}

} // namespace

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
    return {GetThemeFont("application.caption.font", "defaultb,18,0"),
            GetThemeInt("application.caption.height", 36),
            GetThemeInt("application.caption.color.background", WHITE),
            load_title_rect("application.caption.title.position.landscape"),
            load_title_rect("application.caption.title.position.portrait"),
            GetThemeInt("application.caption.text.uppercase", 0)};
}

iselection_style LoadSelectionProperties(const char *key) {
    const iselection_style standard = load_style("", {0, 0, 0, 3, 5, 0, 0, 0});
    if (key == nullptr || std::strcmp(key, "default") == 0) return standard;
    return load_style(std::string(key) + ".", standard);
}
