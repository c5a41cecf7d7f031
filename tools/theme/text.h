// SPDX-License-Identifier: MIT
// The parameter text of a theme: parameters and translations.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tool {

struct Entry {
    std::string name, value;
};

struct Translation {
    std::string language; // "*": any
    std::string key, text;
};

struct ThemeText {
    std::vector<Entry> parameters;
    std::vector<Translation> translations;

    // The text as a theme file has it. Translations are in the order of languages and keys, those
    // for any language first, so that one language's own text goes before.
    std::string packed() const;
};

// A line that says something: neither empty nor a comment.
struct Line {
    size_t number; // from 1
    std::string_view text;
};
// Without the blanks before and the carriage returns behind.
std::vector<Line> lines_of(std::string_view text);

// "name=value"; false without "=".
bool split(std::string_view line, Entry &entry);
// A parameter "language:key" with its value; false without ":".
bool split(const Entry &entry, Translation &translation);

} // namespace tool
