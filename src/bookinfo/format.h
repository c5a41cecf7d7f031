// SPDX-License-Identifier: MIT
// A format of books: which files have it, and what reads them. A format is one source, which
// defines its record, and a line in the table of formats.cpp.
#pragma once

#include <string>

#include "bookinfo/book.h"
#include "bookinfo/source.h"

namespace book {

// The bytes of a picture file.
using Picture = std::string;
// Of the file of a cover.
inline constexpr size_t most_picture_bytes = 16 << 20;

struct Format {
    const char *extensions; // "html,htm"
    // What was read before the book turned out to be broken stays. Throws bad_alloc.
    void (*read)(Source &source, Book &book);
    // Empty when there is none; null for a format without covers. Throws bad_alloc.
    Picture (*cover)(Source &source);
};

// By the extension of a name; null for what nobody reads.
const Format *find_format(const std::string &name);

} // namespace book
