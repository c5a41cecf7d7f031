// SPDX-License-Identifier: MIT
// kelvane-dict: makes dictionaries, looks words up in them and proves them.
#include <charconv>
#include <cstdio>
#include <exception>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "commands.h"

namespace dict {
namespace {

namespace fs = std::filesystem;
using Arguments = std::vector<std::string>;

constexpr const char *usage =
    "kelvane-dict compile [OPTION]... SOURCE     makes a dictionary of words and articles\n"
    "    SOURCE is a text with a word, a tab and an article on each line, an .index of dictd\n"
    "    or an .ifo of StarDict, which have their articles beside them\n"
    "    -o FILE             the dictionary; SOURCE.dic in this folder when not said\n"
    "    --language CODE     of the words: its own letters, forms of words and keyboard\n"
    "    --collation FILE    how words are compared; \"none\": as they are written\n"
    "    --morphology FILE   rules for the forms of words; a CODE, or \"none\"\n"
    "    --keyboard FILE     the layout to enter words with; a CODE, or \"none\"\n"
    "    -j COUNT            so many threads; all processors when not said\n"
    "kelvane-dict list                           names the dictionaries of this device folder\n"
    "kelvane-dict look [-d DICTIONARY] WORD...   looks words up, in a file, in a dictionary of\n"
    "                                            this device folder, or in all of them\n"
    "kelvane-dict check FILE                     proves that every word can be found\n"
    "kelvane-dict unpack FILE FOLDER             writes what compile makes the same file of\n"
    "kelvane-dict --help | --version\n";

int misuse() {
    std::fputs(usage, stderr);
    return STATUS_MISUSED;
}

// Takes "NAME VALUE" off the front; nothing when another word is there.
std::optional<std::string> take_option(Arguments &words, std::string_view name) {
    if (words.size() < 2 || words[0] != name) return std::nullopt;
    std::string value = words[1];
    words.erase(words.begin(), words.begin() + 2);
    return value;
}

bool parse_threads(const std::string &text, unsigned &threads) {
    const auto result = std::from_chars(text.data(), text.data() + text.size(), threads);
    return result.ec == std::errc() && result.ptr == text.data() + text.size() && threads >= 1 &&
           threads <= 256;
}

// Options may stand on both sides of the source.
int run_compile(Arguments words) {
    CompileOptions o;
    while (!words.empty()) {
        if (auto out = take_option(words, "-o"))
            o.out = *out;
        else if (auto language = take_option(words, "--language"))
            o.language = *language;
        else if (auto letters = take_option(words, "--collation"))
            o.collation = letters;
        else if (auto rules = take_option(words, "--morphology"))
            o.morphology = rules;
        else if (auto keyboard = take_option(words, "--keyboard"))
            o.keyboard = keyboard;
        else if (const auto threads = take_option(words, "-j")) {
            if (!parse_threads(*threads, o.threads)) return misuse();
        } else if (o.source.empty() && !words[0].starts_with('-')) {
            o.source = words[0];
            words.erase(words.begin());
        } else {
            return misuse();
        }
    }
    return o.source.empty() ? misuse() : compile(o);
}

int run_look(Arguments words) {
    const auto dictionary = take_option(words, "-d");
    if (!words.empty() && words[0] == "--") words.erase(words.begin());
    return words.empty() ? misuse() : look(dictionary, words);
}

int run(const Arguments &words) {
    if (words == Arguments{"--help"}) return std::fputs(usage, stdout) < 0;
    if (words == Arguments{"--version"}) return std::puts("kelvane-dict " KELVANE_VERSION) < 0;
    const std::string command = words.empty() ? "" : words[0];
    const Arguments rest(words.begin() + !words.empty(), words.end());
    if (command == "compile") return run_compile(rest);
    if (command == "list" && rest.empty()) return list();
    if (command == "look") return run_look(rest);
    if (command == "check" && rest.size() == 1) return check(rest[0]);
    if (command == "unpack" && rest.size() == 2) return unpack_to(rest[0], rest[1]);
    return misuse();
}

// What a full disk kept back is an error too.
int printed(int status) {
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return status;
    std::fputs("kelvane-dict: standard output: cannot be written\n", stderr);
    return STATUS_FAILED;
}

} // namespace

fs::path data_folder() {
    std::error_code unknown;
    return fs::read_symlink("/proc/self/exe", unknown).parent_path() / KELVANE_DATA;
}

} // namespace dict

int main(int count, char **arguments) {
    try {
        return dict::printed(dict::run({arguments + 1, arguments + count}));
    } catch (const std::exception &e) {
        std::fprintf(stderr, "kelvane-dict: %s\n", e.what());
        return dict::STATUS_FAILED;
    }
}
