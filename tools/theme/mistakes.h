// SPDX-License-Identifier: MIT
// What is wrong with a folder or a file, collected so that all of it is told at once.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace tool {

struct Place {
    std::filesystem::path file;
    size_t line = 0; // 0: the file as a whole
};

class Mistakes {
  public:
    // `what` says what is wrong and what to do about it.
    void add(const Place &place, const std::string &what);
    // Told as well, but nothing fails for it.
    void warn(const Place &place, const std::string &what);
    bool any() const { return count_ > 0; }
    size_t count() const { return count_; }
    // Tells everything on standard error, as "file:line: what".
    void print() const;

  private:
    std::vector<std::string> lines_;
    size_t count_ = 0;
};

// A name out of a file, fit to be shown: bytes that a terminal would obey become \xNN.
std::string printable(std::string_view text);

} // namespace tool
