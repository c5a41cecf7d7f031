// SPDX-License-Identifier: MIT
// What the library expects of the parameters that it reads itself.
#pragma once

#include <string>
#include <string_view>

namespace tool {

// What is wrong with the value of a parameter and what to do; empty when nothing is, or when it is
// a parameter that the library does not read. A landscape value is held to the same.
std::string value_fault(std::string_view name, std::string_view value);

// A value without fault for screens with that many percent of the pixels: sizes of fonts, lengths
// and rectangles grow, all others stay.
std::string scaled_value(std::string_view name, std::string_view value, int percent);

// The parameter that is probably meant by a name that the library does not know; empty when the
// name is one of its own or resembles none, as applications may have parameters of any name.
std::string probably_meant(std::string_view name);

} // namespace tool
