// SPDX-License-Identifier: MIT
// BMP files that replace the pictures of a theme: an archive's, then those of two directories.
#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>

#include "file/archive.h"
#include "raster/bitmap_ptr.h"

namespace theme {

class Overrides {
  public:
    void clear() { *this = {}; }
    // Finds the pictures for the theme of this name. Throws bad_alloc.
    void find(const std::string &theme);
    bool has(const std::string &name) const;
    // Null when there is none. One that does not load is forgotten.
    raster::BitmapPtr load(const std::string &name);

  private:
    void find_in_archive(const std::string &path);
    void find_in_directory(const std::string &path);

    std::unique_ptr<file::Archive> archive_;
    std::set<std::string> archived_;
    std::map<std::string, std::string> files_; // by picture
};

} // namespace theme
