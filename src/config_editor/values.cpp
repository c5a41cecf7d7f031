// SPDX-License-Identifier: MIT
// Reads, checks, shows and writes settings by the kinds of their rows.
#include "config_editor/values.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <optional>
#include <string_view>

#include "kelvane/languages.h"
#include "kelvane/text.h"
#include "lang/clock.h"
#include "text/font_ptr.h"

namespace config_editor {
namespace {

constexpr size_t longest_secret = 64;
constexpr const char *hidden_text = "\u2022\u2022\u2022\u2022\u2022\u2022";

// Where there are too many digits for an int, the nearest one.
std::optional<int> nearest_number(std::string_view text) {
    int value = 0;
    const char *end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (stop != end || error == std::errc::invalid_argument) return std::nullopt;
    if (error == std::errc::result_out_of_range) return text[0] == '-' ? INT_MIN : INT_MAX;
    return value;
}

// In the one form in which all that read it see the same: "010" is 8 to ReadInt().
std::optional<int> number(std::string_view text) {
    const std::optional<int> value = nearest_number(text);
    return value && std::to_string(*value) == text ? value : std::nullopt;
}

// Digits where the pattern has a 0, and its own characters elsewhere.
bool has_form(std::string_view text, std::string_view pattern) {
    return std::equal(text.begin(), text.end(), pattern.begin(), pattern.end(),
                      [](char c, char p) { return p == '0' ? c >= '0' && c <= '9' : c == p; });
}

int part(std::string_view text, size_t from, size_t length) {
    return nearest_number(text.substr(from, length)).value_or(-1);
}

bool is_time(std::string_view text) {
    return has_form(text, "00:00") && part(text, 0, 2) < 24 && part(text, 3, 2) < 60;
}

int days_of(int year, int month) {
    constexpr int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leaps = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
    return month < 1 || month > 12 ? 0 : days[month - 1] + (month == 2 && leaps);
}

bool is_date(std::string_view text) {
    if (!has_form(text, "0000-00-00")) return false;
    const int day = part(text, 8, 2);
    return day >= 1 && day <= days_of(part(text, 0, 4), part(text, 5, 2));
}

bool is_in(Range range, std::optional<int> value) {
    return value && *value >= range.least && *value <= range.greatest;
}

bool is_variant(const iconfigedit &row, const std::string &value) {
    const auto variants = variants_of(row);
    return std::any_of(variants.begin(), variants.end(), [&](const char *v) { return value == v; });
}

// For rows without a default that counts.
std::string first_value(const iconfigedit &row) {
    switch (kind_of(row)) {
    case CONFIG_NUMBER:
        return std::to_string(std::clamp(0, range_of(row).least, range_of(row).greatest));
    case CONFIG_SWITCH:
    case CONFIG_POSITION:
        return "0";
    case CONFIG_CHOICE:
        return row.variants && row.variants[0] ? row.variants[0] : "";
    case CONFIG_TIME:
        return "00:00";
    case CONFIG_DATE:
        return "2000-01-01";
    default:
        return "";
    }
}

// The text itself stays where it is.
std::string hidden_secret(iconfig *config, const iconfigedit &row) {
    const char *stored = ReadString(config, row.name, nullptr);
    return stored && *stored ? hidden_text : "";
}

std::string switch_text(const iconfigedit &row, bool on) {
    const auto variants = variants_of(row);
    if (variants.size() == 2) return GetLangText(variants[on]);
    return GetLangText(on ? "@On" : "@Off");
}

// Of the family that the selector names, which opening the name gives.
std::string font_text(const std::string &name) {
    const text::FontPtr font(OpenFont(name.c_str(), 12, 1));
    return font && font->family ? font->family : name;
}

std::string variant_text(const iconfigedit &row, int position) {
    const auto variants = variants_of(row);
    const auto i = static_cast<size_t>(position);
    return i < variants.size() ? GetLangText(variants[i]) : "";
}

} // namespace

bool holds_value(const iconfigedit &row) {
    const int kind = kind_of(row);
    return row.name && kind >= CONFIG_TEXT && kind <= CONFIG_FOLDER && kind != CONFIG_HEADING;
}

Range range_of(const iconfigedit &row) {
    const auto limits = variants_of(row);
    const auto limit = [&](size_t i, int otherwise) {
        return i < limits.size() ? nearest_number(limits[i]).value_or(otherwise) : otherwise;
    };
    const int least = limit(0, INT_MIN);
    return {least, std::max(least, limit(1, INT_MAX))};
}

std::vector<const char *> variants_of(const iconfigedit &row) {
    std::vector<const char *> all;
    for (const char **v = row.variants; v && *v; ++v) all.push_back(*v);
    return all;
}

bool is_allowed(const iconfigedit &row, const std::string &value) {
    switch (kind_of(row)) {
    case CONFIG_NUMBER:
        return is_in(range_of(row), number(value));
    case CONFIG_SWITCH:
        return value == "0" || value == "1";
    case CONFIG_CHOICE:
        return is_variant(row, value);
    case CONFIG_POSITION:
        return is_in({0, static_cast<int>(variants_of(row).size()) - 1}, number(value));
    case CONFIG_TIME:
        return is_time(value);
    case CONFIG_DATE:
        return is_date(value);
    case CONFIG_PASSWORD:
        return value.size() <= longest_secret;
    default:
        return true;
    }
}

std::string fitted(const iconfigedit &row, const std::string &typed) {
    if (kind_of(row) != CONFIG_NUMBER) return typed;
    const std::optional<int> value = nearest_number(typed);
    const Range range = range_of(row);
    return value ? std::to_string(std::clamp(*value, range.least, range.greatest)) : typed;
}

bool is_stored(iconfig *config, const iconfigedit &row, const std::string &value) {
    if (kind_of(row) == CONFIG_PASSWORD) return false;
    const char *stored = ReadString(config, row.name, nullptr);
    return stored && value == stored;
}

std::string value_of(iconfig *config, const iconfigedit &row) {
    if (kind_of(row) == CONFIG_PASSWORD) return hidden_secret(config, row);
    if (const char *stored = ReadString(config, row.name, nullptr); stored)
        if (is_allowed(row, stored)) return stored;
    if (row.deflt && is_allowed(row, row.deflt)) return row.deflt;
    return first_value(row);
}

std::string shown_value(const iconfigedit &row, const std::string &value) {
    switch (kind_of(row)) {
    case CONFIG_SWITCH:
        return switch_text(row, value == "1");
    case CONFIG_CHOICE:
        return GetLangText(value.c_str());
    case CONFIG_POSITION:
        return variant_text(row, number(value).value_or(-1));
    case CONFIG_FONT:
        return font_text(value);
    case CONFIG_TIME:
        return lang::time_text(part(value, 0, 2), part(value, 3, 2));
    default:
        return value;
    }
}

bool store(iconfig *config, const iconfigedit &row, const std::string &value) {
    const bool is_secret = kind_of(row) == CONFIG_PASSWORD;
    if (is_secret && value.empty())
        DeleteString(config, row.name);
    else
        (is_secret ? WriteSecret : WriteString)(config, row.name, value.c_str());
    return SaveConfig(config) != 0;
}

} // namespace config_editor
