// SPDX-License-Identifier: MIT
// Chained hash tables with a fixed number of buckets, as applications use them, and a quick way to
// fill one.
#include "kelvane/hash.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>

#include "ground/hash_access.h"
#include "ground/seeded_hash.h"

namespace {

// qsort() has no context pointer: sorted enumerations hand their comparator over in here.
thread_local kv_hashcmpproc acmpproc;

int compare_items(const void *a, const void *b) {
    const auto *x = *static_cast<const ihash_item *>(a);
    const auto *y = *static_cast<const ihash_item *>(b);
    return acmpproc(x->name, x->value, y->name, y->value);
}

ihash_item *bucket_of(ihash h, uint32_t hash) {
    return &h->items[hash % static_cast<uint32_t>(h->prime)];
}

// The link that points to the item of that name; it holds null when there is none.
ihash_item *find_link(ihash_item *link, const char *name) {
    while (*link && std::strcmp((*link)->name, name) != 0) link = &(*link)->next;
    return link;
}

// Gives an item its value. False when the copy of a string could not be made.
bool set_value(ihash h, ihash_item item, void *value) {
    item->value = h->addproc(value);
    return item->value || !value || h->addproc != str_addproc;
}

void free_item(ihash h, ihash_item item) {
    h->delproc(item->value);
    std::free(item);
}

// Puts a new item at the head of its bucket; one block of memory holds it and its name, so that a
// search reads both at once. Null when memory ran out.
ihash_item insert(ihash h, ihash_item *bucket, std::string_view name, void *value) {
    void *block = std::malloc(sizeof(ihash_item_s) + name.size() + 1);
    if (!block) return nullptr;
    auto *item = static_cast<ihash_item>(block);
    item->name = static_cast<char *>(block) + sizeof(ihash_item_s);
    *std::copy(name.begin(), name.end(), item->name) = '\0';
    if (!set_value(h, item, value)) {
        free_item(h, item);
        return nullptr;
    }
    item->next = *bucket;
    *bucket = item;
    h->count++;
    return item;
}

// A string may lie in the one that it replaces, which is therefore freed last, and stays when there
// is no memory for the new one. Other values go before the new ones come.
bool replace(ihash h, ihash_item item, void *value) {
    void *const former = item->value;
    if (former == value) return true;
    const bool copies = h->addproc == str_addproc;
    if (!copies) h->delproc(former);
    if (!set_value(h, item, value)) {
        item->value = former;
        return false;
    }
    if (copies) h->delproc(former);
    return true;
}

// Collects the items, at most `count` of them, and returns their number.
int collect(ihash h, ihash_item *found) {
    int n = 0;
    for (int i = 0; i < h->prime; i++) {
        for (ihash_item item = h->items[i]; item; item = item->next) {
            if (n == h->count) {
                std::fputs("hash_enumerate: n exceeds itemcount\n", stderr);
                break;
            }
            found[n++] = item;
        }
    }
    return n;
}

} // namespace

// Four bytes at a time: the products do not wait for one another.
uint32_t hash_of(const char *name) {
    constexpr uint32_t m = 63;
    const auto *c = reinterpret_cast<const signed char *>(name);
    uint32_t hash = 0;
    for (;; c += 4) {
        if (!c[0]) return hash;
        if (!c[1]) return hash * m + c[0];
        if (!c[2]) return hash * (m * m) + (c[0] * m + c[1]);
        if (!c[3]) return hash * (m * m * m) + (c[0] * (m * m) + c[1] * m + c[2]);
        hash = hash * (m * m * m * m) + (c[0] * (m * m * m) + c[1] * (m * m) + c[2] * m + c[3]);
    }
}

void *find_hashed(ihash h, const char *name, uint32_t hash) {
    for (ihash_item item = *bucket_of(h, hash); item; item = item->next)
        if (std::strcmp(item->name, name) == 0) return item->value;
    return nullptr;
}

bool store_hashed(ihash h, const char *name, void *value) {
    ihash_item *bucket = bucket_of(h, hash_of(name));
    if (ihash_item item = *find_link(bucket, name)) return replace(h, item, value);
    return insert(h, bucket, name, value) != nullptr;
}

HashFiller::HashFiller(ihash filled) : table(filled), slots(512) {
    while (static_cast<size_t>(table->count) * 2 >= slots.size()) slots.resize(slots.size() * 2);
    for (int i = 0; i < table->prime; i++)
        for (ihash_item item = table->items[i]; item; item = item->next)
            put({ground::seeded_hash(item->name), item});
}

// The slot that holds the item of that name, or the free one where it belongs.
HashFiller::Slot &HashFiller::find_slot(uint64_t hash, const char *name) {
    const size_t mask = slots.size() - 1;
    size_t i = hash & mask;
    while (slots[i].item && (slots[i].hash != hash || std::strcmp(slots[i].item->name, name) != 0))
        i = (i + 1) & mask;
    return slots[i];
}

// Puts an item that is not there yet into the first free slot.
void HashFiller::put(const Slot &s) {
    const size_t mask = slots.size() - 1;
    size_t i = s.hash & mask;
    while (slots[i].item) i = (i + 1) & mask;
    slots[i] = s;
}

