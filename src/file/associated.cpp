// SPDX-License-Identifier: MIT
// Where the state of a book lies: a tree for each kind that mirrors the books' own.
#include "file/associated.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <string>
#include <string_view>

#include "ground/guard.h"
#include "kelvane/files.h"

namespace {

constexpr std::string_view state_root = "./system/state/";

bool is_kind(char kind) {
    return std::find(std::begin(associated_kinds), std::end(associated_kinds), kind) !=
           std::end(associated_kinds);
}

// The name under which a component of the book's path appears in the state tree, where no
// component may lead out of it and no two may meet.
std::string mirrored(std::string_view component) {
    if (component == "..") return "%2E%2E";
    if (component.starts_with('%')) return "%25" + std::string(component.substr(1));
    return std::string(component);
}

// Appends the components of `path`, cleaned of empty ones and ".", with a slash before each.
void append_components(std::string &state, std::string_view path) {
    while (!path.empty()) {
        const std::string_view component = path.substr(0, path.find('/'));
        path.remove_prefix(std::min(path.size(), component.size() + 1));
        if (component.empty() || component == ".") continue;
        state += '/';
        state += mirrored(component);
    }
}

std::string state_path(std::string_view book, char kind) {
    std::string state(state_root);
    state += kind;
    if (book.starts_with('/')) state += "/%2F";
    append_components(state, book);
    return state;
}

enum class Purpose { find, create };

char *associated_file(const char *path, char kind, Purpose why) {
    if (!path || !*path || !is_kind(kind)) return nullptr;
    return ground::guarded(nullptr, [&]() -> char * {
        const std::string state = state_path(path, kind);
        struct stat st;
        if (why == Purpose::create)
            kv_buildpath(state.c_str());
        else if (kv_stat(state.c_str(), &st) != 0)
            return nullptr;
        return strdup(state.c_str());
    });
}

} // namespace

char *CheckAssociatedFile(const char *path, char kind) {
    return associated_file(path, kind, Purpose::find);
}

char *GetAssociatedFile(const char *path, char kind) {
    return associated_file(path, kind, Purpose::create);
}
