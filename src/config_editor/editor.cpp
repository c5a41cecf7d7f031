// SPDX-License-Identifier: MIT
// Shows tables of settings as lists, one above the other.
#include "config_editor/editor.h"

#include <algorithm>
#include <utility>

#include "config/defaults.h"
#include "config_editor/values.h"
#include "ground/guard.h"
#include "internal.h"
#include "kelvane/dialogs.h"
#include "kelvane/languages.h"
#include "kelvane/lists.h"
#include "lists/look.h"

namespace config_editor {
namespace {

constexpr int message_ms = 5000;

std::shared_ptr<Editor> open_editor; // who calls the application keeps it: it may be closed there

void open_level(const char *title, const iconfigedit *table);

void fill_value(const iconfigedit &row, ilistrow &out) {
    if (!holds_value(row)) return;
    Editor &e = *open_editor;
    e.value = shown_value(row, value_of(e.config, row));
    out.value = e.value.c_str();
}

void fill(int index, ilistrow *out, void *context) {
    const Row &row = static_cast<Level *>(context)->rows[static_cast<size_t>(index)];
    Editor &e = *open_editor;
    ground::guarded([&] {
        e.title = GetLangText(row.record->text ? row.record->text : "");
        e.hint = GetLangText(row.record->hint ? row.record->hint : "");
        out->title = e.title.c_str();
        out->line = e.hint.empty() ? nullptr : e.hint.c_str();
        out->picture = row.record->icon ? row.record->icon : row.icon.get();
        out->font = lists::look()->body.get(); // rows with hints too
        if (kind_of(*row.record) == CONFIG_HEADING) {
            out->font = nullptr;
            out->flags |= LIST_ROW_HEADING;
        }
        if (kind_of(*row.record) == CONFIG_SUBMENU) out->flags |= LIST_ROW_ARROW;
        fill_value(*row.record, *out);
    });
}

void tell(const Editor &e, const iconfigedit *row) {
    if (e.proc) e.proc(row, e.context);
}

void choose(const Level &level, int index) {
    const std::shared_ptr<Editor> e = open_editor;
    const iconfigedit &row = *level.rows[static_cast<size_t>(index)].record;
    if (kind_of(row) == CONFIG_SUBMENU) return open_level(row.text, row.submenu);
    if (kind_of(row) == CONFIG_ACTION) return tell(*e, &row);
    if (!holds_value(row)) return;
    e->edited = &row;
    e->edited_at = index;
    edit(row, GetListRowRect(level.list, index));
}

// The application may open the editor again when it hears of the end.
void level_closed() {
    open_editor->levels.pop_back();
    if (!open_editor->levels.empty()) return;
    const auto ended = std::exchange(open_editor, nullptr);
    tell(*ended, nullptr);
}

void hear(int action, int index, void *context) {
    if (!open_editor) return;
    const Level &level = *static_cast<Level *>(context);
    if (action == LIST_CLOSED) return level_closed();
    if (action == LIST_CHOSEN) ground::guarded([&] { choose(level, index); });
}

std::vector<Row> rows_of(const iconfigedit *table) {
    std::vector<Row> rows;
    for (const iconfigedit *r = table; r && r->type != 0; ++r) {
        if (r->type & CONFIG_HIDDEN) continue;
        rows.push_back({r, {}});
        if (r->icon_theme && !r->icon) rows.back().icon = theme::Picture(r->icon_theme);
    }
    return rows;
}

// Rows with hints have two lines, and all of a table are as high then.
int row_height(const Level &level) {
    const auto has_hint = [](const Row &row) { return row.record->hint && *row.record->hint; };
    const bool any = std::any_of(level.rows.begin(), level.rows.end(), has_hint);
    return any ? LIST_LINED_ROWS : LIST_PLAIN_ROWS;
}

void open_level(const char *title, const iconfigedit *table) {
    auto level = std::make_unique<Level>();
    level->rows = rows_of(table);
    ilist list{};
    list.title = title;
    list.flags = LIST_TURNS;
    list.rows = {.count = static_cast<int>(level->rows.size()),
                 .height = row_height(*level),
                 .fill = fill,
                 .draw = nullptr,
                 .hproc = hear,
                 .context = level.get(),
                 .empty_icon = nullptr,
                 .empty_title = "@ConfigEmpty",
                 .empty_line = "@ConfigEmptyLine"};
    open_editor->levels.push_back(std::move(level));
    const int number = OpenList(&list);
    if (number == 0)
        open_editor->levels.pop_back();
    else
        open_editor->levels.back()->list = number;
}

// Other kinds offer only what they allow.
const char *refusal(const iconfigedit &row) {
    return kind_of(row) == CONFIG_PASSWORD ? "@PasswordTooLong" : "@NumberExpected";
}

} // namespace

Editor *editor() {
    return open_editor.get();
}

// A message waits, and meanwhile the editor may be closed. What could not be saved is tried again.
void take(const std::string &value) {
    const std::shared_ptr<Editor> e = open_editor;
    const iconfigedit *row = e ? std::exchange(e->edited, nullptr) : nullptr;
    if (!row) return;
    const std::string fitting = fitted(*row, value);
    if (!is_allowed(*row, fitting))
        return Message(ICON_WARNING, "", GetLangText(refusal(*row)), message_ms);
    if (e->is_saved && is_stored(e->config, *row, fitting)) return;
    e->is_saved = store(e->config, *row, fitting);
    UpdateListRow(e->levels.back()->list, e->edited_at);
    if (!e->is_saved) Message(ICON_ERROR, "", GetLangText("@ConfigNotSaved"), message_ms);
    if (open_editor == e) tell(*e, row);
}

void reset() {
    open_editor.reset();
}

} // namespace config_editor

int OpenConfigEditor(const char *title, iconfig *config, const iconfigedit *rows,
                     kv_configproc proc, void *context) {
    using namespace config_editor;
    if (!config || !kvstate.framebuffer) return 0;
    CloseConfigEditor();
    return ground::guarded(0, [&] {
        open_editor = std::make_shared<Editor>();
        Editor &e = *open_editor;
        e.config = config;
        e.proc = proc;
        e.context = context;
        if (rows) e.converted = config::converted(rows);
        open_level(title, e.converted.empty() ? rows : e.converted.data());
        if (open_editor->levels.empty()) open_editor.reset();
        return open_editor ? 1 : 0;
    });
}

// The lists ask for no rows of an editor that is gone: the lowest one takes all above it along.
void CloseConfigEditor() {
    using namespace config_editor;
    if (!open_editor) return;
    stop_editing();
    if (!open_editor->levels.empty()) CloseList(open_editor->levels[0]->list);
    open_editor.reset();
}

void UpdateConfigEditor() {
    using namespace config_editor;
    if (!open_editor) return;
    for (const auto &level : open_editor->levels)
        UpdateList(level->list, static_cast<int>(level->rows.size()));
}
