// SPDX-License-Identifier: MIT
// Where the values of the open theme come from.
#pragma once

#include "kelvane/bitmaps.h"

namespace theme {

// Look-ups by name, which is not null; they answer null for what the theme has not got.
struct Source {
    ibitmap *(*picture)(const char *name) = [](const char *) -> ibitmap * {
        return nullptr;
    }; // new
    const char *(*text)(const char *name) = [](const char *) -> const char * { return nullptr; };
};
// Without an open theme there is nothing.
inline Source source;

} // namespace theme
