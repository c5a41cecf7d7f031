// SPDX-License-Identifier: MIT
// The dictionary that is open, for what shows it.
#pragma once

#include <memory>
#include <string>

#include "dictionary/dictionary.h"

namespace dictionary {

struct Opened {
    std::string name; // as its file has it
    std::unique_ptr<Dictionary> dictionary;
    Position current{};
};

// Null when none is open.
Opened *opened();

} // namespace dictionary
