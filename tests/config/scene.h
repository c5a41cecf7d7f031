// SPDX-License-Identifier: MIT
// A configuration file in a folder of its own, and what it reads as.
#pragma once

#include <map>
#include <string>

#include "kelvane/config.h"
#include "support/tempdir.h"

using settings = std::map<std::string, std::string>;

struct scene {
    TempDir folder;
    std::string path = folder.path() / "a.cfg";

    void put(const std::string &text) const { write_file(path, text); }
    std::string text() const { return read_file(path); }
    settings read() const {
        settings all;
        iconfig *c = OpenConfig(path.c_str(), nullptr);
        hash_enumerate(
            c->hash, nullptr,
            [](const char *name, void *value, void *out) {
                (*static_cast<settings *>(out))[name] = static_cast<char *>(value);
                return 0;
            },
            &all);
        CloseConfigNoSave(c);
        return all;
    }
};

inline std::string text_of(const settings &all) {
    std::string text;
    for (const auto &[name, value] : all) text += name + "=" + value + "\n";
    return text;
}
