// SPDX-License-Identifier: MIT
// Runs programs that may hang.
#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace test {

struct Command {
    std::vector<std::string> words;
    std::string folder;                   // where it runs
    std::vector<std::string> environment; // NAME=value, beside what this process has
    std::string log;                      // a file for all that it says
};

struct Ending {
    enum class Kind { exited, killed_by_signal, hung, not_started } kind;
    int number; // status, signal or errno
    bool is_good() const { return kind == Kind::exited && number == 0; }
};

// Waits for the end. What lasts longer than the limit is killed with its process group.
Ending run(const Command &command, std::chrono::seconds limit);

// The last lines of a log, each on a line of its own.
std::string end_of_log(const std::string &log);

// As a sentence: "ended with status 1".
std::string told(const Ending &ending);

} // namespace test
