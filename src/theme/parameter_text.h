// SPDX-License-Identifier: MIT
// The parameter text of a theme: a parameter or a translation a line.
#pragma once

#include <cstddef>

#include "ground/text_table.h"

namespace theme {

// Adds the parameters to the table, and the translations that hold for the language to the
// language's own. The text is taken apart, and the byte behind its end written. Throws bad_alloc.
void read_parameters(char *text, size_t size, ground::TextTable &parameters);

} // namespace theme
