// SPDX-License-Identifier: MIT
// BMP files that replace the pictures of a theme: an archive's, then those of two directories.
#pragma once

#include <string>
#include <unordered_map>
#include <unordered_set>

#include "raster/bitmap.h"

namespace theme {

class Overrides {
  public:
    Overrides() = default;
    Overrides(const Overrides &) = delete;
    ~Overrides() { clear(); }

    void clear();
    // Finds the pictures for the theme of this name. Throws bad_alloc.
    void find(const std::string &theme);
    bool has(const std::string &name) const;
    // Null when there is none. One that does not load is forgotten.
    raster::BitmapPtr load(const std::string &name);

  private:
    void find_in_archive(const std::string &path);
    void find_in_directory(const std::string &path);

    void *archive_ = nullptr; // an unzFile
    std::unordered_set<std::string> archived_;
    std::unordered_map<std::string, std::string> files_; // by picture
};

} // namespace theme
