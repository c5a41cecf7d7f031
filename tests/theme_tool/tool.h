// SPDX-License-Identifier: MIT
// Runs kelvane-theme, for its tests.
#pragma once

#include <cstdio>
#include <gtest/gtest.h>
#include <string>
#include <sys/wait.h>
#include <vector>

struct Result {
    int status;
    std::string output; // of both kinds
};

// Runs the program; a sanitizer's report is no answer.
inline Result run(const std::string &words) {
    std::FILE *pipe = popen(("'" THEME_TOOL "' " + words + " 2>&1").c_str(), "re");
    Result result{-1, {}};
    for (char piece[4096]; const size_t count = std::fread(piece, 1, sizeof piece, pipe);)
        result.output.append(piece, count);
    const int status = pclose(pipe);
    if (WIFEXITED(status)) result.status = WEXITSTATUS(status);
    EXPECT_EQ(result.output.find("Sanitizer"), std::string::npos) << result.output;
    EXPECT_EQ(result.output.find("runtime error"), std::string::npos) << result.output;
    return result;
}

inline std::vector<std::string> lines(const std::string &text) {
    std::vector<std::string> out;
    for (size_t at = 0, end; (end = text.find('\n', at)) != text.npos; at = end + 1)
        out.push_back(text.substr(at, end - at));
    return out;
}
