// SPDX-License-Identifier: MIT
// Carries out what the user asks the view for, and shows what changed.
#include "dictionary_view/view.h"

#include <algorithm>
#include <cstdio>
#include <unistd.h>
#include <utility>

#include "chrome/panel.h"
#include "dictionary/keyboard.h"
#include "dictionary_view/choice.h"
#include "dictionary_view/draw.h"
#include "ground/guard.h"
#include "internal.h"
#include "kelvane/dialogs.h"
#include "kelvane/dictionary.h"
#include "kelvane/keyboard.h"
#include "kelvane/languages.h"
#include "kelvane/updates.h"
#include "modal/input.h"

namespace dictionary_view {
namespace {

constexpr int message_ms = 3000;
constexpr int longest_word = 60; // that can be typed

void update(const irect &r) {
    modal::update(raster::Box(r));
}

Place place_on_screen(const View &v) {
    const Look &look = v.look;
    return place_view({.screen_w = ScreenWidth(),
                       .foot = ScreenHeight() - PanelHeight(),
                       .word = v.mark.area(),
                       .unit = look.unit,
                       .border = look.border,
                       .rule = look.rule(),
                       .hairline = look.hairline,
                       .rim = look.rim(),
                       .tool_w = v.toolbar.tool_w(),
                       .tool_h = v.toolbar.tool_h(),
                       .row_h = look.list_row_h(),
                       .list_w = look.list_w(),
                       .sides = IsRTL() ? Sides::mirrored : Sides::as_written});
}

void show_article(View &v) {
    v.article.set(v.words.headword(), v.words.translation());
    v.article.lay_out(v.look, v.place.article);
}

void word_typed(char *text) {
    View *v = view();
    if (!v) return;
    v->has_keyboard = false;
    if (!text || !*text || v->is_to_close) return;
    ground::guarded([&] {
        find(*v, text);
        draw_view(*v);
        update(v->place.whole);
    });
}

// What the article is about, also where the dictionary does not have it.
std::string asked_word(const View &v) {
    return v.article.paragraphs().front().text;
}

// A layout of the dictionary's own goes before the user's.
void ask_for_word(View &v) {
    static char buffer[3 * longest_word + 1];
    std::snprintf(buffer, sizeof buffer, "%s", asked_word(v).c_str());
    v.has_keyboard = true;
    const std::string path = dictionary::keyboard_path;
    const std::string name = path.substr(0, path.rfind('.'));
    if (access(path.c_str(), R_OK) == 0)
        OpenCustomKeyboard(name.c_str(), "@DicWord", buffer, longest_word, KBD_NOHATCH, word_typed);
    else
        OpenKeyboard("@DicWord", buffer, longest_word, KBD_NOHATCH, word_typed);
}

void show_dictionary(View &v) {
    const std::string word = asked_word(v);
    v.name = open_name();
    find(v, word.c_str());
    draw_view(v);
    update(v.place.whole);
}

void dictionary_chosen(int index) {
    View *v = view();
    if (!v) return;
    v->has_menu = false;
    const auto names = std::move(v->names);
    if (index < 0 || index >= static_cast<int>(names.size()) || v->is_to_close) return;
    ground::guarded([&] {
        const bool is_open = choose(names[static_cast<size_t>(index)]);
        if (!is_open) Message(ICON_ERROR, "", "@DicNotOpened", message_ms);
        show_dictionary(*v);
    });
}

void offer_dictionaries(View &v) {
    constexpr size_t most_items = 999;
    v.names = all_names();
    v.names.resize(std::min(v.names.size(), most_items));
    v.items.assign(1, {ITEM_HEADER, 0, "@Dictionaries", nullptr});
    int selected = 1;
    for (size_t i = 0; i < v.names.size(); ++i) {
        if (v.names[i] == v.name) selected = static_cast<int>(i) + 1;
        v.items.push_back({ITEM_BULLET, static_cast<short>(i), v.names[i].c_str(), nullptr});
    }
    v.items.push_back({});
    v.has_menu = true;
    const irect &tool = v.place.tools[static_cast<size_t>(Tool::dictionaries)];
    OpenMenu(v.items.data(), selected, tool.x, v.place.body.y, dictionary_chosen);
}

// It may be one of another dictionary, which an application has opened meanwhile.
void show_word(View &v) {
    show_article(v);
    if (v.name == open_name()) {
        draw_body(v);
        return update(v.place.body);
    }
    v.name = open_name();
    draw_view(v);
    update(v.place.whole);
}

bool turn_page(View &v, Direction direction) {
    if (!v.article.turn_to(v.article.page() + static_cast<int>(direction))) return false;
    draw_article(v);
    update(v.place.article);
    return true;
}

void turn(View &v, Direction direction) {
    if (v.focus == Pane::article)
        turn_page(v, direction);
    else if (v.words.turn(direction))
        show_word(v);
}

} // namespace

void lay_out(View &v) {
    if (v.orientation != kvstate.orientation) v.mark = Mark();
    v.orientation = kvstate.orientation;
    v.place = place_on_screen(v);
    v.words.fill(v.place.rows);
    show_article(v);
}

void find(View &v, const char *word) {
    const std::string asked = word ? word : ""; // it may lie in a container
    const bool is_found = asked.empty() || LookupWord(asked.c_str(), nullptr, nullptr) != DICT_NONE;
    lay_out(v);
    if (is_found) return;
    v.article.set(asked, GetLangText("@DicNotFound"));
    v.article.lay_out(v.look, v.place.article);
}

void focus_on(View &v, Pane pane) {
    if (v.focus == pane) return;
    v.focus = pane;
    draw_tools(v);
    const irect &bar = v.place.toolbar;
    PartialUpdateBW(bar.x, bar.y, bar.w, bar.h);
}

void step(View &v, Direction direction) {
    if (v.words.step(direction)) show_word(v);
}

void one_page_up(View &v) {
    turn(v, Direction::back);
}

void one_page_down(View &v) {
    turn(v, Direction::forward);
}

void select_row(View &v, int row) {
    focus_on(v, Pane::list);
    if (v.words.select(row)) show_word(v);
}

void use(View &v, Tool tool) {
    switch (tool) {
    case Tool::word_list:
        return focus_on(v, Pane::list);
    case Tool::article:
        return focus_on(v, Pane::article);
    case Tool::voice:
        return Message(ICON_INFORMATION, "", "@DicNoVoice", message_ms);
    case Tool::keyboard:
        return ask_for_word(v);
    case Tool::dictionaries:
        return offer_dictionaries(v);
    case Tool::close:
        return close_view();
    }
}

} // namespace dictionary_view
