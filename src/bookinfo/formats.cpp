// SPDX-License-Identifier: MIT
// All formats of books.
#include "bookinfo/format.h"

#include "kelvane/files.h"

namespace book {

extern const Format fb2, epub, mobi, html, ticket, web_link, protected_container;

namespace {

constexpr const Format *formats[] = {
    &fb2, &epub, &mobi, &html, &ticket, &web_link, &protected_container};

} // namespace

const Format *find_format(const std::string &name) {
    for (const Format *format : formats)
        if (match_ext(name.c_str(), format->extensions) > 0) return format;
    return nullptr;
}

} // namespace book
