// SPDX-License-Identifier: MIT
// A dictionary file that is read as a whole.
#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "dictionary/collation.h"
#include "dictionary/container.h"
#include "dictionary/file.h"
#include "dictionary/index.h"

namespace dict {

struct Contents {
    dictionary::File file;
    dictionary::Collation collation;
    dictionary::Bytes pairs, rules, keyboard;
    dictionary::Index index;
    std::string damaged; // the sections that cannot be read, by their offsets in the header

    explicit Contents(file::Stream stream) : file(std::move(stream)) {}
    // Calls visit(number, container) for all containers; null for one that cannot be unpacked.
    void each_container(const std::function<void(size_t, dictionary::Container *)> &visit);
    // Empty, after a word on standard error, when the section cannot be read.
    dictionary::Bytes section(dictionary::Field field, dictionary::File::Packing packing);
};

// Null when it is no dictionary, after a word on standard error.
std::unique_ptr<Contents> read_contents(const std::filesystem::path &path);

} // namespace dict
