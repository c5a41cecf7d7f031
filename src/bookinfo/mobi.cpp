// SPDX-License-Identifier: MIT
// MOBI and PRC: a Palm database whose first record describes the book in a header and, behind it,
// in a block of typed records, EXTH.
#include <algorithm>
#include <cstdint>
#include <optional>

#include "bookinfo/format.h"
#include "bookinfo/markup.h"
#include "bookinfo/scan.h"

namespace book {
namespace {

constexpr size_t database_header_bytes = 78, entry_bytes = 8;
constexpr size_t text_header_bytes = 16, mobi_header_bytes = 116;
constexpr size_t exth_header_bytes = 12, exth_record_header_bytes = 8;
constexpr size_t most_exth_bytes = 16'384, most_name_bytes = 1024;

// Numbers are big-endian. What lies behind the end reads as 0.
uint32_t number_at(std::string_view bytes, size_t at, size_t size) {
    uint32_t value = 0;
    for (size_t i = at; i < at + size; ++i)
        value = value << 8 | (i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U);
    return value;
}
uint32_t word_at(std::string_view bytes, size_t at) {
    return number_at(bytes, at, 4);
}
uint32_t half_at(std::string_view bytes, size_t at) {
    return number_at(bytes, at, 2);
}

enum ExthType : uint32_t {
    EXTH_AUTHOR = 100,
    EXTH_PUBLISHER = 101,
    EXTH_DESCRIPTION = 103,
    EXTH_ISBN = 104,
    EXTH_SUBJECT = 105,
    EXTH_COVER = 201,
    EXTH_TITLE = 503,
    EXTH_LANGUAGE = 524
};

// Calls visit(type, data) for each whole record.
template <class Visit>
void visit_exth(std::string_view records, Visit visit) {
    while (records.size() >= exth_record_header_bytes) {
        const size_t length = word_at(records, 4);
        if (length < exth_record_header_bytes || length > records.size()) return;
        visit(word_at(records, 0),
              records.substr(exth_record_header_bytes, length - exth_record_header_bytes));
        records.remove_prefix(length);
    }
}

std::string_view until_nul(std::string_view text) {
    return text.substr(0, text.find('\0'));
}

class Database {
  public:
    // Nothing when it is not of the kind.
    static std::optional<Database> open(Source &source) {
        Database db(source);
        const std::string header = source.read_at(0, database_header_bytes + entry_bytes);
        constexpr size_t least_offset = 85;
        db.records_ = half_at(header, 76);
        db.first_ = word_at(header, database_header_bytes);
        if (header.size() < database_header_bytes + entry_bytes ||
            header.compare(60, 8, "BOOKMOBI") != 0 || db.records_ == 0 || db.first_ <= least_offset)
            return std::nullopt;
        db.name_ = until_nul(std::string_view(header).substr(0, 32));
        std::replace(db.name_.begin(), db.name_.end(), '_', ' ');
        db.header_ = source.read_at(db.first_, text_header_bytes + mobi_header_bytes);
        return db;
    }

    const std::string &name() const { return name_; }
    bool has_mobi_header() const {
        return header_.size() == text_header_bytes + mobi_header_bytes &&
               mobi().starts_with("MOBI");
    }
    bool is_encrypted() const { return half_at(header_, 12) != 0; }
    uint32_t encoding() const { return word_at(mobi(), 12); }

    // The title in the first record; empty when the header does not tell.
    std::string full_name() const {
        if (header_length() <= 75) return {};
        const uint64_t place = uint64_t{first_} + word_at(mobi(), 68);
        const size_t length = std::min<size_t>(word_at(mobi(), 72), most_name_bytes);
        return std::string(until_nul(source_.read_at(place, length)));
    }

    // The records of the EXTH block; empty without one, or when its length cannot be.
    std::string exth() const {
        constexpr unsigned has_exth = 0x40;
        if (header_length() < 112 || (number_at(mobi(), 115, 1) & has_exth) == 0) return {};
        const uint64_t place = uint64_t{first_} + text_header_bytes + header_length();
        const std::string head = source_.read_at(place, exth_header_bytes);
        const size_t length = word_at(head, 4);
        if (!head.starts_with("EXTH") || length < exth_header_bytes ||
            length - exth_header_bytes > most_exth_bytes)
            return {};
        return source_.read_at(place + exth_header_bytes, length - exth_header_bytes);
    }

    uint32_t first_picture() const { return word_at(mobi(), 92); }

    // The bytes of a record; empty when the table of records is not in order there.
    std::string record(uint64_t index) const {
        if (index >= records_) return {};
        const std::string entries =
            source_.read_at(database_header_bytes + index * entry_bytes, 2 * entry_bytes);
        const uint32_t start = word_at(entries, 0);
        // What follows the last record's entry is no entry: that record ends with the file.
        const uint64_t end = index + 1 < records_ ? word_at(entries, entry_bytes) : UINT32_MAX;
        if (start >= end) return {};
        return source_.read_at(start, std::min<uint64_t>(end - start, most_picture_bytes));
    }

  private:
    explicit Database(Source &source) : source_(source) {}
    std::string_view mobi() const {
        return std::string_view(header_).substr(std::min(text_header_bytes, header_.size()));
    }
    uint32_t header_length() const { return word_at(mobi(), 4); }

    Source &source_;
    std::string name_, header_;
    uint32_t records_ = 0, first_ = 0;
};

void add_author(Book &book, std::string_view name) {
    // A repeated one is dropped, wherever it stands.
    if ((book.separator + book.author + book.separator)
            .find(book.separator + std::string(name) + book.separator) != std::string::npos)
        return;
    set_first(book.first_author, name);
    book.add_author(name);
}

void store(uint32_t type, std::string_view data, Book &book) {
    data = trimmed(until_nul(data));
    switch (type) {
    case EXTH_AUTHOR:
        return add_author(book, data);
    case EXTH_PUBLISHER:
        return set_first(book.publisher, data);
    case EXTH_DESCRIPTION:
        return set_first(book.annotation, data);
    case EXTH_ISBN:
        return book.add_isbn(data);
    case EXTH_SUBJECT:
        return book.add_genre(data);
    case EXTH_TITLE:
        return set_first(book.title, data);
    case EXTH_LANGUAGE:
        return set_first(book.lang, data);
    default: // of the many others none is for readers
        return;
    }
}

void read(Source &source, Book &book) {
    const auto db = Database::open(source);
    if (!db) return;
    if (db->has_mobi_header()) {
        constexpr uint32_t utf8 = 65'001;
        book.encoding = db->encoding() == utf8 ? "UTF-8" : "CP" + std::to_string(db->encoding());
        book.is_protected = db->is_encrypted();
        visit_exth(db->exth(),
                   [&](uint32_t type, std::string_view data) { store(type, data, book); });
        if (book.title.empty()) set_first(book.title, db->full_name());
    }
    set_first(book.title, db->name());
}

Picture cover(Source &source) {
    const auto db = Database::open(source);
    if (!db || !db->has_mobi_header()) return {};
    std::optional<uint32_t> number;
    visit_exth(db->exth(), [&](uint32_t type, std::string_view data) {
        if (type == EXTH_COVER && data.size() >= 4) number = word_at(data, 0);
    });
    Picture picture;
    if (number) picture = db->record(uint64_t{db->first_picture()} + *number);
    return picture.empty() ? db->record(db->first_picture()) : picture;
}

} // namespace

extern const Format mobi{"mobi,prc", read, cover};

} // namespace book
