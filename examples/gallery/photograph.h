// SPDX-License-Identifier: MIT
// A landscape made by arithmetic, with the greys of a photograph.
#pragma once

#include <kelvane.hpp>

using kelvane::Bitmap;

// A white bitmap of 256 greys; null when memory runs out.
Bitmap make_grey_bitmap(int w, int h);

// A lake below mountains, 256 greys; null when memory runs out.
Bitmap make_photograph(int w, int h);
