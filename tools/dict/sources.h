// SPDX-License-Identifier: MIT
// Readers of what dictionaries are made from.
#pragma once

#include <deque>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "mistakes.h"
#include "writer.h"

namespace dict {

struct Source {
    std::vector<Entry> entries;
    std::string lines_of;            // the file whose lines the entries name
    Mistakes mistakes{};             // lines and entries that are not understood, and are not there
    std::deque<std::string> texts{}; // what the entries view

    std::string &keep(std::string text) { return texts.emplace_back(std::move(text)); }
};

// Reads a file by its ending: ".index" for dictd, ".ifo" for StarDict, all others have a word, a
// tab and an article on each line. Throws std::runtime_error when it cannot be read as a whole.
Source read_source(const std::filesystem::path &path);

// The bytes of a file; those of one packed by gzip or dictzip, unpacked. Throws
// std::runtime_error.
std::string read_file(const std::filesystem::path &path);
std::string read_packed_file(const std::filesystem::path &path);

// Of each kind.
Source read_tab(const std::filesystem::path &path);
Source read_dictd(const std::filesystem::path &path);
Source read_stardict(const std::filesystem::path &path);

} // namespace dict
