/* SPDX-License-Identifier: MIT */
/**
 * @file hash.h
 * A small hash table from strings to pointers.
 *
 * The number of buckets is fixed when the table is made, so choose a prime near the number of items
 * that you expect; more items than buckets work, only slower. The table owns copies of its keys.
 * What it keeps of a value is up to the two procedures it was made with: hash_new() keeps copies of
 * strings, vhash_new() with null procedures keeps the caller's pointers.
 *
 * Keys are compared byte by byte. A null table or key is ignored: the call does nothing, or returns
 * null or -1; only hash_count() needs a table. When memory runs out, a key is not added and a copy
 * fails. A table belongs to one thread at a time, and two sorted enumerations must never overlap,
 * not even of two tables: they share one comparator.
 */
#ifndef KELVANE_HASH_H
#define KELVANE_HASH_H

#include <stdint.h>

#include "api.h"

KELVANE_BEGIN_DECLS

/** Receives the caller's value and returns what the table keeps: a copy, or the pointer itself. */
typedef void *(*kv_hashaddproc)(void *value);
/** Releases a value that the table drops. */
typedef void (*kv_hashdelproc)(void *value);
/** Orders two items for hash_enumerate(): below 0 when a comes first, 0, or above 0. */
typedef int (*kv_hashcmpproc)(const char *name_a, void *value_a, const char *name_b, void *value_b);
/** Visits an item. Must not add or remove items. @return not 0 ends the walk */
typedef int (*kv_hashenumproc)(const char *name, void *value, void *userdata);

/** One item of a bucket. */
typedef struct ihash_item_s {
    char *name;                /**< the table's copy of the key */
    void *value;               /**< what addproc returned */
    struct ihash_item_s *next; /**< the next item of the bucket; null ends it */
} * ihash_item;

/** A table. The fields are for reading; change it by the functions below only. */
typedef struct ihash_s {
    int32_t prime;          /**< number of buckets */
    int32_t count;          /**< number of items */
    kv_hashaddproc addproc; /**< called with each value that is stored */
    kv_hashdelproc delproc; /**< called with each stored value that is dropped */
    ihash_item *items;      /**< the buckets' first items, @c prime of them; null when empty */
} * ihash;

/**
 * Makes an empty table.
 * @param prime number of buckets, best a prime; below 1 answers null
 * @param addproc,delproc null keeps the caller's pointers and releases nothing
 * @return the table, released by hash_destroy(); null when memory runs out
 */
KELVANE_API ihash vhash_new(int prime, kv_hashaddproc addproc, kv_hashdelproc delproc);
/** Makes an empty table of strings: it keeps copies of the values, which may be null. */
KELVANE_API ihash hash_new(int prime);

/**
 * Stores a value. A key that is present gets the new value: the old one is released first, so
 * @p value must not point into it. Nothing happens when @p value is the very pointer stored.
 */
KELVANE_API void vhash_add(ihash h, const char *name, void *value);
/** The same as vhash_add(); a table of hash_new() copies the string @p value. */
KELVANE_API void hash_add(ihash h, const char *name, const void *value);

/**
 * Finds a value.
 * @return what is stored, the table's until the key is replaced or deleted; null when absent
 */
KELVANE_API void *vhash_find(ihash h, const char *name);
/** The same as vhash_find(). */
KELVANE_API void *hash_find(ihash h, const char *name);

/** Removes a key and releases its value; nothing when absent. */
KELVANE_API void vhash_delete(ihash h, const char *name);
/** The same as vhash_delete(). */
KELVANE_API void hash_delete(ihash h, const char *name);

/** The number of items. @p h must not be null. */
KELVANE_API int hash_count(ihash h);

/** Removes every item. */
KELVANE_API void hash_clear(ihash h);
/** Removes every item and frees the table. */
KELVANE_API void hash_destroy(ihash h);

/**
 * Visits every item.
 * @param cmpproc the order; null visits bucket by bucket, which callers take as any order
 * @param enumproc called with each item until it answers other than 0
 * @param userdata given to @p enumproc
 */
KELVANE_API void hash_enumerate(ihash h, kv_hashcmpproc cmpproc, kv_hashenumproc enumproc,
                                void *userdata);

/**
 * Copies every item of @p src, over items of the same key, and gives @p dst the procedures of
 * @p src: from then on they also release what @p dst held before. The addproc of @p src makes the
 * value of each copy: a table that copies values, as hash_new() makes them, shares none with its
 * copy; one with a null addproc shares all, so a delproc that frees them would free them twice.
 * A table copied to itself stays as it is.
 * @return 0; -1 when a table is null, @p dst has fewer buckets than @p src, or memory runs out
 */
KELVANE_API int hash_copy_to(ihash src, ihash dst);
/**
 * A copy with as many buckets and the same procedures, whose values are made as hash_copy_to()
 * says. @return the table, released by hash_destroy(); null on failure
 */
KELVANE_API ihash hash_copy(ihash src);

/**
 * Copies the items of @p a and then those of @p b into @p dst, so that the values of @p b win.
 * @p dst may be @p a, which then only receives @p b; it may also be @p b, whose own values are
 * replaced by those of @p a. The addproc of each table makes the values that come from it, but in
 * the end @p dst has the procedures of @p a: the delproc of @p a releases them all.
 * @return 0; -1 when a copy fails as hash_copy_to() does
 */
KELVANE_API int hash_merge_to(ihash a, ihash b, ihash dst);
/**
 * A new table with the buckets of both and the items of hash_merge_to(). @return the table,
 * released by hash_destroy(), which leaves @p a and @p b alone; null on failure
 */
KELVANE_API ihash hash_merge(ihash a, ihash b);

/** Copies a string with strdup(3); null stays null. The addproc of hash_new(). */
KELVANE_API void *str_addproc(void *value);
/** Frees a string. The delproc of hash_new(). */
KELVANE_API void str_delproc(void *value);
/** Returns the pointer itself. The addproc that stands for null. */
KELVANE_API void *def_addproc(void *value);
/** Does nothing. The delproc that stands for null. */
KELVANE_API void def_delproc(void *value);

KELVANE_END_DECLS

#endif
