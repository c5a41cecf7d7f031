// SPDX-License-Identifier: MIT
// Prints the fields of a record that have a value.
#include "report.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <string>
#include <string_view>
#include <vector>

#include "bookinfo/encoding.h"

namespace report {
namespace {

struct Field {
    const char *name;
    std::string value;
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
    if (std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c < 0x7F; }))
        return std::string(text);
    std::string out;
    each_character(text, [&](std::string_view c, bool is_well_formed) {
        out += !is_well_formed ? "\xEF\xBF\xBD" : is_control(c) ? " " : c;
    });
    return out;
}

// Values in a style; empty for what a book does not have.
struct Values {
    Style style;

    std::string text(const char *value) const {
        if (!value) return {};
        return style == Style::json ? quoted(value) : in_one_line(value);
    }
    std::string list(const char *const (&values)[BOOK_GENRES]) const {
        std::string all;
        for (const char *value : values)
            if (value) all.append(all.empty() ? "" : ", ").append(text(value));
        return style == Style::json && !all.empty() ? '[' + all + ']' : all;
    }
    std::string time(int64_t seconds) const {
        const auto when = static_cast<std::time_t>(seconds);
        std::tm local{};
        char date[32] = "";
        if (style == Style::json || !localtime_r(&when, &local)) return std::to_string(seconds);
        std::strftime(date, sizeof date, "%Y-%m-%d %H:%M:%S", &local);
        return date;
    }
};

std::string number(int64_t value) {
    return std::to_string(value);
}

std::string number_if_any(int64_t value) {
    return value != 0 ? number(value) : std::string();
}

std::vector<Field> fields_of(const bookinfo &b, Style style) {
    const Values v{style};
    return {{"path", v.text(b.path)},           {"title", v.text(b.title)},
            {"kind", v.text(b.typedesc)},       {"type", number(b.type)},
            {"author", v.text(b.author)},       {"first_author", v.text(b.first_author)},
            {"series", v.text(b.series)},       {"numinseries", number_if_any(b.numinseries)},
            {"genres", v.list(b.genre)},        {"lang", v.text(b.lang)},
            {"publisher", v.text(b.publisher)}, {"isbn", v.text(b.isbn)},
            {"meta_id", v.text(b.meta_id)},     {"identifiers", v.text(b.identifiers)},
            {"drm", number_if_any(b.drm)},      {"size", number(b.size)},
            {"ctime", v.time(b.ctime)},         {"annotation", v.text(b.annotation)}};
}

} // namespace

Printer::Printer(Style style) : style_(style) {
    if (style_ == Style::json) std::fputs("[", stdout);
}

Printer::~Printer() {
    if (style_ == Style::json) std::fputs("\n]\n", stdout);
}

void Printer::operator()(const bookinfo &book) {
    constexpr size_t name_width = 14;
    const bool is_json = style_ == Style::json;
    std::string out = is_first_ ? "" : is_json ? "," : "\n";
    if (is_json) out += "\n  {";
    is_first_ = false;
    const char *separator = "";
    for (const Field &field : fields_of(book, style_)) {
        if (field.value.empty()) continue;
        if (is_json)
            out.append(separator).append("\n    \"").append(field.name).append("\": ");
        else
            out.append(field.name).append(name_width - std::strlen(field.name), ' ');
        out.append(field.value).append(is_json ? "" : "\n");
        separator = ",";
    }
    if (is_json) out += "\n  }";
    std::fwrite(out.data(), 1, out.size(), stdout);
}

} // namespace report
