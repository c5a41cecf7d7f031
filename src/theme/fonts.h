// SPDX-License-Identifier: MIT
// Fonts that a theme carries, unpacked into a folder of their own when they are first asked for.
#pragma once

#include <string>

namespace theme {

void make_font_folder();
// Deletes what an earlier theme left there. Fonts that are open stay as they are.
void drop_extracted_fonts();
// The path of a theme's font; empty when the theme has none of that name.
std::string extract_font(const std::string &face);

} // namespace theme
