// SPDX-License-Identifier: MIT
// Scans a package for its elements, then for what other elements say of them.
#include "bookinfo/package.h"

#include <array>

#include "bookinfo/encoding.h"
#include "bookinfo/isbn.h"
#include "bookinfo/markup.h"
#include "bookinfo/scan.h"
#include "ground/fold.h"
#include "ground/number.h"

namespace book {
namespace {

constexpr size_t most_identifiers = 10'240; // bytes

constexpr Tag tags[] = {
    {"<dc:title", "</dc:title>", TAG_TITLE_EPUB},
    {"<dcns:title", "</dcns:title>", TAG_TITLE_EPUB},
    {"<dc:creator", "</dc:creator>", TAG_AUTHOR_EPUB},
    {"<dcns:creator", "</dcns:creator>", TAG_AUTHOR_EPUB},
    {"<dc:subject", "</dc:subject>", TAG_SUBJECT},
    {"<dcns:subject", "</dcns:subject>", TAG_SUBJECT},
    {"<dc:identifier", "</dc:identifier>", TAG_IDENTIFIER},
    {"<dcns:identifier", "</dcns:identifier>", TAG_IDENTIFIER},
    {"<dc:language", "</dc:language>", TAG_LANGUAGE_EPUB},
    {"<dcns:language", "</dcns:language>", TAG_LANGUAGE_EPUB},
    {"<dc:publisher", "</dc:publisher>", TAG_PUBLISHER_EPUB},
    {"<dcns:publisher", "</dcns:publisher>", TAG_PUBLISHER_EPUB},
    {"<dc:description", "</dc:description>", TAG_ANNOTATION_EPUB},
    {"<dcns:description", "</dcns:description>", TAG_ANNOTATION_EPUB},
    {"series\" content=\"", "\"", TAG_SERIES},
};
constexpr TagTable table{tags};

// The element <meta refines="#id" property="..."> of EPUB 3.
std::string_view refinement(std::string_view text, std::string_view id, std::string_view property) {
    if (id.empty()) return {};
    for (auto meta = find_start_tag(text, "meta"); meta;
         meta = find_start_tag(text, "meta", meta->after)) {
        const std::string_view target = attribute(meta->tag, "refines");
        if (target.starts_with('#') && target.substr(1) == id &&
            attribute(meta->tag, "property") == property)
            return trimmed(text.substr(meta->after, text.find('<', meta->after) - meta->after));
    }
    return {};
}

// The content of the first meta whose name ends so, whatever stands in front of it.
std::string_view named_content(std::string_view text, std::string_view end) {
    for (auto meta = find_start_tag(text, "meta"); meta;
         meta = find_start_tag(text, "meta", meta->after))
        if (attribute(meta->tag, "name").ends_with(end)) return attribute(meta->tag, "content");
    return {};
}

bool takes_prefix(std::string_view &text, std::string_view prefix) {
    if (!ground::equal_folded(text.substr(0, prefix.size()), prefix)) return false;
    text.remove_prefix(prefix.size());
    return true;
}

class Reader {
  public:
    Reader(std::string_view text, Book &book) : text_(text), book_(book) {
        if (const auto package = find_start_tag(text, "package"))
            unique_ = attribute(package->tag, "unique-identifier");
    }

    size_t handle(const Found &found) {
        switch (found.tag.type) {
        case TAG_TITLE_EPUB:
        case TAG_AUTHOR_EPUB:
        case TAG_SUBJECT:
        case TAG_IDENTIFIER:
        case TAG_LANGUAGE_EPUB:
        case TAG_PUBLISHER_EPUB:
        case TAG_ANNOTATION_EPUB:
            return handle_element(found);
        case TAG_SERIES:
            return handle_series(found);
        default:
            return pass_unknown_tag(found);
        }
    }

