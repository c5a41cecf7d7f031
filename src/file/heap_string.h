// SPDX-License-Identifier: MIT
// Owners of what malloc() gave, for results that callers free with free().
#pragma once

#include <cstdlib>
#include <memory>

struct free_deleter {
    void operator()(void *p) const { std::free(p); }
};

using heap_string = std::unique_ptr<char, free_deleter>;
