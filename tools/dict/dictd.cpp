// SPDX-License-Identifier: MIT
// Reads dictionaries of dictd: an index of words, and one file with all articles.
#include <algorithm>
#include <array>
#include <optional>
#include <stdexcept>
#include <string_view>

#include <glib.h>

#include "ground/lines.h"
#include "ground/utf8.h"
#include "sources.h"

namespace dict {
namespace {

namespace fs = std::filesystem;

// Numbers of an index have digits of six bits.
std::optional<size_t> parse_number(std::string_view digits) {
    constexpr std::string_view alphabet =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    constexpr size_t most_digits = 6;
    size_t value = 0;
    if (digits.empty() || digits.size() > most_digits) return std::nullopt;
    for (const char digit : digits) {
        const size_t place = alphabet.find(digit);
        if (place == alphabet.npos) return std::nullopt;
        value = value << 6 | place;
    }
    return value;
}

// Words of an index are small letters, digits and single blanks; all else has been taken out of
// them. This is what a character becomes there: 0 for what was taken out.
gunichar indexed(gunichar c) {
    if (g_unichar_isspace(c)) return ' ';
    return g_unichar_isalnum(c) || g_unichar_ismark(c) ? g_unichar_tolower(c) : 0;
}

gunichar take(std::string_view &text) {
    const gunichar c = g_utf8_get_char_validated(text.data(), static_cast<gssize>(text.size()));
    const bool is_broken = c == gunichar(-1) || c == gunichar(-2) || c == 0;
    text.remove_prefix(
        is_broken ? 1 : static_cast<size_t>(g_utf8_next_char(text.data()) - text.data()));
    return is_broken ? 0 : c;
}

// What of a line spells a word of the index, from the line's beginning on; empty when none does.
std::string_view spelling_at(std::string_view line, std::string_view word) {
    std::string_view rest = line;
    bool is_after_blank = true;
    while (!word.empty()) {
        const gunichar wanted = indexed(take(word));
        if (wanted == 0) continue;
        gunichar c = 0;
        while (!rest.empty() && (c == 0 || (c == ' ' && is_after_blank))) c = indexed(take(rest));
        if (c != wanted) return {};
        is_after_blank = c == ' ';
    }
    // Signs that belong to it.
    for (std::string_view next = rest; !next.empty(); rest = next) {
        const gunichar c = indexed(take(next));
        if (c == ' ') break;
        if (c != 0) return {};
    }
    std::string_view spelling = line.substr(0, line.size() - rest.size());
    return ground::trim_right(spelling, [](char c) { return c == ' ' || c == ',' || c == ';'; });
}

// The article's own spelling of a word of the index, which has no capitals and no signs. It begins
// the first line of the article, or stands further on among others.
std::string_view headword(std::string_view article, std::string_view word) {
    std::string_view line = ground::take_line(article);
    word = ground::trim(word);
    while (!line.empty()) {
        line = ground::trim_left(line);
        if (const auto spelling = spelling_at(line, word); !spelling.empty()) return spelling;
        line.remove_prefix(std::min(line.find(' '), line.size()));
    }
    return word;
}

struct Line {
    std::array<std::string_view, 4> fields; // word, start, size, the word as it was
    size_t count = 0;
};

Line split(std::string_view text) {
    Line line;
    while (line.count < line.fields.size()) {
        const size_t tab = text.find('\t');
        line.fields[line.count++] = text.substr(0, tab);
        if (tab == text.npos) break;
        text.remove_prefix(tab + 1);
    }
    return line;
}

constexpr auto is_space = [](char c) { return c == '\n' || c == ' '; };

// Entries about the dictionary itself.
bool is_about_dictionary(std::string_view word) {
    return word.starts_with("00database") || word.starts_with("00-database");
}

fs::path articles_of(const fs::path &index) {
    for (const char *extension : {".dict.dz", ".dict"})
        if (fs::path path = fs::path(index).replace_extension(extension); fs::exists(path))
            return path;
    throw std::runtime_error(index.string() + ": there is no .dict.dz or .dict beside it");
}

} // namespace

Source read_dictd(const fs::path &path) {
    Source source{{}, path.string()};
    std::string_view text = source.keep(read_file(path));
    const std::string_view articles = source.keep(read_packed_file(articles_of(path)));
    for (size_t number = 1; !text.empty(); ++number) {
        const Line line = split(ground::take_line(text));
        const auto start = parse_number(line.fields[1]), size = parse_number(line.fields[2]);
        if (!start || !size || *start > articles.size() || *size > articles.size() - *start) {
            source.mistakes.push_back({path.string(), number, "no article lies there"});
            continue;
        }
        if (is_about_dictionary(line.fields[0])) continue;
        const std::string_view article = articles.substr(*start, *size);
        const std::string_view word =
            line.count == 4 ? line.fields[3] : headword(article, line.fields[0]);
        source.entries.push_back(
            {ground::trim(word), ground::trim_right(article, is_space), number});
    }
    return source;
}

} // namespace dict