void HashFiller::grow() {
    std::vector<Slot> old(slots.size() * 2);
    old.swap(slots);
    for (const Slot &s : old)
        if (s.item) put(s);
}

bool HashFiller::add(std::string_view name, const char *value) {
    if (static_cast<size_t>(table->count) * 2 >= slots.size()) grow();
    void *stored = const_cast<char *>(value);
    const uint64_t hash = ground::seeded_hash(name);
    Slot &s = find_slot(hash, name.data());
    if (s.item) return replace(table, s.item, stored);
    ihash_item *bucket = bucket_of(table, hash_of(name.data()));
    s = {hash, insert(table, bucket, name, stored)};
    return s.item != nullptr;
}

void remove_item(ihash h, ihash_item *link) {
    ihash_item item = *link;
    *link = item->next;
    free_item(h, item);
    h->count--;
}

void *str_addproc(void *value) {
    return value ? strdup(static_cast<char *>(value)) : nullptr;
}
void str_delproc(void *value) {
    std::free(value);
}
void *def_addproc(void *value) {
    return value;
}
void def_delproc(void *) {}

ihash vhash_new(int prime, kv_hashaddproc addproc, kv_hashdelproc delproc) {
    if (prime < 1) return nullptr;
    auto *h = static_cast<ihash>(std::malloc(sizeof(ihash_s)));
    if (!h) return nullptr;
    auto *items = static_cast<ihash_item *>(std::calloc(prime, sizeof(ihash_item)));
    if (!items) {
        std::free(h);
        return nullptr;
    }
    *h = {prime, 0, addproc ? addproc : def_addproc, delproc ? delproc : def_delproc, items};
    return h;
}

ihash hash_new(int prime) {
    return vhash_new(prime, str_addproc, str_delproc);
}

void vhash_add(ihash h, const char *name, void *value) {
    if (h && name) store_hashed(h, name, value);
}

void hash_add(ihash h, const char *name, const void *value) {
    vhash_add(h, name, const_cast<void *>(value));
}

void *vhash_find(ihash h, const char *name) {
    return h && name ? find_hashed(h, name, hash_of(name)) : nullptr;
}

void *hash_find(ihash h, const char *name) {
    return vhash_find(h, name);
}

void vhash_delete(ihash h, const char *name) {
    if (!h || !name) return;
    ihash_item *link = find_link(bucket_of(h, hash_of(name)), name);
    if (*link) remove_item(h, link);
}

void hash_delete(ihash h, const char *name) {
    vhash_delete(h, name);
}

int hash_count(ihash h) {
    return h->count;
}

void hash_clear(ihash h) {
    if (!h) return;
    for (int i = 0; i < h->prime; i++) {
        ihash_item item = h->items[i];
        h->items[i] = nullptr;
        while (item) {
            ihash_item next = item->next;
            free_item(h, item);
            item = next;
        }
    }
    h->count = 0;
}

void hash_destroy(ihash h) {
    if (!h) return;
    hash_clear(h);
    std::free(h->items);
    std::free(h);
}

void hash_enumerate(ihash h, kv_hashcmpproc cmpproc, kv_hashenumproc enumproc, void *userdata) {
    if (!h || !enumproc || h->count <= 0) return;
    const std::unique_ptr<ihash_item[]> found(new (std::nothrow) ihash_item[h->count]);
    if (!found) return;
    const int n = collect(h, found.get());
    if (cmpproc && n > 1) {
        acmpproc = cmpproc;
        std::qsort(found.get(), n, sizeof(ihash_item), compare_items);
    }
    for (int i = 0; i < n; i++)
        if (enumproc(found[i]->name, found[i]->value, userdata) != 0) break;
}

int hash_copy_to(ihash src, ihash dst) {
    if (!src || !dst || dst->prime < src->prime) return -1;
    if (src == dst) return 0;
    dst->addproc = src->addproc;
    dst->delproc = src->delproc;
    for (int i = 0; i < src->prime; i++) {
        for (ihash_item item = src->items[i]; item; item = item->next) {
            vhash_delete(dst, item->name);
            if (!store_hashed(dst, item->name, item->value)) return -1;
        }
    }
    return 0;
}

ihash hash_copy(ihash src) {
    if (!src) return nullptr;
    ihash copy = hash_new(src->prime);
    if (hash_copy_to(src, copy) == 0) return copy;
    hash_destroy(copy);
    return nullptr;
}

int hash_merge_to(ihash a, ihash b, ihash dst) {
    if (!a || !b || !dst) return -1;
    if (dst != a && hash_copy_to(a, dst) != 0) return -1;
    const auto addproc = a->addproc;
    const auto delproc = a->delproc;
    if (hash_copy_to(b, dst) != 0) return -1;
    dst->addproc = addproc;
    dst->delproc = delproc;
    return 0;
}

ihash hash_merge(ihash a, ihash b) {
    if (!a || !b) return nullptr;
    ihash merged = hash_new(static_cast<int>(static_cast<uint32_t>(a->prime) + b->prime));
    if (hash_merge_to(a, b, merged) == 0) return merged;
    hash_destroy(merged);
    return nullptr;
}
