// SPDX-License-Identifier: MIT
#pragma once

namespace text {

// Frees the list of EnumFonts().
void reset_enumeration();

} // namespace text
