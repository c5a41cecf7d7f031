// SPDX-License-Identifier: MIT
// The scripts of a folder, and what each asks for in its comments.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "options.h"

namespace test {

// A script in one crossing of sizes, languages, themes and orientations.
struct Case {
    std::string name;                // of the script, then "@" and what it is crossed with
    std::filesystem::path script;    // absolute
    std::filesystem::path expected;  // the folder of its pictures and its trace
    std::vector<std::string> device; // options of kelvane-device
    std::vector<std::string> frames; // the pictures that it saves
    std::vector<std::string> files;  // arguments of the application after those of all scripts
    bool has_tasks = false;          // the application and what it starts are tasks of one device
    std::string orientation;         // empty: as the device comes
};

// In the order of their names. Comments of a script speak to this tool:
//   # device: --size 1404x1872     options of kelvane-device, unless crossed with others
//   # tasks                        KELVANE_TASKS is set
//   # file: ../book.txt            an argument: a file, from the folder of the script
std::vector<Case> find_cases(const Options &options);

} // namespace test
