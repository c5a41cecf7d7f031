// SPDX-License-Identifier: MIT
// OpenDirectorySelector(): a list of folders in which one goes down and up. The first row chooses
// the folder that is shown, the next one leads up.
#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "ground/guard.h"
#include "kelvane/dialogs.h"
#include "kelvane/languages.h"
#include "kelvane/selectors.h"
#include "selectors/folder.h"
#include "selectors/list_screen.h"
#include "theme/parameters.h"

namespace selectors {
namespace {

constexpr int message_ms = 3000;

class DirectoryScreen : public ListScreen {
  public:
    DirectoryScreen(const char *title, std::string root, kv_pathhandler hproc, void *context)
        : ListScreen({title ? title : root.c_str(), {}, Turning::stays, {}}),
          has_own_title_(title != nullptr), root_(std::move(root)), hproc_(hproc),
          context_(context) {}

    // Shows a folder, with a row selected; false when it cannot be read.
    bool enter(const std::string &path, const std::string &from);

  private:
    void fill(int row, ilistrow &out) override;
    void told(int action, int row) override;

    int rows_above() const { return path_ == root_ ? 1 : 2; }
    // The folder of a row: its own one for the first.
    std::string path_of(int row) const;
    void go_to(const std::string &path, const std::string &from);
    void answer(const char *path);

    bool has_own_title_;
    std::string root_, path_;
    std::vector<std::string> names_;
    theme::Picture picture_{"library_folder"};
    kv_pathhandler hproc_;
    void *context_;
};

// Coming from a folder in it, that one is selected.
bool DirectoryScreen::enter(const std::string &path, const std::string &from) {
    auto names = read_folders(path);
    if (!names) return false;
    const auto found = std::find_if(names->begin(), names->end(), [&](const std::string &name) {
        return child_of(path, name) == from;
    });
    const auto place = static_cast<int>(found - names->begin());
    const bool is_found = found != names->end();
    std::string entered = path, title = path;
    // Nothing throws between here and the number of rows, which belongs to the names.
    path_ = std::move(entered);
    names_ = std::move(*names);
    if (!has_own_title_) set_title(std::move(title), Cut::start);
    list().set_count(rows_above() + static_cast<int>(names_.size()));
    list().select(is_found ? rows_above() + place : 0);
    return true;
}

void DirectoryScreen::fill(int row, ilistrow &out) {
    if (row == 0) {
        out.title = GetLangText("@ChooseFolder");
        out.value = path_.c_str() + (path_ == "/" ? 0 : path_.rfind('/') + 1);
    } else if (row < rows_above()) {
        out.title = GetLangText("@FolderUp");
    } else if (static_cast<size_t>(row - rows_above()) < names_.size()) {
        out.title = names_[static_cast<size_t>(row - rows_above())].c_str();
        out.picture = picture_.get();
        out.flags = LIST_ROW_ARROW;
    }
}

std::string DirectoryScreen::path_of(int row) const {
    if (row < 1) return path_;
    if (row < rows_above()) return parent_of(path_);
    return child_of(path_, names_[static_cast<size_t>(row - rows_above())]);
}

void DirectoryScreen::go_to(const std::string &path, const std::string &from) {
    if (enter(path, from))
        show();
    else
        Message(ICON_ERROR, "", "@FolderNotOpened", message_ms);
}

void DirectoryScreen::answer(const char *path) {
    if (hproc_) hproc_(path, context_);
}

// A finger that rests on a folder, or MENU, chooses it from outside.
void DirectoryScreen::told(int action, int row) {
    if (action == LIST_CLOSED) return answer(nullptr);
    if (action != LIST_CHOSEN && action != LIST_CONTEXT) return;
    const bool is_up = row > 0 && row < rows_above();
    const std::string path = path_of(row);
    if (row == 0 || (action == LIST_CONTEXT && !is_up)) {
        close_with_above(number());
        return answer(path.c_str());
    }
    go_to(path, is_up ? path_ : "");
}

int open_directories(const char *title, const char *root, const char *start, kv_pathhandler hproc,
                     void *context) {
    const std::string top = without_slash(root && *root ? root : "/");
    const auto screen = std::make_shared<DirectoryScreen>(title, top, hproc, context);
    const std::string first = without_slash(start ? start : "");
    const bool is_in = is_within(first, top) && screen->enter(first, "");
    return is_in || screen->enter(top, "") ? open(screen) : 0;
}

} // namespace
} // namespace selectors

int OpenDirectorySelector(const char *title, const char *root, const char *start,
                          kv_pathhandler hproc, void *context) {
    return ground::guarded(
        0, [&] { return selectors::open_directories(title, root, start, hproc, context); });
}
