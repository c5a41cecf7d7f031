// SPDX-License-Identifier: MIT
// Lines of a text, and the blanks around what they hold.
#pragma once

#include <algorithm>
#include <cstring>
#include <span>
#include <string_view>

namespace ground {

// Takes the first line off a text, without its line feed. A NUL is put behind the line, where its
// line feed is or where the text ends. At the end of the text data() is null.
inline std::span<char> take_line(std::span<char> &text) {
    if (text.empty()) return {};
    const auto *feed = static_cast<const char *>(std::memchr(text.data(), '\n', text.size()));
    const auto line = feed ? text.first(static_cast<std::size_t>(feed - text.data())) : text;
    text = text.subspan(std::min(line.size() + 1, text.size()));
    line.data()[line.size()] = '\0';
    return line;
}

// The same of a text that is not empty and only read.
constexpr std::string_view take_line(std::string_view &text) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    return line;
}

// A space, a tab, or the carriage return of lines that end with two characters.
constexpr bool is_blank(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}

template <class Condition = bool (*)(char)>
constexpr std::string_view trim_left(std::string_view text, Condition dropped = is_blank) {
    while (!text.empty() && dropped(text.front())) text.remove_prefix(1);
    return text;
}

template <class Condition = bool (*)(char)>
constexpr std::string_view trim_right(std::string_view text, Condition dropped = is_blank) {
    while (!text.empty() && dropped(text.back())) text.remove_suffix(1);
    return text;
}

constexpr std::string_view trim(std::string_view text) {
    return trim_left(trim_right(text));
}

} // namespace ground
