// SPDX-License-Identifier: MIT
// Keeps the array that the public record shows and the index beside it in step.
#include "config/deleted.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

#include "ground/hash_access.h"
#include "ground/heap.h"

namespace config {
namespace {

// Room for one more name behind the first `n`, and for the null.
void make_room(iconfig *c, std::size_t n) {
    if ((n + 1) % deleted_step != 0) return;
    void *list = std::realloc(c->deleted_keys, (n + 1 + deleted_step) * sizeof(char *));
    if (!list) throw std::bad_alloc();
    c->deleted_keys = static_cast<char **>(list);
}

} // namespace

void push_deleted(OpenedConfig *c, const char *name) {
    if (c->deleted_slots.contains(name)) return;
    const std::size_t n = c->deleted_slots.size();
    make_room(c, n);
    ground::HeapString copy(strdup(name));
    if (!copy) throw std::bad_alloc();
    c->deleted_slots.emplace(copy.get(), n);
    c->deleted_keys[n] = copy.release();
    c->deleted_keys[n + 1] = nullptr;
}

// The last name takes the place of the one that goes.
void drop_deleted(OpenedConfig *c, const char *name) {
    const auto found = c->deleted_slots.find(name);
    if (found == c->deleted_slots.end()) return;
    const std::size_t slot = found->second, last = c->deleted_slots.size() - 1;
    const ground::HeapString gone(c->deleted_keys[slot]);
    c->deleted_slots.erase(found);
    if (slot != last) c->deleted_slots[c->deleted_keys[last]] = slot;
    c->deleted_keys[slot] = c->deleted_keys[last];
    c->deleted_keys[last] = nullptr;
}

void clear_deleted(OpenedConfig *c) {
    std::for_each_n(c->deleted_keys, c->deleted_slots.size(), std::free);
    c->deleted_slots.clear();
    c->deleted_keys[0] = nullptr;
}

void apply_deletions(OpenedConfig *c) {
    if (c->deleted_slots.empty()) return;
    remove_items_if(c->hash, [&](const char *name) { return c->deleted_slots.contains(name); });
}

} // namespace config
