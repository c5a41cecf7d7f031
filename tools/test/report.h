// SPDX-License-Identifier: MIT
// Tells people and machines how scripts ended.
#pragma once

#include <string>
#include <vector>

#include "play.h"

namespace test {

void print(const Result &result);

// False, after saying so, when the file cannot be written.
bool write_junit(const std::string &file, const std::vector<Result> &results);

} // namespace test
