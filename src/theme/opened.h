// SPDX-License-Identifier: MIT
// The theme that is open.
#pragma once

#include <string>

#include "text/text.h"

namespace theme {

// The name by which OpenFont() finds a face: that of the theme's own, when it carries one.
std::string font_name(const std::string &face);
// The font of such a name, unpacked; none when it is not of the theme that is open.
text::FontBytes unpack_font(const std::string &name);

// Closes the theme; without one nothing has a value.
void reset();

} // namespace theme
