// SPDX-License-Identifier: MIT
// Walks the tables of settings screens, nested ones too.
#include "config/defaults.h"

namespace config {
namespace {

constexpr int kind_mask = 127;
constexpr int kind_nested = 31;

bool holds_value(int kind) {
    return kind != 7 && kind != 14 && kind != kind_nested;
}

// A table of the earlier layout starts with a pointer, whose low half is no kind.
bool is_current_layout(const iconfigedit *table) {
    return table->type >= 0 && table->type <= 255;
}

// The tables that the walk is in, the innermost first.
struct Walk {
    const iconfigedit *table;
    const Walk *outer;

    bool is_inside(const iconfigedit *other) const {
        return table == other || (outer && outer->is_inside(other));
    }
};

void add_table(const Walk &here, ihash values) {
    for (const iconfigedit *row = here.table; row->type != 0; row++) {
        const int kind = row->type & kind_mask;
        if (kind == kind_nested && row->submenu && !here.is_inside(row->submenu))
            add_table({row->submenu, &here}, values);
        else if (row->name && row->deflt && holds_value(kind))
            hash_add(values, row->name, row->deflt);
    }
}

} // namespace

std::vector<iconfigedit> converted(const iconfigedit *table) {
    std::vector<iconfigedit> rows;
    if (is_current_layout(table)) return rows;
    const auto *old = reinterpret_cast<const oldconfigedit *>(table);
    for (; old->type != 0; old++)
        rows.push_back({old->type, nullptr, old->text, nullptr, old->name, old->deflt,
                        old->variants, nullptr, nullptr});
    rows.push_back({});
    return rows;
}

void add_defaults(const iconfigedit *table, ihash values) {
    if (!table) return;
    const std::vector<iconfigedit> current = converted(table);
    add_table({current.empty() ? table : current.data(), nullptr}, values);
}

} // namespace config
