// SPDX-License-Identifier: MIT
// What kind of file a path names, and what was learnt on the way to the answer.
#pragma once

#include <memory>
#include <string>
#include <sys/stat.h>

#include "file/archive.h"
#include "kelvane/bookinfo.h"

namespace book {

// A path behind its link and inside its archive.
struct Location {
    std::string path; // of the file, behind the link
    std::string name; // whose extension counts: the path, or the first file of the archive
    std::unique_ptr<file::Archive> archive; // where `name` lies in one
    struct stat st = {};                    // zeroes when there is no file
    const kv_filetype *type = nullptr;
};

// Throws bad_alloc.
Location locate(const char *path);

} // namespace book
