// SPDX-License-Identifier: MIT
// Reads the command line.
#include "options.h"

#include <algorithm>
#include <charconv>
#include <cstdio>

namespace test {
namespace {

constexpr int longest_limit_s = 24 * 3600, most_jobs = 1000;

std::optional<Options> wrong(const std::string &why) {
    std::fprintf(stderr, "kelvane-test: %s (--help tells more)\n", why.c_str());
    return std::nullopt;
}

std::vector<std::string> parts(const std::string &list) {
    std::vector<std::string> found;
    for (size_t at = 0; at <= list.size();) {
        const size_t comma = std::min(list.find(',', at), list.size());
        if (comma > at) found.push_back(list.substr(at, comma - at));
        at = comma + 1;
    }
    return found;
}

bool number(const std::string &text, int most, int &value) {
    const char *end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, value);
    return error == std::errc() && rest == end && value > 0 && value <= most;
}

bool are_orientations(const std::vector<std::string> &list) {
    for (const std::string &one : list)
        if (one.size() != 1 || one[0] < '0' || one[0] > '3') return false;
    return !list.empty();
}

// False when the option is unknown or its value makes no sense.
bool take(Options &o, const std::string &option, const std::string &value) {
    if (value.empty()) return false;
    if (option == "--sizes") return !(o.sizes = parts(value)).empty();
    if (option == "--languages") return !(o.languages = parts(value)).empty();
    if (option == "--themes") return !(o.themes = parts(value)).empty();
    if (option == "--orientations") return are_orientations(o.orientations = parts(value));
    if (option == "--jobs") return number(value, most_jobs, o.jobs);
    if (option == "--timeout") return number(value, longest_limit_s, o.limit_s);
    if (option == "--only") return o.only = value, true;
    if (option == "--output") return o.output = value, true;
    if (option == "--junit") return o.junit = value, true;
    return false;
}

} // namespace

const char *const usage =
    R"(usage: kelvane-test [OPTION...] FOLDER APPLICATION [ARGUMENT...]

Plays each FOLDER/NAME.script with APPLICATION on the headless device, and compares the pictures
that it saves, and the updates of the screen, with those in FOLDER/expected/NAME.

  --only PATTERN         only the scripts whose names match: 'menu-*'
  --sizes WxH,...        once for each size of the screen
  --languages CODE,...   once for each language
  --themes NAME,...      once for each theme
  --orientations N,...   once for each orientation, 0 to 3
  --update               takes what comes as expected; look at it before
  --traces               --update keeps the updates of the screen, too
  --jobs COUNT           so many at once, one for each core when not said
  --timeout SECONDS      a script that takes longer is killed, 60 when not said
  --output FOLDER        where each script gets a folder, which stays; without it only what failed stays
  --junit FILE           writes the results as JUnit XML
  --help, --version
)";

std::optional<Options> parse(const std::vector<std::string> &words) {
    Options o;
    size_t at = 0;
    for (; at < words.size() && words[at].starts_with('-'); ++at) {
        const std::string &word = words[at];
        if (word == "--") {
            ++at;
            break;
        }
        if (word == "--update")
            o.frames = Frames::update;
        else if (word == "--traces")
            o.with_traces = true;
        else if (at + 1 == words.size() || !take(o, word, words[at + 1]))
            return wrong(word + ": no such option, or its value is missing or makes no sense");
        else
            ++at;
    }
    if (o.with_traces && o.frames != Frames::update) return wrong("--traces belongs to --update");
    if (words.size() < at + 2) return wrong("a folder and an application are meant");
    o.folder = words[at];
    o.application.assign(words.begin() + static_cast<long>(at) + 1, words.end());
    return o;
}

} // namespace test
