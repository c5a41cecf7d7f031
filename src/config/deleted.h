// SPDX-License-Identifier: MIT
// The names that a handle deleted since its last save or refresh: an array of different strings,
// ended by null, with an index beside it that makes any number of deletions quick.
#pragma once

#include <cstddef>

#include "config/handle.h"

namespace config {

// The array is allocated with room for so many strings, the null included, and grows by as many.
inline constexpr std::size_t deleted_step = 101;

// Adds a copy of a name, unless it is there. Throws bad_alloc and has changed nothing then.
void push_deleted(OpenedConfig *c, const char *name);

// Takes a name off the list. The name may be the list's own, which is freed.
void drop_deleted(OpenedConfig *c, const char *name);

// Frees every name of the list; the array stays.
void clear_deleted(OpenedConfig *c);

// Takes the names of the list out of the file's values.
void apply_deletions(OpenedConfig *c);

} // namespace config
