// SPDX-License-Identifier: MIT
// Owners of what malloc() gave: results that callers free with free(), and blocks that grow.
#pragma once

#include <cstdlib>
#include <memory>

namespace ground {

struct FreeDeleter {
    void operator()(void *block) const { std::free(block); }
};

template <class T>
using HeapPtr = std::unique_ptr<T, FreeDeleter>;
using HeapString = HeapPtr<char>;

} // namespace ground
