// SPDX-License-Identifier: MIT
// The text of a configuration file: lines of a name, "=" and an escaped value.
#pragma once

#include <cstddef>
#include <string>

#include "kelvane/hash.h"

namespace config {

// Empties `values` and adds the settings of a text; the text is taken apart in place, and the byte
// behind its end is written. A NUL ends its line's name or value. False when memory ran out.
bool parse_settings(char *text, size_t size, ihash values);

struct settings_text {
    std::string text;
    bool exact = true; // it parses into the very values
};

// The lines of all values, sorted by name. Of a value that is much longer than 16 KiB only the
// first part is written. Throws bad_alloc when the text would not hold every value.
settings_text format_settings(ihash values);

} // namespace config
