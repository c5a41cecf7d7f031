// SPDX-License-Identifier: MIT
// The end of the list of fonts.
#pragma once

namespace text {

// Forgets the list of EnumFonts().
void reset_enumeration();

} // namespace text
