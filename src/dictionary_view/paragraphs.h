// SPDX-License-Identifier: MIT
// Finds the paragraphs of an article, which dictionaries keep as plain text with a few customs.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace dictionary_view {

enum class Kind {
    headword,
    grammar, // the part of speech is the mark, the pronunciation the text
    sense,   // the mark is its number, or empty where it goes on
    example,
    plain
};

struct Paragraph {
    Kind kind;
    std::string mark, text;
    bool hangs; // below a number
};

// The headword comes first. A headword that opens the translation is left out there. The customs:
// "<noun>" and "/pronunciation/" at the beginning; "1." or "1)" before a sense; quotation marks or
// a dash before an example; blanks before what belongs to the line above. Throws bad_alloc.
std::vector<Paragraph> read_article(std::string_view headword, std::string_view translation);

// What the word means in short: the senses without examples, on lines of their own or one after the
// other. Throws bad_alloc.
enum class Senses { on_lines, in_a_row };
std::string summary(const std::vector<Paragraph> &article, Senses senses);

} // namespace dictionary_view
