// SPDX-License-Identifier: MIT
// What all sessions share.
#include "failures/sessions.h"

#include <cstdlib>
#include <filesystem>
#include <iterator>

#include "support/repeats.h"
#include "support/tempdir.h"

namespace failures {

void Session::keep(const char *path) {
    kept_.push_back({path, read_file(path)});
}

std::string Session::loss() const {
    for (const Kept &file : kept_)
        if (read_file(file.path) != file.content) return file.path + " is not what it was";
    return {};
}

std::vector<Area> areas() {
    std::vector<Area> all;
    for (const auto some : {files_areas, look_areas, picture_areas, book_areas, device_areas,
                            dictionary_areas, settings_areas})
        all.insert(all.end(), some.begin(), some.end());
    return all;
}

long next_step(long step) {
    static const bool is_long = std::getenv("KELVANE_CAMPAIGN");
    return step + 1 + (is_long ? 0 : step / repeats(16, 4));
}

long open_descriptors() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

} // namespace failures
