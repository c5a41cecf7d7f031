// SPDX-License-Identifier: MIT
// A configuration file in a folder of its own, and what it reads as.
#pragma once

#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <unistd.h>

#include "kelvane/config.h"

using settings = std::map<std::string, std::string>;

struct scene {
    std::filesystem::path root =
        std::filesystem::temp_directory_path() / ("kelvane-scene-" + std::to_string(getpid()));
    std::string path = root / "a.cfg";

    scene() { std::filesystem::create_directories(root); }
    ~scene() { std::filesystem::remove_all(root); }

    void put(const std::string &text) const { std::ofstream(path, std::ios::binary) << text; }
    std::string text() const {
        std::ifstream in(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
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
