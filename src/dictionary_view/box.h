// SPDX-License-Identifier: MIT
// The fast translation: a box beside a word.
#pragma once

namespace dictionary_view {

// Closes the box when it is open. False when something else is above it.
bool close_box();
// Takes it away as the screen closes.
void reset_box();

} // namespace dictionary_view
