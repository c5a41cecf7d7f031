// SPDX-License-Identifier: MIT
// Makes the record of a keyboard.
#include "keyboard/board.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "chrome/panel.h"
#include "hw.h"
#include "kelvane/events.h"
#include "kelvane/keyboard.h"
#include "kelvane/languages.h"
#include "kelvane/theme.h"

namespace keyboard {
namespace {

constexpr const char *usual_enter_label = "@OK";
constexpr int multi_touch_above_kind = 2;
constexpr int block_touch_rows = 7;

const char *text_or_empty(const char *text) {
    return text ? text : "";
}

// The label follows the title, behind its NUL.
const char *enter_label_of(const Request &r) {
    const bool is_custom = r.title && (r.flags & KBD_CUSTOM_ENTER_KEY);
    return is_custom ? r.title + std::strlen(r.title) + 1 : usual_enter_label;
}

Selection selection_of(int flags) {
    return flags & KBD_NOSELECT ? Selection::none : Selection::all;
}

int most_touch_rows_of(const Layouts &layouts) {
    int rows = 1;
    for (const Language &l : layouts.languages) {
        if (!l.has_touch()) rows = std::max(rows, block_touch_rows);
        rows = std::max({rows, l.touch_lower.rows, l.touch_upper.rows, l.touch_numeric.rows});
    }
    return rows;
}

int touch_columns_of(const Language &l) {
    if (!l.has_touch()) return block_columns;
    return std::max({l.touch_lower.columns, l.touch_upper.columns, l.touch_numeric.columns});
}

int key_rows(const Layouts &layouts, Way way) {
    if (way == Way::finger) return most_touch_rows_of(layouts);
    const int rows = static_cast<int>(block_rows.size());
    return layouts.has_top_rows() ? rows : rows - 2;
}

Screen screen_of_device() {
    return {ScreenWidth(), ScreenHeight(), ScreenHeight() - PanelHeight(), GetOrientation()};
}

Measures measures_for(const Request &r, const Layouts &layouts, const Lengths &look, Way way,
                      int buttons) {
    return {.screen = screen_of_device(),
            .unit = look.unit,
            .border = look.border,
            .hairline = look.hairline,
            .way = way,
            .has_title = r.title && *GetLangText(r.title),
            .has_entry = r.buffer != nullptr,
            .rows = key_rows(layouts, way),
            .columns = touch_columns_of(layouts.language()),
            .buttons = buttons};
}

std::vector<Button> buttons_for(int flags, Way way, const std::string &enter_label) {
    std::vector<Button> buttons;
    if (way == Way::keys) return buttons;
    buttons.push_back({code::enter, enter_label});
    if (flags & KBD_NEXT_KEY) buttons.push_back({code::next, GetLangText("@Next")});
    buttons.push_back({code::cancel, GetLangText("@Cancel")});
    return buttons;
}

// What has no key in the rows for five keys.
std::vector<uint16_t> commands_for(const Board &b) {
    std::vector<uint16_t> commands;
    if (b.has_shift() && b.language().has_shift()) commands.push_back(code::shift);
    if (b.layouts.languages.size() > 1) commands.push_back(code::language);
    for (const uint16_t command : {code::clear, code::backspace, code::space, code::enter})
        commands.push_back(command);
    if (b.buffer && b.is_password()) commands.push_back(code::eye);
    if (b.flags & KBD_NEXT_KEY) commands.push_back(code::next);
    commands.push_back(code::cancel);
    return commands;
}

const TouchLayout &or_lower(const TouchLayout &layout, const Language &language) {
    return layout.empty() ? language.touch_lower : layout;
}

TouchLayout touch_for(const Board &b) {
    const Language &l = b.language();
    if (!l.has_touch()) return touch_of_block(b.block());
    switch (b.shift) {
    case Shift::upper:
        return or_lower(l.touch_upper, l);
    case Shift::numbers:
        return or_lower(l.touch_numeric, l);
    case Shift::lower:
        break;
    }
    return l.touch_lower;
}

} // namespace

void Listener::tell(char *text) const {
    if (proc) proc(text);
    if (proc_ex) proc_ex(text, data);
}

Board::Board(const Request &r, Layouts of, Listener to)
    : listener(to), layouts(std::move(of)), kind(kind_of(r.flags)), flags(r.flags),
      buffer(r.buffer), initial(text_or_empty(r.buffer)),
      title(r.title ? GetLangText(r.title) : ""), enter_label(GetLangText(enter_label_of(r))),
      enter_is_ok(std::strcmp(enter_label_of(r), usual_enter_label) == 0),
      entry(initial.c_str(), static_cast<size_t>(std::max(r.buffer ? r.maxlen : 0, 0)),
            selection_of(r.flags), kind),
      look(load_look()), way(way_of_device()), buttons(buttons_for(flags, way, enter_label)) {
    measures = measures_for(r, layouts, look, way, static_cast<int>(buttons.size()));
    place = place_keyboard(measures);
    show_block();
}

bool Board::follow_screen() {
    const Screen now = screen_of_device();
    if (now.orientation == measures.screen.orientation) return false;
    measures.screen = now;
    place = place_keyboard(measures);
    if (way == Way::finger) place.fill(touch_columns_of(language()), touch.rows);
    return true;
}

bool Board::is_password() const {
    return (flags & KBD_PASSWORD) != 0;
}

void Board::show_block() {
    if (way == Way::finger) {
        touch = touch_for(*this);
        place.fill(touch_columns_of(language()), touch.rows);
        return;
    }
    // Where memory is short, the one before stays.
    SelectionGrid made(block(), layouts.is_zoned(), commands_for(*this));
    if (const GridKey *before = grid ? grid->key() : nullptr; before && !layouts.is_zoned())
        made.go_to(*before);
    grid = std::move(made);
}

// Fingers go first on multi-touch panels, and where there is nothing else.
Way way_of_device() {
    const int panel = device_touchpanel();
    const bool by_finger = panel > multi_touch_above_kind || (panel > 0 && device_keyboard() == 0);
    return by_finger ? Way::finger : Way::keys;
}

Place place_for(const Request &r, const Layouts &layouts) {
    const Way way = way_of_device();
    const int buttons = way == Way::finger ? (r.flags & KBD_NEXT_KEY ? 3 : 2) : 0;
    return place_keyboard(measures_for(r, layouts, load_lengths(), way, buttons));
}

} // namespace keyboard
