// SPDX-License-Identifier: MIT
// Zip archives that tests write.
#pragma once

#include <filesystem>
#include <minizip/zip.h>
#include <string>
#include <utility>
#include <vector>

using ZipMembers = std::vector<std::pair<std::string, std::string>>; // name, bytes

inline void write_zip(const std::string &path, const ZipMembers &members) {
    if (const auto folder = std::filesystem::path(path).parent_path(); !folder.empty())
        std::filesystem::create_directories(folder);
    zipFile zip = zipOpen(path.c_str(), APPEND_STATUS_CREATE);
    for (const auto &[name, bytes] : members) {
        zipOpenNewFileInZip(zip, name.c_str(), nullptr, nullptr, 0, nullptr, 0, nullptr,
                            bytes.empty() ? 0 : Z_DEFLATED, 9);
        zipWriteInFileInZip(zip, bytes.data(), static_cast<unsigned>(bytes.size()));
        zipCloseFileInZip(zip);
    }
    zipClose(zip, nullptr);
}
