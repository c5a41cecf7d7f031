// SPDX-License-Identifier: MIT
// The open configuration editor: a list for each table that was entered, and what edits a row.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "kelvane/config_editor.h"
#include "raster/bitmap_ptr.h"
#include "theme/parameters.h"

namespace config_editor {

struct Row {
    const iconfigedit *record;
    theme::Picture icon; // of the theme, where the record has none of its own
};

struct Level {
    int list = 0; // its number
    std::vector<Row> rows;
};

struct Editor {
    iconfig *config = nullptr;
    kv_configproc proc = nullptr;
    void *context = nullptr;
    std::vector<iconfigedit> converted;         // of a table of the earlier layout
    std::vector<std::unique_ptr<Level>> levels; // the last one is shown
    const iconfigedit *edited = nullptr;        // what a keyboard or menu above it is for
    int edited_at = 0;                          // its row in the list
    bool is_saved = true;                       // the last change was
    std::string title, hint, value;             // of the row that was asked for last
};

// The open one, or null.
Editor *editor();
// Stores a value of the row that is edited, if it may be one and is another one than before, and
// tells the application. A message says what is wrong with one that may not.
void take(const std::string &value);

// Opens what changes a row: a keyboard, a menu at the row, or nothing but the change itself.
void edit(const iconfigedit &row, const irect &place);
// Closes it, as the editor closes.
void stop_editing();

// As the screen closes.
void reset();

} // namespace config_editor
