// SPDX-License-Identifier: MIT
// Book numbers, of 10 or 13 digits with a check digit.
#pragma once

#include <string>
#include <string_view>

#include "bookinfo/book.h"
#include "bookinfo/source.h"

namespace book {

// Whether a text is a number of 13 digits and nothing else, with hyphens or spaces at most.
bool is_isbn13(std::string_view text);

// Adds every number in a text: as it is written, each once. Digits of longer numbers, and of words,
// do not count.
void add_isbns(Book &book, std::string_view text);

// The same of the start of a book, and of its end where that can be reached.
void add_isbns(Book &book, Source &source, std::string_view start);

} // namespace book
