// SPDX-License-Identifier: MIT
// kelvane-dict compile: one dictionary from words and side files.
#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <map>
#include <stdexcept>
#include <string>
#include <unistd.h>

#include "commands.h"
#include "ground/fold.h"
#include "letters.h"
#include "printable.h"
#include "sides.h"
#include "sources.h"
#include "writer.h"

namespace dict {
namespace {

namespace fs = std::filesystem;

constexpr const char *none = "none";
constexpr size_t most_named = 10; // entries of a kind that are named one by one
constexpr size_t longest_named = 200;

// The data of a language that comes with the library; empty when there is none.
fs::path own_file(const char *folder, const std::string &language, const char *extension) {
    if (language.empty() || language.find('/') != language.npos) return {};
    fs::path path = data_folder() / folder / (language + extension);
    return fs::exists(path) ? path : fs::path();
}

bool is_known(const std::string &language) {
    return has_own_letters(language) || !own_file("morphology", language, ".txt").empty() ||
           !own_file("keyboard", language, ".kbd").empty();
}

// The options with their language in small letters, as all of ours are.
CompileOptions with_language(CompileOptions o) {
    o.language = ground::folded(o.language);
    if (!o.language.empty() && !is_known(o.language))
        std::fprintf(
            stderr,
            "kelvane-dict: %s: this language has no letters, forms or keyboard of its own\n",
            printable(o.language).c_str());
    return o;
}

// The side file that is asked for, by its path or a language, or that of the dictionary's language;
// empty for none.
fs::path side_file(const std::optional<std::string> &asked, const char *folder,
                   const std::string &language, const char *extension) {
    if (asked == none) return {};
    if (asked && fs::exists(*asked)) return *asked;
    const fs::path own = own_file(folder, ground::folded(asked.value_or(language)), extension);
    return own.empty() && asked ? fs::path(*asked) : own;
}

Sides read_sides(const CompileOptions &o, Mistakes &mistakes) {
    Sides sides;
    Letters letters = default_letters(o.language);
    if (o.collation == none)
        letters.clear();
    else if (o.collation)
        read_letters(read_file(*o.collation), *o.collation, letters, mistakes);
    sides.collation = pairs_of(letters);
    const fs::path rules = side_file(o.morphology, "morphology", o.language, ".txt");
    if (!rules.empty()) sides.morphology = read_rules(read_file(rules), rules.string(), mistakes);
    const fs::path keyboard = side_file(o.keyboard, "keyboard", o.language, ".kbd");
    if (!keyboard.empty())
        sides.keyboard = read_keyboard(read_file(keyboard), keyboard.string(), mistakes);
    return sides;
}

void print(const Mistakes &mistakes) {
    for (size_t i = 0; i < std::min(mistakes.size(), most_named); ++i) {
        const Mistake &m = mistakes[i];
        std::fprintf(stderr, "%s:%zu: %s\n", m.path.c_str(), m.line, m.text.c_str());
    }
    if (mistakes.size() > most_named)
        std::fprintf(stderr, "and %zu mistakes more\n", mistakes.size() - most_named);
}

const char *text_of(Reason reason) {
    switch (reason) {
    case Reason::collates_to_nothing:
        return "nothing of it is compared";
    case Reason::beyond_16_bits:
        return "has characters above U+FFFF";
    case Reason::not_utf8:
        return "is not UTF-8";
    case Reason::word_too_long:
        return "is longer than 4 KiB";
    case Reason::too_large:
        return "its article is too large";
    case Reason::no_room:
        return "has no room beside words that compare equal";
    case Reason::repeated:
        return "is there twice";
    }
    return "";
}

void print_left_out(const Source &source, const Written &written) {
    std::map<Reason, size_t> counts;
    for (const auto &[entry, reason] : written.left_out)
        if (++counts[reason] <= most_named && reason != Reason::repeated)
            std::fprintf(stderr, "%s:%zu: \"%s\" is left out: %s\n", source.lines_of.c_str(),
                         entry->line, printable(entry->word.substr(0, longest_named)).c_str(),
                         text_of(reason));
    for (const auto &[reason, count] : counts)
        std::fprintf(stderr, "left out: %zu, %s\n", count, text_of(reason));
}

bool is_watched() {
    static const bool is_terminal = isatty(STDERR_FILENO) != 0;
    return is_terminal;
}

// A line that is written over, for people who wait.
void show_progress(size_t done, size_t all) {
    if (is_watched() && (done % 256 == 0 || done == all))
        std::fprintf(stderr, "\rpacked %zu of %zu%s", done, all, done == all ? "\n" : "");
}

// The file is there when it is whole. What is no plain file, such as a device, is written to and
// stays what it is.
void save(const fs::path &path, const std::string &bytes) {
    std::error_code error;
    const bool is_replaced = !fs::exists(path, error) || fs::is_regular_file(path, error);
    const fs::path written = is_replaced ? path.string() + ".new" : path.string();
    std::ofstream out(written, std::ios::binary);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    error.clear();
    if (out && is_replaced) fs::rename(written, path, error);
    if (out && !error) return;
    if (is_replaced) fs::remove(written, error);
    throw std::runtime_error(path.string() + ": cannot be written");
}

fs::path default_out(const fs::path &source) {
    return source.stem().string() + ".dic";
}

} // namespace

int compile(const CompileOptions &options) {
    const CompileOptions o = with_language(options);
    Mistakes mistakes;
    const Sides sides = read_sides(o, mistakes);
    print(mistakes);
    if (!mistakes.empty()) return STATUS_FAILED;
    if (is_watched()) std::fprintf(stderr, "reading %s\n", o.source.c_str());
    const Source source = read_source(o.source);
    print(source.mistakes);
    const Written written =
        write(source.entries, sides, {.threads = o.threads, .progress = show_progress});
    print_left_out(source, written);
    if (written.bytes.empty()) throw std::runtime_error(o.source.string() + ": has no words");
    const fs::path out = o.out.empty() ? default_out(o.source) : o.out;
    save(out, written.bytes);
    std::printf("%s: %zu words, %zu bytes\n", out.c_str(), written.words, written.bytes.size());
    return STATUS_FINE;
}

} // namespace dict
