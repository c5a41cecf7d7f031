// SPDX-License-Identifier: MIT
// Ways into a hash table that the library's own modules take for speed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "kelvane/hash.h"

// The hash of a key: h = h * 63 + byte, modulo 2^32, bytes of 0x80 and above taken as negative.
// The bucket is hash % prime.
uint32_t hash_of(const char *name);

// vhash_find() of a key whose hash is known: one hash serves several tables.
void *find_hashed(ihash h, const char *name, uint32_t hash);

// vhash_add(). False when memory ran out; the table is as before then.
bool store_hashed(ihash h, const char *name, void *value);

// Unlinks and frees the item that `link`, of the table's buckets or of an item, points to.
void remove_item(ihash h, ihash_item *link);

// Removes the items whose names meet a condition, in one walk.
template <class Condition>
void remove_items_if(ihash h, Condition condition) {
    for (int i = 0; i < h->prime; i++)
        for (ihash_item *link = &h->items[i]; *link;)
            condition((*link)->name) ? remove_item(h, link) : void(link = &(*link)->next);
}

// Adds many items to a table, which nothing else changes meanwhile. The result is that of
// vhash_add() for each in turn, but no bucket is searched: however few buckets there are and
// whatever the names, the time grows with the number of items only.
class HashFiller {
  public:
    // Throws bad_alloc.
    explicit HashFiller(ihash filled);
    // `name` ends with a NUL. False when memory ran out.
    bool add(std::string_view name, const char *value);

  private:
    struct Slot {
        uint64_t hash;
        ihash_item item; // null marks a free slot
    };

    Slot &find_slot(uint64_t hash, const char *name);
    void put(const Slot &s);
    void grow();

    ihash table;
    std::vector<Slot> slots; // open addressing, a power of two, at most half full
};
