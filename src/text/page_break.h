// SPDX-License-Identifier: MIT
// Where a page ends, of the lines that fit on it.
#pragma once

#include <cstddef>
#include <vector>

namespace text {

// What the rules take to know of a line.
struct PageLine {
    bool starts_paragraph, ends_paragraph;
    bool is_bound; // to the next line: of a heading, or of the empty lines behind one
};

// How many of the lines before the last one are on the page: as many as the rules of `flags` allow,
// and all when they allow none. The last line is the first one that does not fit.
size_t lines_of_page(const std::vector<PageLine> &lines, int flags);

} // namespace text
