// SPDX-License-Identifier: MIT
// A device folder to work in, removed at the end.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

namespace fuzz {

class DeviceFolder {
  public:
    DeviceFolder() {
        std::string name =
            (std::filesystem::temp_directory_path() / "kelvane-fuzz-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) std::abort();
        path_ = name;
    }
    DeviceFolder(const DeviceFolder &) = delete;
    ~DeviceFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    const std::filesystem::path &path() const { return path_; }

  private:
    std::filesystem::path path_;
};

// The working directory for as long as it lives: the fuzzer names its own files from where it was
// started.
class Visit {
  public:
    explicit Visit(const DeviceFolder &folder) { std::filesystem::current_path(folder.path()); }
    Visit(const Visit &) = delete;
    ~Visit() { std::filesystem::current_path(before_); }

  private:
    std::filesystem::path before_ = std::filesystem::current_path();
};

} // namespace fuzz
