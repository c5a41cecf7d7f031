// SPDX-License-Identifier: MIT
// The names that a handle deleted since its last save: an array of strings, ended by null, which
// grows in steps of `deleted_step`.
#pragma once

#include <cstddef>

#include "kelvane/config.h"

namespace config {

inline constexpr size_t deleted_step = 101;

// Adds a string from the heap, which the list then owns. False when memory ran out.
bool push_deleted(iconfig *c, char *name);

// Takes a name off the list.
void drop_deleted(iconfig *c, const char *name);

// Frees every name of the list; the array stays.
void clear_deleted(iconfig *c);

} // namespace config
