// SPDX-License-Identifier: MIT
// From the encodings of books to UTF-8.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace book {

// UTF-8 without overlong forms, surrogates and what lies beyond U+10FFFF.
bool is_utf8(std::string_view text);
// The bytes of the first character; of an ill-formed one the bytes that are wrong. 0 for no text.
size_t first_character(std::string_view text);

struct IconvCloser {
    void operator()(void *handle) const;
};
using Iconv = std::unique_ptr<void, IconvCloser>; // an iconv_t

// Makes UTF-8 of texts in one encoding. What is ill-formed becomes U+FFFD.
class Converter {
  public:
    // A name that nobody knows, or an empty one, is that of no encoding: texts are UTF-8.
    explicit Converter(const std::string &encoding);

    bool is_declared() const { return is_declared_; }
    // Throws bad_alloc.
    std::string operator()(std::string_view text) const;

  private:
    struct Kept {
        std::string encoding;
        Iconv handle; // null for an encoding that is not known
        bool keeps_ascii = false;
    };

    const Kept *kept_ = nullptr; // null for UTF-8; until the next one of another encoding
    bool is_declared_ = false;
};

// UTF-8 of a text in UTF-16 with its byte-order mark; other texts without a mark of UTF-8. Tells
// the encoding that a mark names.
std::string without_mark(std::string text, std::string &encoding);

} // namespace book
