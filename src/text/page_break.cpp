// SPDX-License-Identifier: MIT
// Keeps headings with what follows, and lines of a paragraph in company.
#include "text/page_break.h"

#include "kelvane/text.h"

namespace text {
namespace {

// The first line of a page is never too few: nothing would be left.
bool leaves_single_line(const std::vector<PageLine> &lines, size_t i) {
    const PageLine &line = lines[i], &next = lines[i + 1];
    if (line.ends_paragraph) return false;
    return next.ends_paragraph || (line.starts_paragraph && i > 0);
}

} // namespace

size_t lines_of_page(const std::vector<PageLine> &lines, int flags) {
    const size_t all = lines.size() - 1;
    for (size_t count = all; count > 0; --count) {
        const size_t i = count - 1;
        if ((flags & TEXT_MARKS) != 0 && lines[i].is_bound) continue;
        if ((flags & TEXT_NO_WIDOWS) != 0 && leaves_single_line(lines, i)) continue;
        return count;
    }
    return all;
}

} // namespace text
