// SPDX-License-Identifier: MIT
// The commands of kelvane-dict. Each returns the exit status of the program.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace dict {

enum : int { STATUS_FINE = 0, STATUS_FAILED = 1, STATUS_MISUSED = 2 };

struct CompileOptions {
    std::filesystem::path source, out;
    std::string language;                                       // empty: none
    std::optional<std::string> collation, morphology, keyboard; // files; "none" for none
    unsigned threads = 0;
};

int compile(const CompileOptions &options);
int list();
// Looks words up in one dictionary, a file or one of the device, or in all of the device.
int look(const std::optional<std::string> &dictionary, const std::vector<std::string> &words);
int check(const std::filesystem::path &path);
// Writes a folder with what compile() makes the same file from.
int unpack_to(const std::filesystem::path &path, const std::filesystem::path &folder);

// Where the data of the library lies, beside this program.
std::filesystem::path data_folder();

} // namespace dict
