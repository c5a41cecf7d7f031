// SPDX-License-Identifier: MIT
// The layouts that are in use, and where they come from. Nothing here draws.
#pragma once

#include <string_view>

#include "keyboard/layout.h"

namespace keyboard {

// The user's layouts. Throws bad_alloc, as the two below.
Layouts &user_layouts();
// Those of a file; the built-in ones when there is none.
Layouts layouts_of_file(std::string_view name);
// Those that these flags ask for.
Layouts layouts_for(int flags);

// The language behind the current one, which the settings remember and the next keyboard has too.
void choose_next_language(Layouts &layouts);

// Forgets the user's layouts as the screen closes.
void reset_layouts();

} // namespace keyboard
