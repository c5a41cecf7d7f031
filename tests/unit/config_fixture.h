// SPDX-License-Identifier: MIT
// A configuration file in a folder of its own, and handles on it.
#pragma once

#include <gtest/gtest.h>
#include <map>
#include <string>

#include "kelvane/config.h"
#include "support/tempdir.h"

namespace fs = std::filesystem;

class Config : public testing::Test {
  protected:
    TempDir folder;
    fs::path root = folder.path();
    std::string path = root / "a.cfg";

    void put(const std::string &text) { write_file(path, text); }
    std::string file() { return read_file(path); }
};

// A handle that closes without saving.
struct handle {
    iconfig *c;
    explicit handle(const std::string &path, iconfigedit *defaults = nullptr)
        : c(OpenConfig(path.c_str(), defaults)) {}
    ~handle() { CloseConfigNoSave(c); }
    operator iconfig *() const { return c; }
    std::string get(const char *name) const { return ReadString(c, name, "(none)"); }
};

using values = std::map<std::string, std::string>;

inline values read_values(ihash h) {
    values all;
    const auto note = [](const char *name, void *value, void *out) {
        (*static_cast<values *>(out))[name] = static_cast<char *>(value);
        return 0;
    };
    hash_enumerate(h, nullptr, note, &all);
    return all;
}

inline values settings_in(const std::string &path) {
    return read_values(handle(path).c->hash);
}

using namespace std::string_literals;
