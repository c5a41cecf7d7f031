// SPDX-License-Identifier: MIT
// Articles that are written in HTML, Pango's markup or XML.
#pragma once

#include <string>
#include <string_view>

namespace dict {

// The text, with a line for each paragraph.
std::string without_markup(std::string_view text);

} // namespace dict
