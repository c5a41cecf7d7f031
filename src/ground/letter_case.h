// SPDX-License-Identifier: MIT
// Capitals of all scripts, for what is shown; names that are compared need ground/fold.h.
#pragma once

#include <string>

namespace ground {

// UTF-8 text in capitals, whatever the process's locale. Bytes that are not UTF-8 stay.
std::string upper_case(const char *utf8);

} // namespace ground
