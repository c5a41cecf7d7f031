// SPDX-License-Identifier: MIT
// HTML, also from servers that write it.
#include "bookinfo/encoding.h"
#include "bookinfo/format.h"
#include "bookinfo/isbn.h"
#include "bookinfo/scan.h"
#include "ground/fold.h"

namespace book {
namespace {

constexpr Tag tags[] = {
    {"charset=", "", TAG_CHARSET},
    {"<title>", "</title>", TAG_TITLE_HTML},
};
constexpr TagTable table{tags};

size_t handle(const Found &found, Book &book) {
    switch (found.tag.type) {
    case TAG_CHARSET:
        set_first(book.encoding, encoding_name(found.text.substr(found.after)));
        return found.after;
    case TAG_TITLE_HTML: {
        const auto title = text_until(found.text, found.after, found.tag.end);
        if (title) set_first(book.title, title->text);
        return title ? title->after : found.after;
    }
    default:
        return pass_unknown_tag(found);
    }
}

// Titles with attributes or in other letters, which the table does not name. Ends at the next tag.
void find_title(std::string_view text, Book &book) {
    const auto title = find_start_tag(text, "title");
    if (title)
        set_first(book.title,
                  text.substr(title->after, text.find('<', title->after) - title->after));
}

void read_metas(std::string_view text, Book &book) {
    for (auto meta = find_start_tag(text, "meta"); meta;
         meta = find_start_tag(text, "meta", meta->after)) {
        const std::string_view name = attribute(meta->tag, "name"),
                               content = attribute(meta->tag, "content");
        if (ground::equal_folded(name, "author")) {
            if (book.author.empty()) set_first(book.first_author, content);
            book.add_author(content);
        } else if (ground::equal_folded(name, "description")) {
            set_first(book.annotation, content);
        }
    }
}

void read(Source &source, Book &book) {
    const std::string start = without_mark(source.start(), book.encoding);
    stream_xml_parser(start, table, [&](const Found &found) { return handle(found, book); });
    find_title(start, book);
    read_metas(start, book);
    if (const auto root = find_start_tag(start, "html"))
        set_first(book.lang, attribute(root->tag, "lang"));
    add_isbns(book, source, start);
}

} // namespace

extern const Format html{"html,htm,xhtml,xht,shtml,shtm,php,cgi,asp,aspx,jsp", read, nullptr};

} // namespace book
