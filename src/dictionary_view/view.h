// SPDX-License-Identifier: MIT
// The record of the open view, and what its keys and tools do.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "dictionary_view/article.h"
#include "dictionary_view/look.h"
#include "dictionary_view/mark.h"
#include "dictionary_view/place.h"
#include "dictionary_view/words.h"
#include "kelvane/menus.h"
#include "modal/takeover.h"

namespace dictionary_view {

enum class Pane { list, article };

// What a finger went down on.
struct Target {
    enum Part { nothing, tool, row, article, outside } part = nothing;
    int index = 0; // of a tool or a row
    bool operator==(const Target &) const = default;
};

struct View {
    int id = 0;
    modal::Takeover taken;
    Mark mark;
    Look look;
    Toolbar toolbar;
    Place place{};
    std::string name; // of the dictionary
    Words words;
    Article article;
    Pane focus = Pane::list;
    std::optional<Tool> pressed;
    Target touched;
    int down_x = 0, down_y = 0;
    int orientation = 0; // of the screen that it was laid out for
    bool is_to_close = false;
    bool has_keyboard = false, has_menu = false;

    std::vector<std::string> names; // in the open menu, whose labels they are
    std::vector<imenu> items;
};

// Null while none is open.
View *view();
int view_handler(int type, int par1, int par2);
// True for events that were queued for a view that is gone.
bool is_for_former_view();
// Closes the view; it has the input.
void close_view();
// Takes it away as the screen closes.
void reset();

// Lays everything out around the dictionary's current word, for the screen as it is held now.
void lay_out(View &v);
// Looks a word up, and lays it out with its neighbours. A word that is not there is told of; none
// at all is the current one.
void find(View &v, const char *word);

// What keys and fingers ask for. Each draws and shows what changes.
void focus_on(View &v, Pane pane);
void step(View &v, Direction direction);
// The page before or after, of the pane in use.
void one_page_up(View &v);
void one_page_down(View &v);
void select_row(View &v, int row);
void use(View &v, Tool tool);

} // namespace dictionary_view
