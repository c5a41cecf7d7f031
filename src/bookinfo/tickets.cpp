// SPDX-License-Identifier: MIT
// Small files that stand for a book elsewhere: the ticket by which a shop hands one out, a link to
// one in the web, and the container of one that only its shop's reader opens.
#include <string>

#include "bookinfo/encoding.h"
#include "bookinfo/format.h"
#include "bookinfo/package.h"
#include "bookinfo/scan.h"
#include "ground/fold.h"
#include "ground/lines.h"

namespace book {
namespace {

std::string_view text_of(std::string_view text, std::string_view name) {
    const auto element = find_start_tag(text, name);
    if (!element) return {};
    return text.substr(element->after, text.find('<', element->after) - element->after);
}

void add_author(Book &book, std::string_view name) {
    if (book.author.empty()) set_first(book.first_author, name);
    book.add_author(name);
}

void read_ticket(Source &source, Book &book) {
    read_package(without_mark(source.start(), book.encoding), book);
}

// Elements with or without a prefix, or lines "title=..." and "author=...".
void read_link(Source &source, Book &book) {
    const std::string text = without_mark(source.start(), book.encoding);
    read_package(text, book);
    set_first(book.title, text_of(text, "title"));
    if (book.author.empty()) add_author(book, text_of(text, "author"));
    for (std::string_view rest = text; !rest.empty();) {
        const std::string_view line = ground::take_line(rest);
        const size_t equals = line.find('=');
        if (equals == line.npos) continue;
        const std::string_view name = ground::trim(line.substr(0, equals)),
                               value = line.substr(equals + 1);
        if (ground::equal_folded(name, "title")) set_first(book.title, value);
        if (ground::equal_folded(name, "author")) add_author(book, value);
    }
}

void read_container(Source &, Book &book) {
    book.is_protected = true;
}

} // namespace

extern const Format ticket{"acsm", read_ticket, nullptr};
extern const Format web_link{"wlnk", read_link, nullptr};
extern const Format protected_container{"lndrm", read_container, nullptr};

} // namespace book
