// SPDX-License-Identifier: MIT
// Plays one script on a device of its own and judges what comes of it.
#pragma once

#include <filesystem>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "options.h"
#include "scripts.h"

namespace test {

struct Result {
    std::string name;
    double seconds = 0;
    std::vector<std::string> faults; // none: passed
    bool is_updated = false;         // what is expected was changed
};

// Makes each kind of device once; what does not change is shared by those of that kind.
class Devices {
  public:
    explicit Devices(std::filesystem::path place) : place_(std::move(place)) {}
    // Fills in folder/system. Empty, or what is wrong.
    std::string make(const std::vector<std::string> &options, const std::filesystem::path &folder);

  private:
    std::string make_kind(const std::vector<std::string> &options,
                          const std::filesystem::path &kind);
    std::filesystem::path place_;
    std::mutex mutex_;
    std::map<std::vector<std::string>, std::filesystem::path> kinds_;
};

// Plays in place/NAME.
Result play(const Case &one, const Options &options, Devices &devices,
            const std::filesystem::path &place);

} // namespace test
