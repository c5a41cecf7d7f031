// SPDX-License-Identifier: MIT
#include "config/deleted.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace config {
namespace {

// The null that ends the list.
char **end_of(char **list) {
    while (*list) list++;
    return list;
}

} // namespace

bool push_deleted(iconfig *c, char *name) {
    const size_t n = end_of(c->deleted_keys) - c->deleted_keys;
    const bool full = (n + 1) % deleted_step == 0;
    if (full) {
        void *list = std::realloc(c->deleted_keys, (n + 1 + deleted_step) * sizeof(char *));
        if (!list) return false;
        c->deleted_keys = static_cast<char **>(list);
    }
    c->deleted_keys[n] = name;
    c->deleted_keys[n + 1] = nullptr;
    return true;
}

void drop_deleted(iconfig *c, const char *name) {
    char **const end = end_of(c->deleted_keys);
    char **const kept = std::partition(
        c->deleted_keys, end, [&](const char *key) { return std::strcmp(key, name) != 0; });
    std::for_each(kept, end, std::free);
    if (kept != end) *kept = nullptr;
}

void clear_deleted(iconfig *c) {
    std::for_each(c->deleted_keys, end_of(c->deleted_keys), std::free);
    c->deleted_keys[0] = nullptr;
}

} // namespace config
