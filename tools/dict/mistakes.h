// SPDX-License-Identifier: MIT
// What is wrong with a source, told by file and line.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace dict {

struct Mistake {
    std::string path;
    size_t line;
    std::string text;
};

using Mistakes = std::vector<Mistake>;

} // namespace dict
