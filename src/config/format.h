// SPDX-License-Identifier: MIT
// The text of a configuration file: lines of a name, "=" and an escaped value.
#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "kelvane/hash.h"

namespace config {

// Resolves the escapes of a value in place: \n, \r, \t, \\ and octal numbers.
void unescape(char *value);

// So many settings are taken from a text. It bounds the memory that short lines can take.
inline constexpr int most_settings = 500'000;

// Adds the settings of a text to `values`; the text is taken apart in place, and the byte behind
// its end is written. A NUL ends its line's name or value. False when the text holds too many
// settings; false or bad_alloc when memory runs out.
bool parse_settings(std::span<char> text, ihash values);

struct SettingsText {
    std::string text;
    bool exact = true; // it parses into the very values
};

// The lines of all values, sorted by name. Of a value that is much longer than 16 KiB only the
// first part is written. Throws bad_alloc when the text would not hold every value.
SettingsText format_settings(ihash values);

} // namespace config
