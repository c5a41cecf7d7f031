// SPDX-License-Identifier: MIT
// Walks over directory trees.
#include "kelvane/files.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr std::size_t path_limit = 1025; // bytes of an entry's path that are too many
constexpr int end_above = 1;             // a larger result ends the walk

// A directory that is being walked, and those around it.
struct Ancestor {
    dev_t device;
    ino_t inode;
    const Ancestor *parent;
};

// Links back to a directory that is being walked would multiply the walk at every turn.
bool leads_back(const Ancestor *chain, const struct stat &st) {
    for (; chain; chain = chain->parent)
        if (chain->device == st.st_dev && chain->inode == st.st_ino) return true;
    return false;
}

enum class VisitOrder { directory_first, contents_first, contents_only };

struct Walk {
    kv_walkproc proc;
    void *ctx;
    VisitOrder nested; // of the directories below the top

    int directory(const char *path, const struct stat &st, VisitOrder order,
                  const Ancestor *parent) const;
    int entry(const char *directory_path, const char *name, const Ancestor &parent) const;
};

int Walk::directory(const char *path, const struct stat &st, VisitOrder order,
                    const Ancestor *parent) const {
    DIR *dir = leads_back(parent, st) ? nullptr : kv_opendir(path);
    if (!dir) return 0;
    int result = 0;
    if (order == VisitOrder::directory_first) result = std::max(result, proc(path, 1, ctx));
    const Ancestor self{st.st_dev, st.st_ino, parent};
    while (result <= end_above) {
        const dirent *next = kv_readdir(dir);
        if (!next) break;
        result = std::max(result, entry(path, next->d_name, self));
    }
    kv_closedir(dir);
    if (order == VisitOrder::contents_first && result <= end_above)
        result = std::max(result, proc(path, 1, ctx));
    return result;
}

int Walk::entry(const char *directory_path, const char *name, const Ancestor &parent) const {
    if (std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0) return 0;
    const std::size_t head = std::strlen(directory_path), tail = std::strlen(name);
    if (head + 1 + tail >= path_limit) return 0;
    char path[path_limit];
    std::memcpy(path, directory_path, head);
    path[head] = '/';
    std::memcpy(path + head + 1, name, tail + 1);
    struct stat st;
    if (kv_stat(path, &st) != 0) return 0;
    return S_ISDIR(st.st_mode) ? directory(path, st, nested, &parent) : proc(path, 0, ctx);
}

} // namespace

extern "C" int recurse_action(const char *path, kv_walkproc proc, void *ctx, int dirsfirst,
                              int withdirs) {
    struct stat st;
    if (!proc || kv_stat(path, &st) != 0) return 0;
    if (!S_ISDIR(st.st_mode)) return withdirs ? proc(path, 0, ctx) : 0;
    const auto nested = dirsfirst ? VisitOrder::directory_first : VisitOrder::contents_first;
    const auto top = withdirs ? nested : VisitOrder::contents_only;
    return Walk{proc, ctx, nested}.directory(path, st, top, nullptr);
}
