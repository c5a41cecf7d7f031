// SPDX-License-Identifier: MIT
// kelvane-book: prints what the library says of files.
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

#include <kelvane/bookinfo.h>
#include <kelvane/pictures.h>

#include "report.h"

namespace {

namespace fs = std::filesystem;

constexpr int usage_error = 2;

constexpr const char *usage =
    "kelvane-book [--json] FILE...          prints what the files say of themselves\n"
    "kelvane-book [--json] -r FOLDER...     the same of all books below folders\n"
    "kelvane-book --cover OUT.png FILE      saves the cover of a book\n"
    "kelvane-book --help | --version\n";

struct Options {
    std::vector<std::string> paths;
    std::optional<std::string> cover;
    report::Style style = report::Style::table;
    bool is_recursive = false;
};

std::optional<Options> parse(const std::vector<std::string> &words) {
    Options o;
    for (size_t i = 0; i < words.size(); ++i) {
        const std::string &word = words[i];
        if (word == "--json")
            o.style = report::Style::json;
        else if (word == "-r")
            o.is_recursive = true;
        else if (word == "--cover" && i + 1 < words.size())
            o.cover = words[++i];
        else if (word == "--")
            return o.paths.insert(o.paths.end(), words.begin() + static_cast<long>(i) + 1,
                                  words.end()),
                   o;
        else if (word.starts_with('-'))
            return std::nullopt;
        else
            o.paths.push_back(word);
    }
    const bool fits = !o.cover || (o.paths.size() == 1 && !o.is_recursive);
    return fits && !o.paths.empty() ? std::optional(o) : std::nullopt;
}

// Outside of a device folder the table of file types is the one that comes with the library: it is
// read from a folder that has it as its "system".
void lend_table() {
    std::error_code error;
    if (fs::exists("system/config/extensions.cfg", error)) return;
    const fs::path data = fs::read_symlink("/proc/self/exe", error).parent_path() / KELVANE_DATA;
    const fs::path here = fs::current_path(error);
    std::string lent = (fs::temp_directory_path(error) / "kelvane-book-XXXXXX").string();
    if (error || !mkdtemp(lent.data())) return;
    fs::create_directory_symlink(data, fs::path(lent) / "system", error);
    fs::current_path(lent, error);
    GetSupportedFileTypes();
    fs::current_path(here, error);
    fs::remove_all(lent, error);
}

bool is_book(const bookinfo &info) {
    return info.typedesc && info.type != BOOK_TYPE_NO;
}

// Tells why something was not done.
void complain(const std::string &path, const std::string &why) {
    std::fprintf(stderr, "kelvane-book: %s: %s\n", path.c_str(), why.c_str());
}

bool can_be_read(const std::string &path) {
    if (access(path.c_str(), R_OK) == 0) return true;
    complain(path, std::strerror(errno));
    return false;
}

// The files below a folder, in the order of their names. Folders that are forbidden are passed
// over.
std::vector<std::string> files_below(const std::string &folder) {
    std::vector<std::string> found;
    std::error_code error;
    fs::recursive_directory_iterator at(folder, fs::directory_options::skip_permission_denied,
                                        error);
    for (; !error && at != fs::recursive_directory_iterator(); at.increment(error))
        if (std::error_code unknown; !at->is_directory(unknown))
            found.push_back(at->path().string());
    if (error) complain(folder, error.message());
    std::sort(found.begin(), found.end());
    return found;
}

// A line that is written over, for people who wait.
void show_progress(size_t done, size_t all) {
    static const bool is_watched = isatty(STDERR_FILENO) != 0 && isatty(STDOUT_FILENO) == 0;
    if (is_watched && (done % 64 == 0 || done == all))
        std::fprintf(stderr, "\r%zu of %zu%s", done, all, done == all ? "\n" : "");
}

bool save_cover(const std::string &path, const std::string &to) {
    if (!can_be_read(path)) return false;
    ibitmap *cover = GetBookCover(path.c_str(), -1, -1);
    const bool is_saved = cover && SavePNG(to.c_str(), cover) == 1;
    if (!cover)
        complain(path, "has no cover that can be read");
    else if (!is_saved)
        complain(to, "cannot be written");
    std::free(cover);
    return is_saved;
}

// False when a file cannot be read.
bool print_all(const Options &o) {
    bool all_read = true;
    std::vector<std::string> files;
    for (const std::string &path : o.paths) {
        std::error_code error;
        if (!can_be_read(path)) {
            all_read = false;
        } else if (o.is_recursive && fs::is_directory(path, error)) {
            const auto found = files_below(path);
            files.insert(files.end(), found.begin(), found.end());
        } else {
            files.push_back(path);
        }
    }
    report::Printer print(o.style);
    for (size_t i = 0; i < files.size(); ++i) {
        const bookinfo *info = GetBookInfo(files[i].c_str());
        if (info && (!o.is_recursive || is_book(*info))) print(*info);
        if (o.is_recursive) show_progress(i + 1, files.size());
    }
    return all_read;
}

// What a full disk kept back is an error too.
bool is_printed() {
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return true;
    complain("standard output", std::strerror(errno));
    return false;
}

} // namespace

int main(int count, char **arguments) {
    const std::vector<std::string> words(arguments + 1, arguments + count);
    if (words == std::vector<std::string>{"--help"}) return std::fputs(usage, stdout) < 0;
    if (words == std::vector<std::string>{"--version"})
        return std::puts("kelvane-book " KELVANE_VERSION) < 0;
    const auto options = parse(words);
    if (!options) {
        std::fputs(usage, stderr);
        return usage_error;
    }
    lend_table();
    if (options->cover) return save_cover(options->paths[0], *options->cover) ? 0 : 1;
    const bool all_read = print_all(*options);
    return is_printed() && all_read ? 0 : 1;
}
