// SPDX-License-Identifier: MIT
// Gathers what a book says, and makes texts for users of it.
#include "bookinfo/book.h"

#include <algorithm>
#include <array>

#include "bookinfo/encoding.h"
#include "bookinfo/markup.h"
#include "ground/fold.h"
#include "kelvane/bookinfo.h"

namespace book {

void set_first(std::string &text, std::string_view value) {
    if (text.empty()) text = trimmed(value);
}

void Book::add_author(std::string_view name) {
    name = trimmed(name);
    if (name.empty() || author == name) return;
    if (!author.empty()) author += separator;
    author += name;
}

void Book::add_genre(std::string_view name) {
    name = trimmed(name);
    const auto is_same = [&](const std::string &g) { return ground::equal_folded(g, name); };
    if (!name.empty() && genres.size() < BOOK_GENRES &&
        std::none_of(genres.begin(), genres.end(), is_same))
        genres.emplace_back(name);
}

void Book::add_isbn(std::string_view number) {
    const auto listed = [](std::string_view all) { return ',' + digits_and_commas(all) + ','; };
    if (number.empty() || listed(isbn).find(listed(number)) != std::string::npos) return;
    if (!isbn.empty()) isbn += ',';
    isbn += number;
}

std::string digits_and_commas(std::string_view isbns) {
    std::string kept;
    for (const char c : isbns)
        if ((c >= '0' && c <= '9') || c == ',') kept += c;
    return kept;
}

void refine(Book &b, const std::string &named) {
    const Converter convert(b.encoding);
    // Without a word on its encoding, a title that is not UTF-8 could be anything.
    if (!convert.is_declared() && !is_utf8(b.title)) b.title.clear();
    for (std::string *text : {&b.title, &b.author, &b.first_author, &b.series, &b.isbn, &b.meta_id,
                              &b.annotation, &b.lang, &b.publisher, &b.identifiers})
        *text = convert(*text);
    for (std::string &genre : b.genres) genre = convert(genre);
    for (std::string *text : {&b.title, &b.author, &b.first_author, &b.series})
        *text = without_markup(*text);
    for (std::string *text : {&b.publisher, &b.annotation}) *text = decoded(*text);
    capitalize(b.title);
    capitalize(b.author);
    for (std::string &genre : b.genres) capitalize(genre = without_markup(genre));
    std::erase(b.genres, "");
    // A NUL ends the text that an application sees, and may leave nothing of it.
    if (*b.title.c_str() == '\0') b.title = named;
}

} // namespace book
