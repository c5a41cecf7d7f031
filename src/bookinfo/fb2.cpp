// SPDX-License-Identifier: MIT
// FB2: one XML file with a description, the text, and pictures in base64.
#include <algorithm>

#include "bookinfo/base64.h"
#include "bookinfo/encoding.h"
#include "bookinfo/format.h"
#include "bookinfo/isbn.h"
#include "bookinfo/markup.h"
#include "bookinfo/scan.h"
#include "ground/number.h"

namespace book {
namespace {

constexpr size_t most_bytes = 48 << 20; // of a book whose cover is searched

constexpr Tag tags[] = {
    {"encoding=", "\"", TAG_ENCODING},
    {"<book-title>", "</book-title>", TAG_TITLE_FB2},
    {"<document-info", "</document-info>", TAG_DOCUMENT_INFO},
    {"<genre>", "</genre>", TAG_GENRE},
    {"<sequence", ">", TAG_SEQUENCE},
    {"<author>", "</author>", TAG_AUTHOR_FB2},
    {"<annotation>", "</annotation>", TAG_ANNOTATION_FB2},
    {"<body>", "", TAG_BODY},
    {"<lang>", "</lang>", TAG_LANGUAGE_FB2},
    {"<isbn>", "</isbn>", TAG_ISBN},
    {"<publisher>", "</publisher>", TAG_PUBLISHER},
    {"</title-info>", "", TAG_TITLE_INFO_END},
};
constexpr TagTable table{tags};

class Reader {
  public:
    explicit Reader(Book &book) : book_(book) {}

    size_t handle(const Found &found) {
        switch (found.tag.type) {
        case TAG_ENCODING:
            set_first(book_.encoding, encoding_name(found.text.substr(found.after)));
            return found.after;
        case TAG_DOCUMENT_INFO:
        case TAG_GENRE:
        case TAG_SEQUENCE:
        case TAG_AUTHOR_FB2:
        case TAG_TITLE_FB2:
        case TAG_ANNOTATION_FB2:
        case TAG_LANGUAGE_FB2:
        case TAG_ISBN:
        case TAG_PUBLISHER:
            return handle_element(found);
        case TAG_TITLE_INFO_END:
            is_behind_title_ = true;
            return found.after;
        case TAG_BODY:
            return end_of_scan;
        default:
            return pass_unknown_tag(found);
        }
    }

  private:
    size_t handle_element(const Found &found) {
        const auto element = text_until(found.text, found.after, found.tag.end);
        if (!element) return found.after;
        store(found.tag.type, element->text);
        return element->after;
    }

    void store(int type, std::string_view text) {
        switch (type) {
        case TAG_TITLE_FB2:
            return set_first(book_.title, text);
        case TAG_DOCUMENT_INFO:
            return set_first(book_.meta_id, part(text, "<id>", "</id>"));
        case TAG_GENRE:
            return is_behind_title_ ? void() : book_.add_genre(text);
        case TAG_SEQUENCE:
            return store_sequence(text);
        case TAG_AUTHOR_FB2:
            return is_behind_title_ ? void() : store_author(text);
        case TAG_ANNOTATION_FB2:
            return set_first(book_.annotation, text);
        case TAG_LANGUAGE_FB2:
            return set_first(book_.lang, text);
        case TAG_ISBN:
            return set_first(book_.isbn, text);
        default:
            return set_first(book_.publisher, text);
        }
    }

    static std::string_view part(std::string_view text, std::string_view start,
                                 std::string_view end) {
        const size_t at = text.find(start);
        const auto found =
            at != text.npos ? text_until(text, at + start.size(), end) : std::nullopt;
        return found ? trimmed(found->text) : std::string_view();
    }

    void store_sequence(std::string_view tag) {
        if (has_sequence_) return;
        has_sequence_ = true;
        book_.series = trimmed(attribute(tag, "name"));
        book_.numinseries =
            ground::parse_int(std::string(attribute(tag, "number")).c_str(), nullptr, 10);
    }

    void store_author(std::string_view text) {
        const std::string_view first = part(text, "<first-name>", "</first-name>"),
                               middle = part(text, "<middle-name>", "</middle-name>"),
                               last = part(text, "<last-name>", "</last-name>");
        if (book_.author.empty())
            for (const std::string_view name : {last, first, middle})
                set_first(book_.first_author, name);
        std::string display;
        for (const std::string_view name : {last, first, middle}) {
            if (!display.empty() && !name.empty()) display += ' ';
            display += name;
        }
        book_.add_author(display);
    }

    Book &book_;
    bool is_behind_title_ = false, has_sequence_ = false;
};

void read(Source &source, Book &book) {
    const std::string start = without_mark(source.start(), book.encoding);
    Reader reader(book);
    stream_xml_parser(start, table, [&](const Found &found) { return reader.handle(found); });
    if (!book.isbn.empty()) return;
    add_isbns(book, source, start);
    if (!book.isbn.empty()) book.isbn.insert(0, ";");
}

// The name of the picture on the cover page, without its "#".
std::string cover_name(std::string_view start) {
    const auto page = find_start_tag(start, "coverpage");
    if (!page) return {};
    const std::string_view rest = start.substr(page->after);
    const std::string_view inside = rest.substr(0, rest.find("</coverpage"));
    const auto image = find_start_tag(inside, "image");
    if (!image) return {};
    // The prefix of the attribute is the file's own choice: "l:href", "xlink:href".
    const size_t href = image->tag.find("href");
    const std::string_view name =
        href != image->tag.npos ? attribute(image->tag.substr(href), "href") : std::string_view();
    return std::string(name.starts_with('#') ? name.substr(1) : name);
}

Picture cover(Source &source) {
    std::string encoding;
    const std::string name = cover_name(without_mark(source.start(), encoding));
    if (name.empty()) return {};
    const std::string all = source.whole(most_bytes);
    const std::string_view text = all;
    for (size_t at = text.find("<binary"); at != text.npos; at = text.find("<binary", at)) {
        const size_t close = text.find('>', at);
        if (close == text.npos) break;
        const std::string_view tag = text.substr(at + 7, close - at - 7);
        at = close;
        if (attribute(tag, "id") != name) continue;
        const size_t end = std::min(text.find('<', close), text.size());
        return from_base64(text.substr(close + 1, end - close - 1), most_picture_bytes);
    }
    return {};
}

} // namespace

extern const Format fb2{"fb2", read, cover};

} // namespace book
