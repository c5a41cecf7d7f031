// SPDX-License-Identifier: MIT
// Plain text out of the text of elements.
#pragma once

#include <string>
#include <string_view>

namespace book {

// Without the white space around it.
std::string_view trimmed(std::string_view text);

// With the five entities of XML and numeric ones decoded; unknown ones stay as they are written.
std::string decoded(std::string_view text);

// decoded(), and without what stands between "<" and ">". Both kinds of input are UTF-8, and so is
// the result.
std::string without_markup(std::string_view text);

// Makes the first letter a capital.
void capitalize(std::string &utf8);

} // namespace book
