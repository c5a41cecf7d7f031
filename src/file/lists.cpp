// SPDX-License-Identifier: MIT
// Sorted lists of files with given extensions.
#include "kelvane/files.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "ground/heap.h"

namespace {

constexpr std::size_t max_names = 1023;

struct NameArray {
    char *names[max_names];
    std::size_t count = 0;
};

void free_list(char **list) {
    if (!list) return;
    for (char **name = list; *name; ++name) std::free(*name);
    std::free(list);
}

void add_name(NameArray &found, const char *name, bool cut_extension) {
    char *copy = strdup(name);
    if (!copy) return;
    if (char *dot = cut_extension ? std::strrchr(copy, '.') : nullptr) *dot = 0;
    found.names[found.count++] = copy;
}

void read_directory(NameArray &found, const char *path, const char *exts, bool cut_extension) {
    DIR *dir = kv_opendir(path);
    if (!dir) return;
    while (found.count < max_names) {
        const dirent *entry = kv_readdir(dir);
        if (!entry) break;
        if (entry->d_name[0] != '.' && match_ext(entry->d_name, exts))
            add_name(found, entry->d_name, cut_extension);
    }
    kv_closedir(dir);
}

// Sorts the names and keeps the last of those that differ only in case. The sort is stable, so
// that is the one read last.
void sort_and_unite(NameArray &found) {
    char **const begin = found.names, **const end = begin + found.count;
    std::stable_sort(begin, end,
                     [](const char *a, const char *b) { return kv_strcasecmp(a, b) < 0; });
    char **kept = begin;
    for (char **name = begin; name != end; ++name) {
        if (name + 1 != end && kv_strcasecmp(name[0], name[1]) == 0)
            std::free(*name);
        else
            *kept++ = *name;
    }
    found.count = static_cast<std::size_t>(kept - begin);
}

// The list takes the names over; null when memory runs out.
char **make_list(NameArray &found) {
    auto **list = static_cast<char **>(std::malloc((found.count + 1) * sizeof(char *)));
    if (!list) {
        std::for_each_n(found.names, found.count, std::free);
        return nullptr;
    }
    std::copy_n(found.names, found.count, list);
    list[found.count] = nullptr;
    return list;
}

} // namespace

char **kv_enum_files(char ***list, const char *dir1, const char *dir2, const char *dir3,
                     const char *exts, int noext) {
    if (list) {
        free_list(*list);
        *list = nullptr;
    }
    NameArray found;
    for (const char *dir : {dir1, dir2, dir3}) read_directory(found, dir, exts, noext != 0);
    sort_and_unite(found);
    char **result = make_list(found);
    if (list) *list = result;
    return result;
}
