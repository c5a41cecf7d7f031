// SPDX-License-Identifier: MIT
// What rows store and show. A file may hold anything: a value counts only when its row allows it.
#pragma once

#include <string>
#include <vector>

#include "kelvane/config_editor.h"

namespace config_editor {

struct Range {
    int least, greatest;
};

inline int kind_of(const iconfigedit &row) {
    return row.type & CONFIG_KIND;
}
// Whether the row stands for a setting.
bool holds_value(const iconfigedit &row);
Range range_of(const iconfigedit &row);
std::vector<const char *> variants_of(const iconfigedit &row);

// The setting in the form in which it is stored: its value, or else the row's default, or else what
// comes first. That of a password only tells whether there is one.
std::string value_of(iconfig *config, const iconfigedit &row);
// How people read a value.
std::string shown_value(const iconfigedit &row, const std::string &value);
// What was typed, brought into the row's range where it is a number.
std::string fitted(const iconfigedit &row, const std::string &typed);
// Whether a text can be stored.
bool is_allowed(const iconfigedit &row, const std::string &value);
// Whether it is there already. Of a password nobody knows.
bool is_stored(iconfig *config, const iconfigedit &row, const std::string &value);

// Writes and saves; false when the file cannot be written.
bool store(iconfig *config, const iconfigedit &row, const std::string &value);

} // namespace config_editor
