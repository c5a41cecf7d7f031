// SPDX-License-Identifier: MIT
// A dictionary in the folder of a device, asked for everything.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string_view>

#include "device_folder.h"
#include "kelvane/dictionary.h"

namespace fuzz {

// Each look-up says a line, which would fill the fuzzer's own output.
class QuietErrors {
  public:
    QuietErrors() : before_(stderr) {
        static std::FILE *const nowhere = std::fopen("/dev/null", "w");
        stderr = nowhere;
    }
    QuietErrors(const QuietErrors &) = delete;
    ~QuietErrors() { stderr = before_; }

  private:
    std::FILE *before_;
};

inline void require(bool holds) {
    if (!holds) std::abort();
}

inline void put_file(const char *path, std::string_view bytes) {
    std::FILE *file = std::fopen(path, "w");
    require(file && std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size());
    std::fclose(file);
}

inline void put_dictionary(std::string_view bytes) {
    std::filesystem::create_directories("system/dictionaries");
    put_file("system/dictionaries/d.dic", bytes);
}

// Looks a word up and reads all of what is found.
inline int look(const char *word) {
    char *headword = nullptr, *translation = nullptr;
    const int result = LookupWord(word, &headword, &translation);
    require((result == DICT_NONE) <= (std::strlen(headword) + std::strlen(translation) == 0));
    return result;
}

} // namespace fuzz
