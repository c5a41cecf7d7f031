// SPDX-License-Identifier: MIT
// Walks over directory trees.
#include "kelvane/files.h"

#include <algorithm>
#include <cstring>
#include <set>
#include <utility>

#include "file/directory.h"
#include "ground/guard.h"

namespace {

constexpr std::size_t path_limit = 1025; // bytes of an entry's path that are too many
constexpr int end_above = 1;             // a larger result ends the reading

using Identity = std::pair<dev_t, ino_t>;

Identity identity(const struct stat &st) {
    return {st.st_dev, st.st_ino};
}

// A directory that is being walked, and those around it.
struct Ancestor {
    Identity self;
    const Ancestor *parent;
};

// Links back to a directory that is being walked would multiply the walk at every turn.
bool leads_back(const Ancestor *chain, const Identity &directory) {
    for (; chain; chain = chain->parent)
        if (chain->self == directory) return true;
    return false;
}

bool is_link(const char *path) {
    struct stat st;
    return lstat(path, &st) == 0 && S_ISLNK(st.st_mode);
}

enum class VisitOrder { directory_first, contents_first, contents_only };

class Walk {
  public:
    Walk(kv_walkproc proc, void *ctx, VisitOrder nested)
        : proc_(proc), ctx_(ctx), nested_(nested) {}
    int directory(const char *path, const struct stat &st, VisitOrder order,
                  const Ancestor *parent);

  private:
    int entry(const char *directory_path, const char *name, const Ancestor &parent);
    bool may_follow(const char *path, const struct stat &st) {
        return !is_link(path) || followed_.insert(identity(st)).second;
    }

    kv_walkproc proc_;
    void *ctx_;
    VisitOrder nested_; // of the directories below the top
    // Directories that links have led to. Each is followed once: a few links on each level would
    // otherwise make more paths than anybody can walk.
    std::set<Identity> followed_;
};

int Walk::directory(const char *path, const struct stat &st, VisitOrder order,
                    const Ancestor *parent) {
    const Ancestor self{identity(st), parent};
    if (leads_back(parent, self.self)) return 0;
    const file::Directory dir(kv_opendir(path));
    if (!dir) return 0;
    int result = 0;
    if (order == VisitOrder::directory_first) result = std::max(result, proc_(path, 1, ctx_));
    while (result <= end_above) {
        const dirent *next = kv_readdir(dir.get());
        if (!next) break;
        result = std::max(result, entry(path, next->d_name, self));
    }
    if (order == VisitOrder::contents_first) result = std::max(result, proc_(path, 1, ctx_));
    return result;
}

int Walk::entry(const char *directory_path, const char *name, const Ancestor &parent) {
    if (std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0) return 0;
    const std::size_t head = std::strlen(directory_path), tail = std::strlen(name);
    if (head + 1 + tail >= path_limit) return 0;
    char path[path_limit];
    std::memcpy(path, directory_path, head);
    path[head] = '/';
    std::memcpy(path + head + 1, name, tail + 1);
    struct stat st;
    if (kv_stat(path, &st) != 0) return 0;
    if (!S_ISDIR(st.st_mode)) return proc_(path, 0, ctx_);
    return may_follow(path, st) ? directory(path, st, nested_, &parent) : 0;
}

} // namespace

int recurse_action(const char *path, kv_walkproc proc, void *ctx, int dirsfirst, int withdirs) {
    struct stat st;
    if (!proc || kv_stat(path, &st) != 0) return 0;
    if (!S_ISDIR(st.st_mode)) return withdirs ? proc(path, 0, ctx) : 0;
    const auto nested = dirsfirst ? VisitOrder::directory_first : VisitOrder::contents_first;
    const auto top = withdirs ? nested : VisitOrder::contents_only;
    return ground::guarded(
        0, [&] { return Walk(proc, ctx, nested).directory(path, st, top, nullptr); });
}
