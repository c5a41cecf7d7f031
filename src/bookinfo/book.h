// SPDX-License-Identifier: MIT
// What is learnt of a book while it is read, before it becomes a record of the interface.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace book {

// Texts are bytes as they stand in the file, until refine().
struct Book {
    std::string separator;
    std::string encoding; // as the file declares it; empty when it does not
    std::string title, author, first_author, series, isbn, meta_id, annotation, lang, publisher,
        identifiers;
    std::vector<std::string> genres;
    int numinseries = 0;
    bool is_protected = false;

    // Unless that is all that is known of the authors so far, or empty.
    void add_author(std::string_view name);
    // Unless it is there, in any case of letters, or there are as many as a record holds.
    void add_genre(std::string_view name);
    // Unless its digits are there; behind a comma.
    void add_isbn(std::string_view number);
};

// What remains of ISBNs for those who look books up.
std::string digits_and_commas(std::string_view isbns);

// Sets a text that is still empty, without the blanks around it. Of several the first counts.
void set_first(std::string &text, std::string_view value);

// What users see, in UTF-8. `named` is the title when the book has none that can be read.
void refine(Book &book, const std::string &named);

} // namespace book
