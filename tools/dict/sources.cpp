// SPDX-License-Identifier: MIT
// Reads files of any of the kinds, and the one that is nothing but text.
#include "sources.h"

#include <algorithm>
#include <fstream>
#include <memory>
#include <span>
#include <stdexcept>
#include <zlib.h>

#include "ground/lines.h"

namespace dict {
namespace {

namespace fs = std::filesystem;

// What a file may hold, unpacked.
constexpr size_t largest_source = size_t{1} << 30;

[[noreturn]] void fail(const fs::path &path, const std::string &why) {
    throw std::runtime_error(path.string() + ": " + why);
}

struct GzipCloser {
    void operator()(gzFile file) const { gzclose(file); }
};
using Gzip = std::unique_ptr<gzFile_s, GzipCloser>;

// Undoes \n, \t and \\ in the place of the text; any other backslash is itself.
std::string_view unescape(std::span<char> text) {
    char *out = text.data();
    for (size_t i = 0; i < text.size(); ++i) {
        const char next = text[i] == '\\' && i + 1 < text.size() ? text[i + 1] : '\0';
        const char meant = next == 'n' ? '\n' : next == 't' ? '\t' : next == '\\' ? '\\' : '\0';
        *out++ = meant ? meant : text[i];
        i += meant != '\0';
    }
    return {text.data(), out};
}

void read_line(std::span<char> line, size_t number, Source &source) {
    if (!line.empty() && line.back() == '\r') line = line.first(line.size() - 1);
    const auto tab = static_cast<size_t>(std::ranges::find(line, '\t') - line.begin());
    if (tab < line.size())
        source.entries.push_back(
            {unescape(line.first(tab)), unescape(line.subspan(tab + 1)), number});
    else if (!line.empty())
        source.mistakes.push_back(
            {source.lines_of, number, "no tab between a word and its article"});
}

} // namespace

std::string read_file(const fs::path &path) {
    std::error_code error;
    if (!fs::is_regular_file(path, error))
        fail(path, "cannot be read"); // to open a pipe would wait
    const auto size = fs::file_size(path, error);
    std::ifstream in(path, std::ios::binary);
    if (error || !in) fail(path, "cannot be read");
    if (size > largest_source) fail(path, "is larger than a gigabyte");
    std::string bytes(size, '\0');
    in.read(bytes.data(), static_cast<std::streamsize>(size));
    bytes.resize(static_cast<size_t>(in.gcount()));
    return bytes;
}

std::string read_packed_file(const fs::path &path) {
    const Gzip file(fs::is_regular_file(path) ? gzopen(path.c_str(), "rb") : nullptr);
    if (!file) fail(path, "cannot be read");
    std::string bytes;
    constexpr size_t piece = 1 << 20;
    for (int got = 1; got > 0;) {
        const size_t before = bytes.size();
        if (before > largest_source) fail(path, "unpacks to more than a gigabyte");
        bytes.resize(before + piece);
        got = gzread(file.get(), &bytes[before], piece);
        bytes.resize(before + static_cast<size_t>(std::max(got, 0)));
        if (got < 0) fail(path, "is damaged");
    }
    int state = Z_OK;
    gzerror(file.get(), &state);
    if (state != Z_OK) fail(path, "is cut");
    return bytes;
}

Source read_source(const fs::path &path) {
    Source source = path.extension() == ".index" ? read_dictd(path)
                    : path.extension() == ".ifo" ? read_stardict(path)
                                                 : read_tab(path);
    // Many words may share one article.
    size_t size = 0;
    for (const Entry &e : source.entries) size += e.word.size() + e.article.size();
    if (size > largest_source) fail(path, "has articles of more than a gigabyte");
    return source;
}

Source read_tab(const fs::path &path) {
    Source source{{}, path.string()};
    std::span<char> text = source.keep(read_file(path));
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    if (std::string_view(text.data(), text.size()).starts_with(mark))
        text = text.subspan(mark.size());
    for (size_t number = 1; !text.empty(); ++number)
        read_line(ground::take_line(text), number, source);
    return source;
}

} // namespace dict
