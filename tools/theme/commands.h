// SPDX-License-Identifier: MIT
// The commands of the program. Each tells what is wrong on standard error and returns the exit
// status; what it makes appears whole or not at all. Failures of the system are thrown.
#pragma once

#include <filesystem>

namespace tool {

// In percent of the sizes that the folder has.
int pack(const std::filesystem::path &folder, const std::filesystem::path &file, int percent);
int list(const std::filesystem::path &file);
int unpack(const std::filesystem::path &file, const std::filesystem::path &folder);

} // namespace tool
