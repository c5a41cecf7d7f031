// SPDX-License-Identifier: MIT
// The bar of progress bars.
#pragma once

#include "kelvane/canvas.h"

namespace dialogs {

// Draws it into its area on the current canvas, in the current font. Percentages below 0 and above
// 100 count as these.
void draw_bar(const irect &area, int percent);

} // namespace dialogs
