// SPDX-License-Identifier: MIT
// What the list of fonts leaves to be freed.
#pragma once

namespace text {

// Frees the list of EnumFonts().
void reset_enumeration();

} // namespace text
