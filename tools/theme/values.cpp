// SPDX-License-Identifier: MIT
// Checks the values of parameters as the library would read them.
#include "values.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "ground/number.h"

namespace tool {
namespace {

// A title margin is a length to which the library adds `title_gap`.
enum class Kind { number, length, title_margin, color, font, rectangle, text };
constexpr int title_gap = 5;

struct Known {
    std::string_view name;
    Kind kind;
};

constexpr Known known[] = {
    {"application.caption.button.right.indent.horizontal", Kind::length},
    {"application.caption.color.background", Kind::color},
    {"application.caption.font", Kind::font},
    {"application.caption.height", Kind::length},
    {"application.caption.text.uppercase", Kind::number},
    {"application.caption.title.position.landscape", Kind::rectangle},
    {"application.caption.title.position.portrait", Kind::rectangle},
    {"application.style", Kind::number},
    {"border.color", Kind::color},
    {"border.radius", Kind::length},
    {"border.size", Kind::length},
    {"button.exit.indent.horizontal", Kind::length},
    {"button.exit.indent.vertical", Kind::length},
    {"button.font.active", Kind::font},
    {"button.font.normal", Kind::font},
    {"button.font.normal.little_bit_smaller", Kind::font},
    {"context_menu.background.color.disabled", Kind::color},
    {"context_menu.background.color.normal", Kind::color},
    {"context_menu.background.style", Kind::number},
    {"context_menu.blackout", Kind::number},
    {"context_menu.border.radius", Kind::length},
    {"context_menu.border.size", Kind::length},
    {"context_menu.bullet.show", Kind::number},
    {"context_menu.bullet.style", Kind::number},
    {"context_menu.font.disabled", Kind::font},
    {"context_menu.font.disabled.color", Kind::color},
    {"context_menu.font.normal", Kind::font},
    {"context_menu.font.normal.color", Kind::color},
    {"context_menu.font.selected", Kind::font},
    {"context_menu.font.selected.color", Kind::color},
    {"context_menu.item.border.indent.horizontal", Kind::length},
    {"context_menu.item.border.indent.vertical", Kind::length},
    {"context_menu.item.height", Kind::length},
    {"context_menu.marker.color", Kind::color},
    {"context_menu.marker.height", Kind::length},
    {"context_menu.marker.indent.horizontal", Kind::length},
    {"context_menu.marker.style", Kind::number},
    {"context_menu.pointer.enable", Kind::number},
    {"context_menu.separator.color", Kind::color},
    {"context_menu.separator.frequency", Kind::number},
    {"context_menu.separator.height", Kind::length},
    {"context_menu.separator.indent.horizontal", Kind::length},
    {"context_menu.separator.indent.vertical", Kind::length},
    {"context_menu.separator.style", Kind::number},
    {"context_menu.title.height", Kind::length},
    {"dialog.button.header.size", Kind::length},
    {"dialog.button.separator.color", Kind::color},
    {"dialog.button.separator.style", Kind::number},
    {"dialog.corner.use_raunding", Kind::number},
    {"dialog.frame.spacing", Kind::length},
    {"dialog.icon.hatch", Kind::number},
    {"dialog.style", Kind::number},
    {"dialog.title.height", Kind::length},
    {"dialog.window.indent.vertical", Kind::length},
    {"dictionary.margin.left", Kind::title_margin},
    {"dictionary.margin.right", Kind::length},
    {"header.color", Kind::color},
    {"header.font", Kind::font},
    {"header.margin.left", Kind::title_margin},
    {"header.margin.right", Kind::length},
    {"hourglass.exit", Kind::number},
    {"hwconfig", Kind::text},
    {"keyboard.transparent.screen", Kind::number},
    {"menu.color.disabled", Kind::color},
    {"menu.color.normal", Kind::color},
    {"menu.color.selected", Kind::color},
    {"menu.font.active", Kind::font},
    {"menu.font.normal", Kind::font},
    {"pager.element.left.width", Kind::length},
    {"pager.element.page.width", Kind::length},
    {"pager.element.right.width", Kind::length},
    {"pager.font", Kind::font},
    {"pager.height", Kind::length},
    {"pager.indent.horizontal", Kind::length},
    {"panel.height", Kind::length},
    {"panel_position", Kind::number},
    {"popup.caption.font", Kind::font},
    {"popup.dialog.caption.to.upper", Kind::number},
    {"progressbar.width", Kind::length},
    {"selection.background.color", Kind::color},
    {"selection.background.style", Kind::number},
    {"selection.border.radius", Kind::length},
    {"selection.border.size", Kind::length},
    {"selection.indent.horizontal", Kind::length},
    {"selection.indent.left", Kind::length},
    {"selection.indent.right", Kind::length},
    {"selection.style", Kind::number},
    {"separator.color", Kind::color},
    {"separator.size", Kind::length},
    {"taskmgr.background_style", Kind::number},
    {"taskmgr.border.color", Kind::color},
    {"taskmgr.border.size", Kind::length},
    {"taskmgr.button.exit.indent.horizontal", Kind::length},
    {"taskmgr.indent_from_border", Kind::length},
    {"taskmgr.profile.font", Kind::font},
    {"taskmgr.profile.height", Kind::length},
    {"taskmgr.profile.present", Kind::number},
    {"taskmgr.separator.color", Kind::color},
    {"taskmgr.separator.size", Kind::length},
    {"taskmgr.shortcut.font", Kind::font},
    {"taskmgr.shortcut.height", Kind::length},
    {"taskmgr.shortcut.width", Kind::length},
    {"taskmgr.style", Kind::number},
    {"taskmgr.task.font", Kind::font},
    {"taskmgr.task.height", Kind::length},
    {"taskmgr.task.title.font", Kind::font},
    {"taskmgr.title.font", Kind::font},
    {"taskmgr.title.height", Kind::length},
    {"taskmgr.width", Kind::length},
    {"title.style", Kind::number},
    {"unit.size", Kind::length},
    {"use_dithering", Kind::number},
    {"window.color", Kind::color},
    {"window.font", Kind::font},
};

// The end of names that begin with an application's or a selection's own.
std::string_view without_owner(std::string_view name) {
    for (const std::string_view inner : {".application.style", ".selection."})
        if (const size_t at = name.find(inner); at != name.npos) return name.substr(at + 1);
    return name;
}

const Known *find(std::string_view name) {
    if (name.starts_with('^')) name.remove_prefix(1);
    const auto found = std::ranges::find(known, without_owner(name), &Known::name);
    return found != std::end(known) ? found : nullptr;
}

bool is_number(std::string_view text, long least, long most, int base) {
    const std::string whole(text);
    char *end;
    errno = 0;
    const long value = std::strtol(whole.c_str(), &end, base);
    if (end == whole.c_str() || errno == ERANGE) return false;
    const bool rest_is_blank =
        std::string_view(end).find_first_not_of(" \t") == std::string_view::npos;
    return rest_is_blank && value >= least && value <= most;
}

bool is_color(std::string_view text) {
    return is_number(text, 0, 0xFFFFFF, 0);
}

std::vector<std::string_view> fields(std::string_view text) {
    std::vector<std::string_view> out;
    for (size_t comma; (comma = text.find(',')) != text.npos; text.remove_prefix(comma + 1))
        out.push_back(text.substr(0, comma));
    out.push_back(text);
    return out;
}

std::string font_fault(std::string_view value) {
    constexpr long largest = 16384;
    if (value.starts_with('#')) value.remove_prefix(1);
    const auto parts = fields(value);
    if (parts.size() > 3) return "more than a face, a size and a colour";
    if (parts[0].empty()) return "no face";
    if (parts[0].starts_with(' ') || parts[0].ends_with(' ')) return "a blank beside the face";
    if (parts.size() > 1 && !is_number(parts[1], 1, largest, 10))
        return "the size is not a number from 1 to 16384";
    if (parts.size() > 2 && !is_color(parts[2])) return "the colour is not one from 0 to 0xFFFFFF";
    return {};
}

std::string quoted(std::string_view value) {
    std::string text = "\"";
    text.append(value).append("\" ");
    return text;
}

std::string rectangle_fault(std::string_view value) {
    if (value.empty()) return {}; // the default
    const auto parts = fields(value);
    if (parts.size() > 5) return "more than four numbers and flags";
    for (size_t i = 0; i < std::min<size_t>(parts.size(), 4); ++i)
        if (!is_number(parts[i], INT_MIN, INT_MAX, 0)) return quoted(parts[i]) + "is not a number";
    const bool other_flags =
        parts.size() == 5 && parts[4].find_first_not_of("BCDEFLMRSVbcdeflmrsv") != value.npos;
    return other_flags ? "a flag is none of B C D E F L M R S V" : "";
}

// A hundredth; a half goes up.
int64_t half_up(int64_t hundredfold) {
    const int64_t raised = hundredfold + 50;
    return raised / 100 - (raised % 100 < 0 ? 1 : 0);
}

std::string scaled_number(std::string_view text, int percent, int base) {
    const int64_t value = ground::parse_int(std::string(text).c_str(), nullptr, base);
    const int64_t scaled = half_up(value * percent);
    // What is thin stays visible.
    return std::to_string(value > 0 ? std::max<int64_t>(scaled, 1) : scaled);
}

std::string scaled_title_margin(std::string_view text, int percent) {
    const int64_t value = ground::parse_int(std::string(text).c_str());
    return std::to_string(half_up((value + title_gap) * percent) - title_gap);
}

// A size that counts from the far edge, which -1 reaches.
std::string scaled_size(std::string_view text, int percent) {
    const int64_t value = ground::parse_int(std::string(text).c_str());
    if (value >= 0) return scaled_number(text, percent, 0);
    return std::to_string(std::stol(scaled_number(std::to_string(value + 1), percent, 10)) - 1);
}

std::string joined(const std::vector<std::string> &parts) {
    std::string text;
    for (const std::string &part : parts) {
        if (!text.empty()) text += ',';
        text += part;
    }
    return text;
}

std::string scaled_font(std::string_view value, int percent) {
    const auto given = fields(value);
    std::vector<std::string> parts(given.begin(), given.end());
    if (parts.size() < 2) parts.emplace_back("12"); // the size without one
    parts[1] = scaled_number(parts[1], percent, 10);
    return joined(parts);
}

std::string scaled_rectangle(std::string_view value, int percent) {
    const auto given = fields(value);
    std::vector<std::string> parts(given.begin(), given.end());
    for (size_t i = 0; i < std::min<size_t>(parts.size(), 4); ++i)
        parts[i] = i < 2 ? scaled_number(parts[i], percent, 0) : scaled_size(parts[i], percent);
    return joined(parts);
}

// Letters to insert, to drop or to replace before one text becomes the other.
size_t distance(std::string_view a, std::string_view b) {
    std::vector<size_t> row(b.size() + 1);
    for (size_t j = 0; j <= b.size(); ++j) row[j] = j;
    for (size_t i = 1; i <= a.size(); ++i) {
        size_t diagonal = row[0];
        row[0] = i;
        for (size_t j = 1; j <= b.size(); ++j) {
            const size_t above = row[j];
            row[j] =
                std::min({diagonal + (a[i - 1] == b[j - 1] ? 0 : 1), above + 1, row[j - 1] + 1});
            diagonal = above;
        }
    }
    return row.back();
}

bool is_partner_variant(std::string_view name) {
    const size_t point = name.rfind('.');
    return point != name.npos && find(name.substr(0, point));
}

} // namespace

std::string value_fault(std::string_view name, std::string_view value) {
    const Known *parameter = find(name);
    if (!parameter) return {};
    std::string fault;
    switch (parameter->kind) {
    case Kind::number:
    case Kind::length:
    case Kind::title_margin:
        return is_number(value, INT_MIN, INT_MAX, 0)
                   ? ""
                   : quoted(value) + "is not a number; write one such as 12 or 0x0C";
    case Kind::color:
        return is_color(value) ? ""
                               : quoted(value) + "is not a colour; write one from 0 to 0xFFFFFF";
    case Kind::font:
        fault = font_fault(value);
        if (!fault.empty()) fault += "; a font is [#]FACE[,SIZE[,COLOUR]], such as #default,20,0";
        return fault;
    case Kind::rectangle:
        fault = rectangle_fault(value);
        if (!fault.empty()) fault += "; a rectangle is X,Y,W,H[,FLAGS], such as 10,0,-11,0,CM";
        return fault;
    case Kind::text:
        break;
    }
    return {};
}

std::string scaled_value(std::string_view name, std::string_view value, int percent) {
    const Known *parameter = find(name);
    const Kind kind = !parameter || value.empty() ? Kind::text : parameter->kind;
    switch (kind) {
    case Kind::length:
        return scaled_number(value, percent, 0);
    case Kind::title_margin:
        return scaled_title_margin(value, percent);
    case Kind::font:
        return scaled_font(value, percent);
    case Kind::rectangle:
        return scaled_rectangle(value, percent);
    case Kind::number:
    case Kind::color:
    case Kind::text:
        break;
    }
    return std::string(value);
}

std::string probably_meant(std::string_view name) {
    constexpr size_t near = 2, shortest = 8;
    if (name.starts_with('^')) name.remove_prefix(1);
    if (find(name) || is_partner_variant(name) || name.size() < shortest) return {};
    name = without_owner(name);
    for (const Known &parameter : known)
        if (name.size() <= parameter.name.size() + near && distance(name, parameter.name) <= near)
            return std::string(parameter.name);
    return {};
}

} // namespace tool
