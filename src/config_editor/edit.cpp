// SPDX-License-Identifier: MIT
// Opens keyboards and menus for rows, and takes their answers.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "config_editor/editor.h"
#include "config_editor/values.h"
#include "ground/guard.h"
#include "ground/utf8.h"
#include "kelvane/events.h"
#include "kelvane/keyboard.h"
#include "kelvane/languages.h"
#include "kelvane/menus.h"
#include "kelvane/panel.h"
#include "kelvane/selectors.h"
#include "lists/look.h"
#include "selectors/moment.h"

namespace config_editor {
namespace {

constexpr int longest_text = 255, longest_secret = 64; // characters
constexpr int most_offered = 12;                       // numbers in a menu

std::array<char, 4 * longest_text + 1> typed; // the keyboard's text
// What the keyboard makes of a value that it cannot show whole, or else empty: the answer of a user
// who changes nothing.
std::string remnant;

// What the open menu offers: labels, and the value that each stands for.
struct Choices {
    std::vector<std::string> labels, values;
    std::vector<imenu> items;

    void add(std::string label, std::string value) {
        labels.push_back(std::move(label));
        values.push_back(std::move(value));
    }
    // The labels are all there.
    imenu *menu() {
        items.clear();
        for (size_t i = 0; i < labels.size(); ++i)
            items.push_back({ITEM_BULLET, static_cast<short>(i + 1), labels[i].c_str(), nullptr});
        items.push_back({});
        return items.data();
    }
};
Choices choices;

// Passwords do not stay in memory.
void text_typed(char *text) {
    ground::guarded([&] {
        const std::string copy = text ? text : "";
        std::fill(typed.begin(), typed.end(), '\0');
        if (text && (remnant.empty() || copy != remnant)) take(copy);
    });
}

// It reads characters as the text of the library is read, up to so many.
std::string as_keyboard_reads(const std::string &text, int most) {
    std::string read;
    const char *s = text.c_str(), *end = s + text.size();
    for (int i = 0; i < most && s < end; ++i) read += utf8::encoded(utf8::next(s, end));
    return read;
}

void open_keyboard(const iconfigedit &row, const std::string &text, int maxlen, int flags) {
    const std::string read = as_keyboard_reads(text, maxlen);
    remnant = read == text ? "" : read;
    std::snprintf(typed.data(), typed.size(), "%s", read.c_str());
    OpenKeyboard(row.text, typed.data(), maxlen, flags | KBD_NO_SHOW, text_typed);
}

void item_chosen(int index) {
    if (index < 1 || static_cast<size_t>(index) > choices.values.size()) return;
    ground::guarded([&] { take(std::string(choices.values[static_cast<size_t>(index) - 1])); });
}

// At the end of the row, over its value; the present one is selected.
void open_choices(const std::string &value, const irect &place) {
    if (choices.values.empty()) return;
    const auto present = std::find(choices.values.begin(), choices.values.end(), value);
    const bool is_there = present != choices.values.end();
    const int position = is_there ? static_cast<int>(present - choices.values.begin()) : -1;
    OpenMenu(choices.menu(), position, IsRTL() ? 0 : ScreenWidth(), place.y, item_chosen);
}

void offer_variants(const iconfigedit &row) {
    int position = 0;
    for (const char *variant : variants_of(row)) {
        const bool by_text = kind_of(row) == CONFIG_CHOICE;
        choices.add(variant, by_text ? variant : std::to_string(position));
        ++position;
    }
}

void path_chosen(const char *path, void *) {
    if (path) ground::guarded([&] { take(path); });
}

// The first variant is the folder that no way leads out of.
void open_folders(const iconfigedit &row, const std::string &value) {
    const auto variants = variants_of(row);
    const char *root = variants.empty() ? nullptr : variants[0];
    OpenDirectorySelector(row.text, root, value.c_str(), path_chosen, nullptr);
}

void font_chosen(const char *name, int, void *) {
    path_chosen(name, nullptr);
}

// Numbers are those of a time or a date that is allowed.
template <class... Numbers>
void take_numbers(const char *format, Numbers... numbers) {
    std::array<char, 48> text{};
    std::snprintf(text.data(), text.size(), format, numbers...);
    ground::guarded([&] { take(text.data()); });
}

void time_chosen(const imoment *chosen, void *) {
    if (chosen) take_numbers("%02d:%02d", chosen->hour, chosen->minute);
}

void date_chosen(const imoment *chosen, void *) {
    if (chosen) take_numbers("%04d-%02d-%02d", chosen->year, chosen->month, chosen->day);
}

void open_time(const iconfigedit &row, const std::string &value) {
    imoment start{};
    std::sscanf(value.c_str(), "%d:%d", &start.hour, &start.minute);
    selectors::open_time(row.text, start, time_chosen, nullptr);
}

void open_date(const iconfigedit &row, const std::string &value) {
    imoment start{};
    std::sscanf(value.c_str(), "%d-%d-%d", &start.year, &start.month, &start.day);
    selectors::open_date(row.text, start, date_chosen, nullptr);
}

// A menu shows all of them; its frame takes less than half a row.
bool fits_a_menu(Range range) {
    const int row_h = lists::look()->row_h;
    const int rows = (ScreenHeight() - PanelHeight() - row_h / 2) / row_h;
    return int64_t{range.greatest} - range.least < std::min(rows, most_offered);
}

void edit_number(const iconfigedit &row, const std::string &value, const irect &place) {
    const Range range = range_of(row);
    if (!fits_a_menu(range)) return open_keyboard(row, value, 11, KBD_NUMERIC);
    for (int n = range.least; n < range.greatest; ++n)
        choices.add(std::to_string(n), std::to_string(n));
    choices.add(std::to_string(range.greatest), std::to_string(range.greatest));
    open_choices(value, place);
}

} // namespace

void edit(const iconfigedit &row, const irect &place) {
    const std::string value = value_of(editor()->config, row);
    choices = {};
    switch (kind_of(row)) {
    case CONFIG_SWITCH:
        return take(value == "1" ? "0" : "1");
    case CONFIG_NUMBER:
        return edit_number(row, value, place);
    case CONFIG_CHOICE:
    case CONFIG_POSITION:
        offer_variants(row);
        return open_choices(value, place);
    case CONFIG_FONT:
        OpenFontSelector(value.c_str(), 0, font_chosen, nullptr);
        return;
    case CONFIG_FOLDER:
        return open_folders(row, value);
    case CONFIG_PASSWORD:
        return open_keyboard(row, "", longest_secret, KBD_PASSWORD);
    case CONFIG_TIME:
        return open_time(row, value);
    case CONFIG_DATE:
        return open_date(row, value);
    default:
        return open_keyboard(row, value, longest_text, KBD_NORMAL);
    }
}

void stop_editing() {
    editor()->edited = nullptr;
}

} // namespace config_editor
