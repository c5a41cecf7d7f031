// SPDX-License-Identifier: MIT
// The metadata of a package: Dublin Core elements, of EPUB and of what borrows from it.
#pragma once

#include <string_view>

#include "bookinfo/book.h"

namespace book {

void read_package(std::string_view text, Book &book);

} // namespace book
