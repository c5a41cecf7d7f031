// SPDX-License-Identifier: MIT
// The devices that scripts are played on.
#pragma once

#include <filesystem>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace test {

// Makes each kind of device once. The files of its data, which are many, have names in all devices
// of that kind and are read-only; all others are copies.
class Devices {
  public:
    explicit Devices(std::filesystem::path place) : place_(std::move(place)) {}
    // Fills in folder/system. Empty, or what is wrong.
    std::string make(const std::vector<std::string> &options, const std::filesystem::path &folder);
    // The files of the data that an application has written over nevertheless, as root can.
    std::vector<std::string> changed_data(const std::vector<std::string> &options);

  private:
    struct Kind {
        std::filesystem::path system;
        std::filesystem::file_time_type data_made = std::filesystem::file_time_type::min();
    };

    std::string make_kind(const std::vector<std::string> &options,
                          const std::filesystem::path &folder);
    std::filesystem::path place_;
    std::mutex mutex_;
    std::map<std::vector<std::string>, Kind> kinds_;
};

} // namespace test
