// SPDX-License-Identifier: MIT
// Takes markup off.
#include "markup.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <utility>

#include "ground/fold.h"
#include "ground/lines.h"
#include "ground/utf8.h"

namespace dict {
namespace {

constexpr std::array line_tags = {"br", "p", "div", "li", "tr", "dd", "dt", "k", "blockquote"};
constexpr std::array<std::pair<std::string_view, std::string_view>, 6> entities = {
    {{"amp", "&"}, {"lt", "<"}, {"gt", ">"}, {"quot", "\""}, {"apos", "'"}, {"nbsp", " "}}};

std::string entity(std::string_view name) {
    if (name.starts_with('#')) {
        const bool is_hex = name.size() > 1 && (name[1] == 'x' || name[1] == 'X');
        const std::string digits(name.substr(is_hex ? 2 : 1));
        return utf8::encoded(std::strtoul(digits.c_str(), nullptr, is_hex ? 16 : 10));
    }
    const auto found = std::ranges::find(entities, name, [](const auto &e) { return e.first; });
    return found != entities.end() ? std::string(found->second) : std::string();
}

bool begins_line(std::string_view tag) {
    if (tag.starts_with('/')) tag.remove_prefix(1);
    const size_t end = tag.find_first_of(" /\t\n");
    return std::ranges::any_of(line_tags, [&](std::string_view name) {
        return ground::equal_folded(tag.substr(0, end), name);
    });
}

// Takes "&name;" off, or only the "&" when that is all there is.
std::string take_entity(std::string_view &text) {
    constexpr size_t longest = 10;
    const size_t end = text.substr(0, longest).find(';');
    const std::string meant = end != text.npos ? entity(text.substr(1, end - 1)) : std::string();
    text.remove_prefix(meant.empty() ? 1 : end + 1);
    return meant.empty() ? "&" : meant;
}

} // namespace

std::string without_markup(std::string_view text) {
    std::string out;
    while (!text.empty()) {
        const size_t end = text[0] == '<' ? text.find('>') : text.npos;
        if (end != text.npos) {
            if (begins_line(text.substr(1, end - 1)) && !out.empty() && out.back() != '\n')
                out += '\n';
            text.remove_prefix(end + 1);
        } else if (text[0] == '&') {
            out += take_entity(text);
        } else {
            const size_t plain =
                std::max<size_t>(1, std::min(text.find_first_of("<&"), text.size()));
            out += text.substr(0, plain);
            text.remove_prefix(plain);
        }
    }
    return std::string(ground::trim_right(out, [](char c) { return c == '\n' || c == ' '; }));
}

} // namespace dict