    // Series that the table does not name: of a meta with its content in front, or of EPUB 3.
    void find_series() {
        set_series(named_content(text_, "series"), named_content(text_, "series_index"));
        for (auto meta = find_start_tag(text_, "meta"); meta && book_.series.empty();
             meta = find_start_tag(text_, "meta", meta->after))
            if (attribute(meta->tag, "property") == "belongs-to-collection")
                store_collection(*meta);
    }

  private:
    size_t handle_element(const Found &found) {
        const auto element = element_at(found.text, found.after, found.tag.end);
        if (!element) return found.after;
        const size_t start = found.after - found.tag.start.size();
        store(found.tag.type, *element, found.text.substr(start, element->after - start));
        return element->after;
    }

    void store(int type, const Element &element, std::string_view whole) {
        switch (type) {
        case TAG_TITLE_EPUB:
            return set_first(book_.title, element.text);
        case TAG_AUTHOR_EPUB:
            return store_author(element);
        case TAG_SUBJECT:
            return book_.add_genre(element.text);
        case TAG_IDENTIFIER:
            return store_identifier(element, whole);
        case TAG_LANGUAGE_EPUB:
            return set_first(book_.lang, element.text);
        case TAG_PUBLISHER_EPUB:
            return set_first(book_.publisher, element.text);
        default:
            return set_first(book_.annotation, element.text);
        }
    }

    void store_author(const Element &element) {
        if (book_.author.empty()) {
            std::string_view sorted = attribute(element.tag, "opf:file-as");
            if (sorted.empty()) sorted = attribute(element.tag, "file-as");
            if (sorted.empty()) sorted = refinement(text_, attribute(element.tag, "id"), "file-as");
            if (sorted == "Unknown") sorted = {};
            set_first(book_.first_author, sorted);
            set_first(book_.first_author, element.text);
        }
        book_.add_author(element.text);
    }

    void store_identifier(const Element &element, std::string_view whole) {
        if (whole.size() <= most_identifiers - book_.identifiers.size()) book_.identifiers += whole;
        std::string_view text = trimmed(element.text);
        if (!unique_.empty() && attribute(element.tag, "id") == unique_)
            set_first(book_.meta_id, text);
        bool is_named = false;
        for (const char *name : {"urn:isbn:", "isbn:", "isbn-10:", "isbn-13:"})
            is_named = is_named || takes_prefix(text, name);
        for (const char *name : {"opf:scheme", "scheme"}) { // "ISBN", "ISBN-13"
            std::string_view scheme = attribute(element.tag, name);
            is_named = is_named || takes_prefix(scheme, "isbn");
        }
        if (is_named || is_isbn13(text)) book_.add_isbn(trimmed(text));
    }

    size_t handle_series(const Found &found) {
        const auto value = text_until(found.text, found.after, found.tag.end);
        if (!value) return found.after;
        set_series(value->text, named_content(text_, "series_index"));
        return value->after;
    }

    // A collection is a series unless it says that it is something else.
    void store_collection(const Element &meta) {
        const std::string_view id = attribute(meta.tag, "id"),
                               kind = refinement(text_, id, "collection-type");
        if (kind.empty() || kind == "series")
            set_series(text_.substr(meta.after, text_.find('<', meta.after) - meta.after),
                       refinement(text_, id, "group-position"));
    }

    void set_series(std::string_view name, std::string_view number) {
        if (name.empty() || !book_.series.empty()) return;
        set_first(book_.series, name);
        book_.numinseries = ground::parse_int(std::string(number).c_str(), nullptr, 10);
    }

    std::string_view text_, unique_;
    Book &book_;
};

} // namespace

void read_package(std::string_view text, Book &book) {
    if (const auto prologue = find_start_tag(text, "?xml"))
        set_first(book.encoding, attribute(prologue->tag, "encoding"));
    Reader reader(text, book);
    stream_xml_parser(text, table, [&](const Found &found) { return reader.handle(found); });
    reader.find_series();
}

} // namespace book
