// SPDX-License-Identifier: MIT
// Any bytes as a text that is scanned for tags and numbers, converted and made readable, without a
// file in between.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "bookinfo/encoding.h"
#include "bookinfo/isbn.h"
#include "bookinfo/package.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    std::string_view text(reinterpret_cast<const char *>(data), size);
    text = text.substr(0, book::scanned_bytes);
    book::Book b;
    b.separator = ", ";
    book::read_package(text, b);
    book::add_isbns(b, text);
    book::refine(b, "named");
    if (b.title.empty() || b.genres.size() > BOOK_GENRES) std::abort();
    for (const auto *field : {&b.title, &b.author, &b.series, &b.annotation, &b.isbn})
        if (!book::is_utf8(*field)) std::abort();
    return 0;
}
