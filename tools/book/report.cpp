// SPDX-License-Identifier: MIT
// Prints the fields of a record that have a value.
#include "report.h"

#include <cinttypes>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace report {
namespace {

struct Field {
    const char *name;
    std::string value;
    bool is_number = false;
};

std::string joined_genres(const bookinfo &b) {
    std::string all;
    for (const char *genre : b.genre)
        if (genre) all += (all.empty() ? "" : ", ") + std::string(genre);
    return all;
}

std::vector<Field> fields_of(const bookinfo &b) {
    const auto text = [](const char *t) { return std::string(t ? t : ""); };
    const auto number = [](int64_t n) { return n != 0 ? std::to_string(n) : std::string(); };
    return {{"path", text(b.path)},
            {"title", text(b.title)},
            {"kind", text(b.typedesc)},
            {"type", std::to_string(b.type), true},
            {"author", text(b.author)},
            {"first_author", text(b.first_author)},
            {"series", text(b.series)},
            {"numinseries", number(b.numinseries), true},
            {"genres", joined_genres(b)},
            {"lang", text(b.lang)},
            {"publisher", text(b.publisher)},
            {"isbn", text(b.isbn)},
            {"meta_id", text(b.meta_id)},
            {"drm", number(b.drm), true},
            {"size", std::to_string(b.size), true},
            {"ctime", std::to_string(b.ctime), true},
            {"annotation", text(b.annotation)}};
}

std::string quoted(std::string_view text) {
    std::string out = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            out += '\\';
            out += c;
        } else if (static_cast<unsigned char>(c) < ' ') {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(c));
            out += escape;
        } else {
            out += c;
        }
    }
    return out + '"';
}

// A value stays on its line, and does nothing to the terminal.
std::string in_one_line(std::string text) {
    for (char &c : text)
        if (static_cast<unsigned char>(c) < ' ' || c == 0x7F) c = ' ';
    return text;
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
    if (is_json) std::fputs(is_first_ ? "\n  {" : ",\n  {", stdout);
    if (!is_json && !is_first_) std::fputs("\n", stdout);
    is_first_ = false;
    const char *separator = "";
    for (const Field &field : fields_of(book)) {
        if (field.value.empty()) continue;
        if (is_json)
            std::printf("%s\n    \"%s\": %s", separator, field.name,
                        field.is_number ? field.value.c_str() : quoted(field.value).c_str());
        else
            std::printf("%-13s %s\n", field.name, in_one_line(field.value).c_str());
        separator = ",";
    }
    if (is_json) std::fputs("\n  }", stdout);
}

} // namespace report
