// SPDX-License-Identifier: MIT
// Ways into a hash table that the library's own modules take for speed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "kelvane/hash.h"

// The hash of a key: h = h * 63 + byte, modulo 2^32, bytes of 0x80 and above taken as negative.
// The bucket is hash % prime.
uint32_t hash_of(const char *name);

// vhash_find() of a key whose hash is known: one hash serves several tables.
void *find_hashed(ihash h, const char *name, uint32_t hash);

// Adds many items to an empty table. The result is that of vhash_add() for each in turn, but no
// bucket is searched: however few buckets there are, the time grows with the number of items only.
class hash_filler {
  public:
    // Throws bad_alloc.
    explicit hash_filler(ihash empty);
    // False when memory ran out.
    bool add(const char *name, const char *value);

  private:
    struct slot {
        uint32_t hash;
        ihash_item item; // null marks a free slot
    };

    slot &find_slot(uint32_t hash, const char *name);
    void grow();

    ihash table;
    std::vector<slot> slots; // open addressing, a power of two, at most half full
};
