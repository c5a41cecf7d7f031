// SPDX-License-Identifier: MIT
// A fresh working directory for as long as the object lives.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

class TempDir {
  public:
    TempDir() : before_(std::filesystem::current_path()) {
        std::string name = (std::filesystem::temp_directory_path() / "kelvane-XXXXXX").string();
        if (!mkdtemp(name.data())) std::abort();
        path_ = name;
        std::filesystem::current_path(path_);
    }
    TempDir(const TempDir &) = delete;
    TempDir &operator=(const TempDir &) = delete;
    ~TempDir() {
        std::error_code ignored;
        std::filesystem::current_path(before_, ignored);
        std::filesystem::remove_all(path_, ignored);
    }

    const std::filesystem::path &path() const { return path_; }

  private:
    std::filesystem::path before_, path_;
};

// Writes a file, making its folders. A relative name lies in the working directory.
inline void write_file(const std::filesystem::path &file, std::string_view text) {
    if (file.has_parent_path()) std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << text;
}

// The bytes of a file; empty when there is none.
inline std::string read_file(const std::filesystem::path &file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}
