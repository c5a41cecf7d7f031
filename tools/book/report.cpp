// SPDX-License-Identifier: MIT
// Prints the fields of a record that have a value.
#include "report.h"

#include <cstdio>
#include <ctime>
#include <string>
#include <string_view>
#include <vector>

#include "bookinfo/encoding.h"

namespace report {
namespace {

// A value for people and for programs.
struct Field {
    const char *name;
    std::string shown, json;
};

// Calls put(character, is_well_formed) for each character of a text.
template <class Put>
void each_character(std::string_view text, Put put) {
    while (!text.empty()) {
        const std::string_view c = text.substr(0, book::first_character(text));
        put(c, book::is_utf8(c));
        text.remove_prefix(c.size());
    }
}

std::string escape(unsigned code) {
    char escaped[8];
    std::snprintf(escaped, sizeof escaped, "\\u%04x", code & 0xFFFF);
    return escaped;
}

// Bytes of file names that are not UTF-8 stand as lone surrogates, as many programs have them.
std::string quoted(std::string_view text) {
    std::string out = "\"";
    each_character(text, [&](std::string_view c, bool is_well_formed) {
        const auto first = static_cast<unsigned char>(c.front());
        if (!is_well_formed)
            for (const char byte : c) out += escape(0xDC00U | static_cast<unsigned char>(byte));
        else if (c == "\"" || c == "\\")
            out.append("\\").append(c);
        else if (first < ' ')
            out += escape(first);
        else
            out += c;
    });
    return out + '"';
}

bool is_control(std::string_view c) {
    const auto last = static_cast<unsigned char>(c.back());
    return c.size() == 1 ? last < ' ' || last == 0x7F : c.starts_with('\xC2') && last < 0xA0;
}

// A value stays on its line, and does nothing to the terminal.
std::string in_one_line(std::string_view text) {
    std::string out;
    each_character(text, [&](std::string_view c, bool is_well_formed) {
        out += !is_well_formed ? "\xEF\xBF\xBD" : is_control(c) ? " " : c;
    });
    return out;
}

Field text(const char *name, const char *value) {
    return value ? Field{name, in_one_line(value), quoted(value)} : Field{name, {}, {}};
}

Field number(const char *name, int64_t value) {
    const std::string digits = std::to_string(value);
    return {name, digits, digits};
}

Field number_if_any(const char *name, int64_t value) {
    return value != 0 ? number(name, value) : Field{name, {}, {}};
}

Field time(const char *name, int64_t seconds) {
    const auto when = static_cast<std::time_t>(seconds);
    std::tm local{};
    char shown[32] = "";
    if (seconds != 0 && localtime_r(&when, &local))
        std::strftime(shown, sizeof shown, "%Y-%m-%d %H:%M:%S", &local);
    return {name, shown, std::to_string(seconds)};
}

Field list(const char *name, const char *const (&values)[BOOK_GENRES]) {
    Field all{name, {}, "["};
    for (const char *value : values) {
        if (!value) break;
        const char *separator = all.shown.empty() ? "" : ", ";
        all.shown.append(separator).append(in_one_line(value));
        all.json.append(separator).append(quoted(value));
    }
    all.json += ']';
    return all;
}

std::vector<Field> fields_of(const bookinfo &b) {
    return {text("path", b.path),           text("title", b.title),
            text("kind", b.typedesc),       number("type", b.type),
            text("author", b.author),       text("first_author", b.first_author),
            text("series", b.series),       number_if_any("numinseries", b.numinseries),
            list("genres", b.genre),        text("lang", b.lang),
            text("publisher", b.publisher), text("isbn", b.isbn),
            text("meta_id", b.meta_id),     text("identifiers", b.identifiers),
            number_if_any("drm", b.drm),    number("size", b.size),
            time("ctime", b.ctime),         text("annotation", b.annotation)};
}

} // namespace

Printer::Printer(Style style) : style_(style) {
    if (style_ == Style::json) std::fputs("[", stdout);
}

Printer::~Printer() {
    if (style_ == Style::json) std::fputs("\n]\n", stdout);
}

void Printer::operator()(const bookinfo &book) {
    const bool is_json = style_ == Style::json;
    if (is_json)
        std::fputs(is_first_ ? "\n  {" : ",\n  {", stdout);
    else if (!is_first_)
        std::fputs("\n", stdout);
    is_first_ = false;
    const char *separator = "";
    for (const Field &field : fields_of(book)) {
        if (field.shown.empty()) continue;
        if (is_json)
            std::printf("%s\n    \"%s\": %s", separator, field.name, field.json.c_str());
        else
            std::printf("%-13s %s\n", field.name, field.shown.c_str());
        separator = ",";
    }
    if (is_json) std::fputs("\n  }", stdout);
}

} // namespace report
