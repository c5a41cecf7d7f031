// SPDX-License-Identifier: MIT
// Drops tags and decodes entities in one pass: what an entity stands for is text, not markup.
#include "bookinfo/markup.h"

#include <cstdint>
#include <cstdlib>

#include "bookinfo/encoding.h"
#include "ground/letter_case.h"
#include "ground/lines.h"
#include "ground/utf8.h"

namespace book {
namespace {

constexpr struct {
    std::string_view name;
    char character;
} entities[] = {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}};

// "#1087" or "#x43F"; empty when that is no character.
std::string numeric(std::string_view name) {
    name.remove_prefix(1);
    const bool is_hexadecimal = name.starts_with('x') || name.starts_with('X');
    if (is_hexadecimal) name.remove_prefix(1);
    const std::string digits(name);
    const char *all = is_hexadecimal ? "0123456789abcdefABCDEF" : "0123456789";
    if (digits.empty() || digits.find_first_not_of(all) != digits.npos) return {};
    return utf8::encoded(std::strtoul(digits.c_str(), nullptr, is_hexadecimal ? 16 : 10));
}

// What an entity stands for; empty for an unknown one.
std::string meaning(std::string_view name) {
    if (name.starts_with('#')) return numeric(name);
    for (const auto &entity : entities)
        if (name == entity.name) return {entity.character};
    return {};
}

// Takes an entity off the front of a text that begins with "&", or that alone.
void take_entity(std::string_view &text, std::string &out) {
    constexpr size_t longest_name = 10;
    const std::string_view start = text.substr(1, longest_name + 1);
    const size_t end = start.find(';');
    const std::string character = end != start.npos ? meaning(start.substr(0, end)) : "";
    out += character.empty() ? "&" : character;
    text.remove_prefix(character.empty() ? 1 : end + 2);
}

enum class Tags { kept, dropped };

std::string plain(std::string_view text, Tags tags) {
    std::string out;
    const char *special = tags == Tags::dropped ? "&<" : "&";
    while (!text.empty()) {
        const size_t ordinary = std::min(text.find_first_of(special), text.size());
        out += text.substr(0, ordinary);
        text.remove_prefix(ordinary);
        if (text.empty()) break;
        if (text.front() == '&') {
            take_entity(text, out);
            continue;
        }
        const size_t end = text.find('>');
        // What is not closed is no tag, and no later one is.
        if (end == text.npos) return out + plain(text, Tags::kept);
        text.remove_prefix(end + 1);
    }
    return out;
}

} // namespace

std::string_view trimmed(std::string_view text) {
    constexpr auto is_space = [](char c) { return ground::is_blank(c) || c == '\n'; };
    return ground::trim_left(ground::trim_right(text, is_space), is_space);
}

std::string decoded(std::string_view text) {
    return plain(text, Tags::kept);
}

std::string without_markup(std::string_view text) {
    return std::string(trimmed(plain(text, Tags::dropped)));
}

void capitalize(std::string &utf8) {
    const size_t first = first_character(utf8);
    utf8.replace(0, first, ground::upper_case(utf8.substr(0, first).c_str()));
}

} // namespace book
