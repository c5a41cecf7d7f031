// SPDX-License-Identifier: MIT
// Compares what a script left with what is expected.
#pragma once

#include <filesystem>
#include <string>

namespace test {

// False for files that cannot be read.
bool have_same_bytes(const std::filesystem::path &a, const std::filesystem::path &b);

// Empty when both pictures have the same pixels; otherwise what is wrong. A picture of what differs
// is saved: the new one, pale, with red where it is not as expected.
std::string compare_pictures(const std::filesystem::path &expected,
                             const std::filesystem::path &actual,
                             const std::filesystem::path &difference);

// Empty when every update has what the expected one has. A later version may tell more of each.
std::string compare_traces(const std::filesystem::path &expected,
                           const std::filesystem::path &actual);

} // namespace test
