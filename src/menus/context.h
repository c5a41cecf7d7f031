// SPDX-License-Identifier: MIT
// The records of context menus.
#pragma once

#include "kelvane/menus.h"
#include "menus/items.h"
#include "menus/place.h"

namespace menus {

// The record that the next menu is to use, once; null for a plain menu.
const icontext_menu *take_context();

// Where a context menu goes: beside its item, or at a corner.
Anchor anchor_of(const icontext_menu &context, int x, int y);

// The record of the submenu of an item, on a level counted from 0, with the switches of its parent.
// Null without memory.
const icontext_menu *submenu_context(const icontext_menu &parent, int level, const Item &item);

// Frees the records as the screen closes.
void reset_contexts();

} // namespace menus
