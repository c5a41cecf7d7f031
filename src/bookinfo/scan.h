// SPDX-License-Identifier: MIT
// One pass over the start of a text that looks for the tags of a table. It is no parser: markup
// that is broken, cut or nested costs what healthy markup costs.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

namespace book {

// What the tags of all tables mean; the numbers do not change.
enum TagType {
    TAG_NONE,
    TAG_ENCODING,
    TAG_TITLE_FB2,
    TAG_DOCUMENT_INFO,
    TAG_GENRE,
    TAG_SEQUENCE,
    TAG_AUTHOR_FB2,
    TAG_ANNOTATION_FB2,
    TAG_BODY,
    TAG_LANGUAGE_FB2,
    TAG_TITLE_INFO_END,
    TAG_ISBN,
    TAG_PUBLISHER,
    TAG_TITLE_EPUB,
    TAG_AUTHOR_EPUB,
    TAG_SUBJECT,
    TAG_IDENTIFIER,
    TAG_SERIES,
    TAG_LANGUAGE_EPUB,
    TAG_PUBLISHER_EPUB,
    TAG_ANNOTATION_EPUB,
    TAG_CHARSET,
    TAG_TITLE_HTML
};

struct Tag {
    std::string_view start,
        end; // what is searched for; what ends its text, if that is in the table
    int type;
};

// Rows and the bytes that their tags begin with, which are of ASCII.
struct TagTable {
    std::span<const Tag> rows;
    std::array<bool, 128> begins{};

    explicit constexpr TagTable(std::span<const Tag> tags) : rows(tags) {
        for (const Tag &tag : tags) begins[static_cast<unsigned char>(tag.start.front())] = true;
    }
};

// Most places are told apart by the second byte, without a call. A tag has two at least.
inline bool is_at(std::string_view text, size_t at, std::string_view tag) {
    return text.size() - at >= tag.size() && text[at + 1] == tag[1] &&
           text.compare(at, tag.size(), tag) == 0;
}

// The row whose tag is at a place; null for none.
inline const Tag *find_tag(const TagTable &table, std::string_view text, size_t at) {
    const auto byte = static_cast<unsigned char>(text[at]);
    if (byte >= table.begins.size() || !table.begins[byte]) return nullptr;
    for (const Tag &tag : table.rows)
        if (is_at(text, at, tag.start)) return &tag;
    return nullptr;
}

// Where a handler is: its tag was found, and `after` is the place behind it.
struct Found {
    const Tag &tag;
    std::string_view text; // all of it
    size_t after;
};

inline constexpr size_t end_of_scan = std::string_view::npos;

// Calls handle(Found), which returns where the scan goes on, for each tag of the table.
template <class Handle>
void stream_xml_parser(std::string_view text, const TagTable &table, Handle handle) {
    for (size_t at = 0; at < text.size();) {
        const Tag *tag = find_tag(table, text, at);
        at = tag ? handle(Found{*tag, text, at + tag->start.size()}) : at + 1;
    }
}

// What a handler does with a type that it does not know. Returns where the scan goes on.
size_t pass_unknown_tag(const Found &found);

struct Element {
    std::string_view tag;  // what stands behind its name, up to ">"
    std::string_view text; // between its tags
    size_t after;          // the place behind its end tag
};

// The element whose start tag continues at `after`. Nothing when its name goes on there, or it is
// cut off. An element of one tag has no text.
std::optional<Element> element_at(std::string_view text, size_t after, std::string_view end_tag);

// The text up to an end tag; nothing when that is missing.
std::optional<Element> text_until(std::string_view text, size_t after, std::string_view end_tag);

// The value of an attribute of a tag, in quotes of either kind or none; empty without it. The name
// is found in any case of letters.
std::string_view attribute(std::string_view tag, std::string_view name);

// The next element of a name, from `at` on, whose start tag alone is read: markup of any kind in
// any case of letters, with or without a prefix. `after` is then behind its ">".
std::optional<Element> find_start_tag(std::string_view text, std::string_view name, size_t at = 0);

// The letters, digits, "-" and "_" of an encoding's name, behind any quotes: 29 at most.
std::string_view encoding_name(std::string_view text);

} // namespace book
