// SPDX-License-Identifier: MIT
// What the view and the box share: one of them is open at a time.
#pragma once

namespace dictionary_view {

// Closes what is open of the two. False when something else is above it, so that nothing may open,
// and when there is no screen.
bool make_room();
// Opens a dictionary unless one is open; where there is none, a message says so and the answer is
// false. Throws bad_alloc.
bool has_dictionary();

} // namespace dictionary_view
