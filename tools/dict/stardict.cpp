// SPDX-License-Identifier: MIT
// Reads dictionaries of StarDict: a description, an index of words, synonyms, and one file with all
// articles.
#include <cstdlib>
#include <map>
#include <optional>
#include <stdexcept>
#include <string_view>

#include "ground/lines.h"
#include "markup.h"
#include "sources.h"

namespace dict {
namespace {

namespace fs = std::filesystem;

// The first of some files beside a description that exists.
std::optional<fs::path> beside(const fs::path &ifo, std::initializer_list<const char *> endings) {
    for (const char *ending : endings)
        if (fs::path path = fs::path(ifo).replace_extension(ending); fs::exists(path)) return path;
    return std::nullopt;
}

std::string read_beside(const fs::path &ifo, std::initializer_list<const char *> endings) {
    if (const auto path = beside(ifo, endings)) return read_packed_file(*path);
    throw std::runtime_error(ifo.string() + ": there is no " + *endings.begin() + " beside it");
}

using Description = std::map<std::string, std::string, std::less<>>;

Description read_description(const fs::path &ifo) {
    const std::string bytes = read_file(ifo);
    Description description;
    std::string_view text = bytes;
    while (!text.empty()) {
        const std::string_view line = ground::trim(ground::take_line(text));
        const size_t equals = line.find('=');
        if (equals != line.npos)
            description.emplace(line.substr(0, equals), line.substr(equals + 1));
    }
    if (bytes.find("StarDict's dict ifo file") == bytes.npos)
        throw std::runtime_error(ifo.string() + ": is no description of a StarDict dictionary");
    return description;
}

// Takes a text with its NUL off; nothing when there is no NUL.
std::optional<std::string_view> take_text(std::string_view &bytes) {
    const size_t end = bytes.find('\0');
    if (end == bytes.npos) return std::nullopt;
    const std::string_view text = bytes.substr(0, end);
    bytes.remove_prefix(end + 1);
    return text;
}

// Takes a number off, the highest byte first.
std::optional<uint64_t> take_number(std::string_view &bytes, size_t size) {
    if (bytes.size() < size) return std::nullopt;
    uint64_t value = 0;
    for (size_t i = 0; i < size; ++i) value = value << 8 | static_cast<uint8_t>(bytes[i]);
    bytes.remove_prefix(size);
    return value;
}

// The data of one field of an article. Of small types a NUL ends the data, of capitals a number
// before it tells its size; the last field of known types has neither.
std::string_view take_field(std::string_view &article, char type, bool is_last_known) {
    std::string_view data = article;
    if (type >= 'A' && type <= 'Z' && !is_last_known) {
        const uint64_t size = take_number(article, 4).value_or(0);
        data = article.substr(0, size);
        article.remove_prefix(data.size());
    } else {
        if (!is_last_known) data = article.substr(0, article.find('\0'));
        article.remove_prefix(std::min(data.size() + 1, article.size()));
    }
    return data;
}

// What of a field can be shown; pictures and sounds cannot.
std::string text_of(std::string_view data, char type) {
    constexpr std::string_view plain = "mltyk", marked_up = "ghxwn";
    data = data.substr(0, data.find('\0'));
    if (plain.find(type) != plain.npos) return std::string(ground::trim(data));
    return marked_up.find(type) != marked_up.npos ? without_markup(data) : std::string();
}

std::string article_text(std::string_view article, std::string_view types) {
    std::string text;
    for (size_t i = 0; !article.empty() && (types.empty() || i < types.size()); ++i) {
        char type;
        if (types.empty()) {
            type = article[0];
            article.remove_prefix(1);
        } else {
            type = types[i];
        }
        const std::string field =
            text_of(take_field(article, type, !types.empty() && i + 1 == types.size()), type);
        if (!text.empty() && !field.empty()) text += '\n';
        text += field;
    }
    return text;
}

// Adds the entries of an index, whose numbers synonyms then name. An entry without an article, or
// without text in it, is not there, but has its number.
void read_index(std::string_view index, std::string_view articles, const Description &about,
                Source &source) {
    const auto value = [&](std::string_view key) {
        const auto found = about.find(key);
        return found != about.end() ? std::string_view(found->second) : std::string_view();
    };
    const size_t offset_bytes = value("idxoffsetbits") == "64" ? 8 : 4;
    for (size_t number = 1; !index.empty(); ++number) {
        const auto word = take_text(index);
        const auto start = take_number(index, offset_bytes), size = take_number(index, 4);
        if (!word || !start || !size) {
            source.mistakes.push_back({source.lines_of, number, "the index is cut here"});
            return;
        }
        source.entries.push_back({*word, {}, number});
        if (*start > articles.size() || *size > articles.size() - *start) {
            source.mistakes.push_back({source.lines_of, number, "no article lies there"});
            continue;
        }
        source.entries.back().article =
            source.keep(article_text(articles.substr(*start, *size), value("sametypesequence")));
        if (source.entries.back().article.empty())
            source.mistakes.push_back({source.lines_of, number, "the article has no text"});
    }
}

// Other words for the articles of some.
void read_synonyms(std::string_view bytes, const std::string &path, Source &source) {
    const size_t entries = source.entries.size();
    for (size_t number = 1; !bytes.empty(); ++number) {
        const auto word = take_text(bytes);
        const auto meant = take_number(bytes, 4);
        if (!word || !meant || *meant >= entries) {
            source.mistakes.push_back({path, number, "there is no such entry"});
            if (!word || !meant) return;
            continue;
        }
        const Entry &entry = source.entries[*meant];
        source.entries.push_back({*word, entry.article, entry.line});
    }
}

} // namespace

Source read_stardict(const fs::path &path) {
    const Description about = read_description(path);
    Source source{{}, beside(path, {".idx", ".idx.gz"}).value_or(path).string()};
    const std::string_view index = source.keep(read_beside(path, {".idx", ".idx.gz"}));
    const std::string articles = read_beside(path, {".dict", ".dict.dz"});
    read_index(index, articles, about, source);
    if (const auto synonyms = beside(path, {".syn", ".syn.dz"}))
        read_synonyms(source.keep(read_packed_file(*synonyms)), synonyms->string(), source);
    std::erase_if(source.entries, [](const Entry &e) { return e.article.empty(); });
    return source;
}

} // namespace dict
