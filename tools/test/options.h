// SPDX-License-Identifier: MIT
// What the command line asks for.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace test {

enum class Frames { compare, update };

struct Options {
    std::string folder;                                              // of the scripts
    std::vector<std::string> application;                            // and its arguments
    std::vector<std::string> sizes, languages, themes, orientations; // empty: as the device comes
    std::string only = "*"; // the names of the scripts, as a shell would write them
    std::string output;     // a folder that is kept; empty: one that goes when all pass
    std::string junit;      // a file
    Frames frames = Frames::compare;
    bool with_traces = false; // an update keeps traces too
    int jobs = 0;             // 0: one for each core
    int limit_s = 60;         // for one script
};

extern const char *const usage;

// Nothing when the words make no sense; standard error says why.
std::optional<Options> parse(const std::vector<std::string> &words);

} // namespace test
