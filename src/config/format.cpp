// SPDX-License-Identifier: MIT
// Reads and writes the lines of settings.
#include "config/format.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <string_view>

#include "ground/hash_access.h"
#include "ground/lines.h"

namespace config {
namespace {

bool is_octal(char c) {
    return c >= '0' && c <= '7';
}

// Takes an octal number of any length and yields its low byte.
char take_octal(const char *&in) {
    unsigned char number = 0;
    while (is_octal(*in)) number = static_cast<unsigned char>(number * 8 + (*in++ - '0'));
    return static_cast<char>(number);
}

// Takes what follows a backslash. A backslash before anything else than an escape stands for
// itself.
char take_escape(const char *&in) {
    switch (*in) {
    case 'n':
        in++;
        return '\n';
    case 'r':
        in++;
        return '\r';
    case 't':
        in++;
        return '\t';
    case '\\':
        in++;
        return '\\';
    default:
        return is_octal(*in) ? take_octal(in) : '\\';
    }
}

// Adds the setting of one line, which ends with a NUL.
bool parse_line(char *line, HashFiller &values) {
    while (*line == ' ' || *line == '\t') line++;
    if (*line == '#') return true;
    char *equals = std::strchr(line, '=');
    if (!equals) return true;
    *equals = '\0';
    unescape(equals + 1);
    return values.add({line, static_cast<size_t>(equals - line)}, equals + 1);
}

// The letter that stands for a byte after a backslash; 0 for a byte that is written as it is.
char escape_letter(char c) {
    switch (c) {
    case '\n':
        return 'n';
    case '\r':
        return 'r';
    case '\t':
        return 't';
    case '\\':
        return '\\';
    default:
        return 0;
    }
}

// Appends at most `room` bytes of the escaped value, and no half of an escape. False when it was
// cut.
bool append_escaped(std::string &text, std::string_view value, size_t room) {
    const size_t limit = text.size() + room;
    for (auto rest = value.begin();;) {
        const auto escaped = std::find_if(rest, value.end(), escape_letter);
        const size_t plain = std::min<size_t>(escaped - rest, limit - text.size());
        text.append(rest, rest + plain);
        if (rest + plain == value.end()) return true;
        if (text.size() + 2 > limit) return false;
        text += '\\';
        text += escape_letter(*escaped);
        rest = escaped + 1;
    }
}

// Whether a line that begins with this name reads back as one of that name.
bool is_plain(std::string_view name) {
    if (name.empty()) return true;
    const bool bare_start = name[0] != ' ' && name[0] != '\t' && name[0] != '#';
    return bare_start && name.find('=') == name.npos && name.find('\n') == name.npos;
}

// Text in a buffer that grows by one step an item; a value that does not fit is cut.
class Writer {
  public:
    SettingsText out;
    int items = 0;

    void append(std::string_view name, std::string_view value) {
        make_room(name.size(), value.size());
        out.text += name;
        out.text += '=';
        const bool whole = append_escaped(out.text, value, size - out.text.size() - 3);
        out.text += '\n';
        out.exact = out.exact && whole && is_plain(name);
        items++;
    }

  private:
    static constexpr size_t step = 16384;
    static constexpr size_t usual_name = 256;
    size_t size = 0;

    void make_room(size_t name, size_t value) {
        const size_t most = 2 * value + name + out.text.size() + 4;
        if (most >= size) size += step;
        // A name is never cut, nor its value for its sake: a long one gets room for the whole line.
        if (name > usual_name) size = std::max(size, (most / step + 1) * step);
        out.text.reserve(size);
    }
};

// Null sorts first.
int compare_names(const char *a, void *, const char *b, void *) {
    if (!a || !b) return (a != nullptr) - (b != nullptr);
    return std::strcmp(a, b);
}

int append_item(const char *name, void *value, void *userdata) {
    if (!value) throw std::bad_alloc(); // a copy that failed: values are never null
    static_cast<Writer *>(userdata)->append(name, static_cast<const char *>(value));
    return 0;
}

} // namespace

void unescape(char *value) {
    char *out = std::strchr(value, '\\');
    if (!out) return;
    for (const char *in = out; *in;) {
        char c = *in++;
        if (c == '\\') c = take_escape(in);
        *out++ = c;
    }
    *out = '\0';
}

bool parse_settings(std::span<char> text, ihash values) {
    const int limit = hash_count(values) + most_settings;
    HashFiller filler(values);
    for (std::span<char> rest = text;;) {
        const std::span<char> line = ground::take_line(rest);
        if (!line.data()) return true;
        const bool is_cut =
            line.data() + line.size() == text.data() + text.size(); // no line feed ends it
        if (!is_cut && !line.empty() && line.back() == '\r') line.back() = '\0';
        if (!parse_line(line.data(), filler) || hash_count(values) > limit) return false;
    }
}

SettingsText format_settings(ihash values) {
    Writer w;
    hash_enumerate(values, compare_names, append_item, &w);
    if (w.items != hash_count(values)) throw std::bad_alloc();
    return std::move(w.out);
}

} // namespace config
