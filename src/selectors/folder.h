// SPDX-License-Identifier: MIT
// The folders in a folder. Nothing is drawn here.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace selectors {

// The names of the folders in it, sorted without regard to case, without those that begin with a
// dot; of very many the first that were read. Nothing when it cannot be read. Throws bad_alloc.
std::optional<std::vector<std::string>> read_folders(const std::string &path);

// A path without a "/" at its end, unless it is "/".
std::string without_slash(std::string path);
std::string child_of(const std::string &path, const std::string &name);
std::string parent_of(const std::string &path);
// Whether a path is the root or lies below it, by its letters. One with ".." does not.
bool is_within(const std::string &path, const std::string &root);

} // namespace selectors
