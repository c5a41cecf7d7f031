// SPDX-License-Identifier: MIT
// The record of the last book that was asked for.
#include "kelvane/bookinfo.h"

#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <string_view>

#include "bookinfo/file_types.h"
#include "bookinfo/format.h"
#include "ground/fold.h"
#include "ground/guard.h"
#include "ground/heap.h"
#include "kelvane/languages.h"

namespace book {
namespace {

constexpr const char *default_separator = ", ";

// A title for whatever lies at a path.
std::string title_of(std::string_view path) {
    constexpr std::string_view zip = ".zip";
    while (path.size() > 1 && path.ends_with('/')) path.remove_suffix(1);
    std::string_view name = path.substr(path.rfind('/') + 1);
    if (name.size() > zip.size() &&
        ground::equal_folded(name.substr(name.size() - zip.size()), zip))
        name.remove_suffix(zip.size());
    const size_t dot = name.rfind('.');
    if (dot != name.npos && dot > 0) name = name.substr(0, dot);
    return GetLangText(std::string(name).c_str());
}

void read(const Location &l, Book &b) {
    const Format *format = find_format(l.name);
    if (!format) return;
    Source source(l);
    format->read(source, b);
}

// A text of the record, which the record frees.
char *copied(const std::string &text) {
    char *copy = strdup(text.c_str());
    if (!copy) throw std::bad_alloc();
    return copy;
}

// Null for a text that the book does not have.
char *copied_if_any(const std::string &text) {
    return text.empty() ? nullptr : copied(text);
}

// A record that frees its texts.
class Record {
  public:
    Record() = default;
    Record(const Record &) = delete;
    ~Record() { clear(); }

    bookinfo *get() { return &info_; }

    void clear() {
        for (char *text : {info_.typedesc, info_.path, info_.filename, info_.title, info_.author,
                           info_.series, info_.isbn, info_.meta_id, info_.first_author,
                           info_.annotation, info_.lang, info_.publisher, info_.identifiers})
            std::free(text);
        for (char *genre : info_.genre) std::free(genre);
        info_ = {};
    }

    void fill_file(const char *path, const std::string &named, const Location &l) {
        info_.path = copied(path);
        info_.filename = copied(named);
        info_.ctime = l.st.st_ctime;
        info_.size = S_ISDIR(l.st.st_mode) ? 0 : l.st.st_size;
        if (!l.type) return;
        info_.type = l.type->type;
        info_.typedesc = copied(l.type->description);
        info_.icon = l.type->icon;
    }

    void fill_book(const Book &b) {
        info_.title = copied(b.title);
        info_.author = copied_if_any(b.author);
        info_.series = copied_if_any(b.series);
        info_.numinseries = b.numinseries;
        for (size_t i = 0; i < b.genres.size(); ++i) info_.genre[i] = copied(b.genres[i]);
        info_.isbn = copied_if_any(b.isbn);
        info_.meta_id = copied_if_any(b.meta_id);
        info_.first_author = copied_if_any(b.first_author);
        info_.drm = b.is_protected ? 1 : 0;
        info_.annotation = copied_if_any(b.annotation);
        info_.lang = copied_if_any(b.lang);
        info_.publisher = copied_if_any(b.publisher);
        info_.identifiers = copied_if_any(b.identifiers);
    }

  private:
    bookinfo info_{};
};

// What was asked for last, and the answer.
struct Last {
    std::string path, separator;
    Record record;
    bool is_filled = false;

    bool answers(const char *p, const char *s) const {
        return is_filled && path == p && separator == s;
    }
};

// Never destroyed: an application may ask while it ends.
Last &last = *new Last;

bookinfo *getbookinfo(const char *path, const char *separator) {
    if (last.answers(path, separator)) return last.record.get();
    last.is_filled = false;
    const std::string asked = path; // the path may be a text of the record
    std::string joined = separator;
    last.record.clear();
    const Location l = locate(asked.c_str());
    const std::string named = title_of(asked);
    last.record.fill_file(asked.c_str(), named, l);
    Book b;
    b.separator = joined;
    if (l.type && l.type->type != BOOK_TYPE_NO) read(l, b);
    refine(b, named);
    last.record.fill_book(b);
    last.path = asked;
    last.separator = std::move(joined);
    last.is_filled = true;
    return last.record.get();
}

std::string find_isbn(const char *path) {
    const Location l = locate(path);
    Book b;
    b.separator = default_separator;
    if (l.type && l.type->type != BOOK_TYPE_NO) read(l, b);
    return digits_and_commas(b.isbn);
}

} // namespace
} // namespace book

bookinfo *GetBookInfo(const char *path) {
    return GetBookInfoExt(path, nullptr);
}

bookinfo *GetBookInfoExt(const char *path, const char *separator) {
    return ground::guarded(nullptr, [&]() -> bookinfo * {
        if (!path) return nullptr;
        return book::getbookinfo(path, separator ? separator : book::default_separator);
    });
}

char *GetBookISBN(const char *path) {
    static std::string &last_path = *new std::string, &last_isbn = *new std::string;
    return ground::guarded(nullptr, [&]() -> char * {
        if (!path) return nullptr;
        if (last_path != path) {
            std::string isbn = book::find_isbn(path);
            last_path = path;
            last_isbn = std::move(isbn);
        }
        return last_isbn.empty() ? nullptr : last_isbn.data();
    });
}
