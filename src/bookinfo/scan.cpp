// SPDX-License-Identifier: MIT
// The parts of markup that handlers of tags take apart.
#include "bookinfo/scan.h"

#include <algorithm>
#include <cstdio>

#include "ground/fold.h"
#include "ground/lines.h"

namespace book {
namespace {

constexpr bool is_space(char c) {
    return ground::is_blank(c) || c == '\n';
}

constexpr bool is_quote(char c) {
    return c == '"' || c == '\'';
}

constexpr bool ends_name(char c) {
    return is_space(c) || c == '>' || c == '/';
}

size_t end_of_word(std::string_view text) {
    const auto end = std::find_if(text.begin(), text.end(), is_space);
    return static_cast<size_t>(end - text.begin());
}

// The place of a tag's name behind a prefix, which writers are free to choose.
size_t behind_prefix(std::string_view text, size_t at) {
    constexpr size_t longest = 16;
    const std::string_view start = text.substr(at, longest);
    const auto end = std::find_if_not(start.begin(), start.end(), ground::is_letter);
    return end != start.end() && *end == ':' ? at + static_cast<size_t>(end - start.begin()) + 1
                                             : at;
}

} // namespace

size_t pass_unknown_tag(const Found &found) {
    std::fputs("stream xml parser - unknown tag in book\n", stderr);
    return found.after;
}

std::optional<Element> text_until(std::string_view text, size_t after, std::string_view end_tag) {
    const size_t end = text.find(end_tag, after);
    if (end == text.npos) return std::nullopt;
    return Element{{}, text.substr(after, end - after), end + end_tag.size()};
}

std::optional<Element> element_at(std::string_view text, size_t after, std::string_view end_tag) {
    const size_t close = text.find('>', after);
    if (close == text.npos || !ends_name(text[after])) return std::nullopt;
    const std::string_view tag = text.substr(after, close - after);
    if (tag.ends_with('/')) return Element{tag, {}, close + 1};
    auto element = text_until(text, close + 1, end_tag);
    if (element) element->tag = tag;
    return element;
}

std::string_view attribute(std::string_view tag, std::string_view name) {
    while (!tag.empty()) {
        tag = ground::trim_left(tag, is_space);
        const size_t equals = tag.find_first_of("=> \t\r\n");
        if (equals == tag.npos) return {};
        const std::string_view found = tag.substr(0, equals);
        tag = ground::trim_left(tag.substr(equals), is_space);
        if (!tag.starts_with('=')) {
            if (tag.starts_with('>')) return {};
            continue;
        }
        tag = ground::trim_left(tag.substr(1), is_space);
        if (tag.empty()) return {};
        const bool is_quoted = is_quote(tag.front());
        const size_t start = is_quoted ? 1 : 0;
        const size_t end = is_quoted ? tag.find(tag.front(), 1) : end_of_word(tag);
        if (end == tag.npos) return {};
        if (ground::equal_folded(found, name)) return tag.substr(start, end - start);
        tag.remove_prefix(std::min(end + 1, tag.size()));
    }
    return {};
}

std::optional<Element> find_start_tag(std::string_view text, std::string_view name, size_t at) {
    while ((at = text.find('<', at)) != text.npos) {
        at = behind_prefix(text, at + 1);
        const size_t after = at + name.size();
        if (after >= text.size()) return std::nullopt;
        if (!ends_name(text[after]) || !ground::equal_folded(text.substr(at, name.size()), name))
            continue;
        const size_t close = text.find('>', after);
        if (close == text.npos) return std::nullopt;
        return Element{text.substr(after, close - after), {}, close + 1};
    }
    return std::nullopt;
}

std::string_view encoding_name(std::string_view text) {
    constexpr size_t longest = 29;
    const auto is_part = [](char c) {
        return ground::is_letter(c) || (c >= '0' && c <= '9') || c == '-' || c == '_';
    };
    text = ground::trim_left(text, is_quote);
    const auto end = std::find_if_not(text.begin(), text.end(), is_part);
    return text.substr(0, std::min<size_t>(longest, static_cast<size_t>(end - text.begin())));
}

} // namespace book
