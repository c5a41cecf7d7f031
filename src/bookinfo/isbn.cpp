// SPDX-License-Identifier: MIT
// Finds book numbers in free text, and keeps the last answer of GetBookISBN().
#include "bookinfo/isbn.h"

#include <algorithm>
#include <array>

#include "ground/fold.h"

namespace book {
namespace {

constexpr size_t end_bytes = 10'000;

constexpr bool is_digit(char c) {
    return c >= '0' && c <= '9';
}

constexpr bool is_word(char c) {
    return is_digit(c) || ground::is_letter(c) || static_cast<unsigned char>(c) >= 0x80;
}

// A number in a text: its digits, and where it ends there.
struct Number {
    std::array<int, 13> digits{};
    size_t count = 0, separators = 0, end = 0;
};

// The digits from `at` on, with one separator between two at most; the tenth may be an X.
Number number_at(std::string_view text, size_t at, size_t count) {
    Number n;
    for (; at < text.size() && n.count < count; ++at) {
        const char c = text[at];
        if (is_digit(c)) {
            n.digits[n.count++] = c - '0';
        } else if (n.count == 9 && count == 10 && ground::fold_case(c) == 'x') {
            n.digits[n.count++] = 10;
        } else if ((c == '-' || c == ' ') && n.count > 0 && is_digit(text[at - 1])) {
            ++n.separators;
        } else {
            return {};
        }
    }
    if (n.count < count || (at < text.size() && is_word(text[at]))) return {};
    n.end = at;
    return n;
}

bool checks_13(const Number &n) {
    if (n.digits[0] != 9 || n.digits[1] != 7 || n.digits[2] < 8) return false;
    int sum = 0;
    for (size_t i = 0; i < 13; ++i) sum += n.digits[i] * (i % 2 != 0 ? 3 : 1);
    return sum % 10 == 0;
}

// Ten digits in two or three groups are more often a date or a telephone number.
bool checks_10(const Number &n) {
    if (n.separators != 0 && n.separators != 3) return false;
    int sum = 0;
    for (size_t i = 0; i < 10; ++i) sum += n.digits[i] * static_cast<int>(10 - i);
    return sum % 11 == 0;
}

// Where the book number that starts at `at` ends; 0 for none.
size_t end_of_isbn(std::string_view text, size_t at) {
    const Number long_one = number_at(text, at, 13);
    if (long_one.count == 13 && checks_13(long_one)) return long_one.end;
    const Number short_one = number_at(text, at, 10);
    return short_one.count == 10 && checks_10(short_one) ? short_one.end : 0;
}

} // namespace

bool is_isbn13(std::string_view text) {
    const Number n = number_at(text, 0, 13);
    return n.count == 13 && n.end == text.size() && checks_13(n);
}

void add_isbns(Book &book, std::string_view text) {
    for (size_t at = 0; at < text.size(); ++at) {
        if (!is_digit(text[at]) || (at > 0 && is_word(text[at - 1]))) continue;
        const size_t end = end_of_isbn(text, at);
        if (end == 0) continue;
        book.add_isbn(text.substr(at, end - at));
        at = end - 1;
    }
}

void add_isbns(Book &book, Source &source, std::string_view start) {
    add_isbns(book, start.substr(0, scanned_bytes));
    add_isbns(book, source.end(end_bytes));
}

} // namespace book
