// SPDX-License-Identifier: MIT
// A directory that closes itself.
#pragma once

#include <memory>

#include "kelvane/files.h"

namespace file {

struct DirectoryCloser {
    void operator()(DIR *directory) const { kv_closedir(directory); }
};
using Directory = std::unique_ptr<DIR, DirectoryCloser>;

} // namespace file
