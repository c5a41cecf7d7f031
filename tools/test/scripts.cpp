// SPDX-License-Identifier: MIT
// Reads the comments of scripts and crosses scripts with devices.
#include "scripts.h"

#include <algorithm>
#include <fnmatch.h>
#include <fstream>
#include <sstream>

namespace test {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> words_of(const std::string &text) {
    std::istringstream stream(text);
    std::vector<std::string> words;
    for (std::string word; stream >> word;) words.push_back(word);
    return words;
}

std::string trimmed(const std::string &text) {
    const size_t first = text.find_first_not_of(" \t\r"), last = text.find_last_not_of(" \t\r");
    return first == std::string::npos ? "" : text.substr(first, last - first + 1);
}

// What stands behind a beginning, in each line that has it.
std::vector<std::string> behind(const fs::path &script, const std::string &beginning) {
    std::ifstream stream(script);
    std::vector<std::string> all;
    for (std::string line; std::getline(stream, line);)
        if (line = trimmed(line); line.starts_with(beginning))
            all.push_back(trimmed(line.substr(beginning.size())));
    return all;
}

std::vector<std::string> device_options(const fs::path &script) {
    std::vector<std::string> all;
    for (const std::string &options : behind(script, "# device:"))
        for (const std::string &word : words_of(options)) all.push_back(word);
    return all;
}

void set_option(std::vector<std::string> &device, const std::string &option,
                const std::string &value) {
    const auto there = std::find(device.begin(), device.end(), option);
    if (there != device.end() && there + 1 != device.end())
        there[1] = value;
    else
        device.insert(device.end(), {option, value});
}

// One case more for each value, or the same cases when there are none.
template <typename Set>
std::vector<Case> crossed(std::vector<Case> cases, const std::vector<std::string> &values,
                          Set set) {
    if (values.empty()) return cases;
    std::vector<Case> all;
    for (const Case &one : cases)
        for (const std::string &value : values) {
            Case &made = all.emplace_back(one);
            made.name += (made.name.find('@') == std::string::npos ? "@" : "-") + value;
            set(made, value);
        }
    return all;
}

auto device_option(const char *option) {
    return [option](Case &c, const std::string &value) { set_option(c.device, option, value); };
}

std::vector<Case> crossings(const Case &plain, const Options &o) {
    std::vector<Case> all = {plain};
    all = crossed(all, o.sizes, device_option("--size"));
    all = crossed(all, o.languages, device_option("--language"));
    all = crossed(all, o.themes, device_option("--theme"));
    return crossed(all, o.orientations,
                   [](Case &c, const std::string &value) { c.orientation = value; });
}

} // namespace

std::vector<Case> find_cases(const Options &options) {
    const fs::path folder = fs::absolute(options.folder);
    std::vector<Case> all;
    for (const fs::directory_entry &entry : fs::directory_iterator(folder)) {
        const fs::path &path = entry.path();
        const std::string name = path.stem().string();
        if (path.extension() != ".script" || name.starts_with('.') || !entry.is_regular_file() ||
            fnmatch(options.only.c_str(), name.c_str(), 0) != 0)
            continue;
        Case plain{name,
                   path,
                   {},
                   device_options(path),
                   behind(path, "frame "),
                   {},
                   !behind(path, "# tasks").empty(),
                   {}};
        for (const std::string &file : behind(path, "# file:"))
            plain.files.push_back((folder / file).lexically_normal().string());
        for (Case &one : crossings(plain, options)) {
            one.expected = folder / "expected" / one.name;
            all.push_back(std::move(one));
        }
    }
    std::sort(all.begin(), all.end(), [](const Case &a, const Case &b) { return a.name < b.name; });
    return all;
}

} // namespace test
