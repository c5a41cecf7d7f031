// SPDX-License-Identifier: MIT
// Owners of what malloc() gave, for results that callers free with free().
#pragma once

#include <cstdlib>
#include <memory>

struct FreeDeleter {
    void operator()(void *p) const { std::free(p); }
};

using HeapString = std::unique_ptr<char, FreeDeleter>;
