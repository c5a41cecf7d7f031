// SPDX-License-Identifier: MIT
// Numbers the pictures and keeps their times.
#include "hw_linux/film.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

#include "hw_linux/picture.h"
#include "hw_linux/waveform.h"

namespace hw {
namespace {

namespace fs = std::filesystem;

constexpr int64_t longest_rest_us = 1'000'000;

// Six digits, or more in a long film, and ".png".
bool is_picture_of_film(const fs::directory_entry &entry) {
    const std::string name = entry.path().filename().string();
    std::error_code error;
    const size_t digits = std::min(name.find_first_not_of("0123456789"), name.size());
    return digits >= 6 && name.substr(digits) == ".png" &&
           fs::is_regular_file(entry.symlink_status(error));
}

// Makes the directory, without the pictures of an earlier film.
std::error_code prepare(const std::string &directory) {
    std::error_code error;
    fs::create_directories(directory, error);
    std::vector<fs::path> earlier;
    for (fs::directory_iterator it(directory, error), end; !error && it != end; it.increment(error))
        if (is_picture_of_film(*it)) earlier.push_back(it->path());
    for (const fs::path &picture : earlier)
        if (!error) fs::remove(picture, error);
    return error;
}

} // namespace

bool Film::open(int64_t now_us) {
    *this = {};
    const char *setting = std::getenv("KELVANE_FILM");
    const std::string_view text = setting ? setting : "";
    if (text.empty()) return true;
    const size_t colon = text.rfind(':');
    const char *end = text.data() + text.size();
    int rate = 0;
    const bool has_rate = colon != std::string_view::npos && colon > 0 &&
                          std::from_chars(text.data() + colon + 1, end, rate).ptr == end;
    if (!has_rate || rate < 1 || rate > panel_frames_a_second) {
        std::fprintf(stderr, "KELVANE_FILM=%s: directory:fps is meant, fps from 1 to %d\n", setting,
                     panel_frames_a_second);
        return false;
    }
    directory_ = text.substr(0, colon);
    picture_us_ = 1'000'000 / rate;
    const std::error_code error = prepare(directory_);
    if (error)
        std::fprintf(stderr, "KELVANE_FILM=%s: %s\n", setting, error.message().c_str());
    else
        note_change(now_us);
    return !error;
}

void Film::note_change(int64_t now_us) {
    if (picture_us_ == 0) return;
    last_change_us_ = now_us;
    if (next_us_ == INT64_MAX) next_us_ = now_us;
}

bool Film::take() {
    char file[PATH_MAX];
    std::snprintf(file, sizeof file, "%s/%06d.png", directory_.c_str(), ++count_);
    if (!save_picture(file, "KELVANE_FILM")) {
        *this = {};
        return false;
    }
    const bool rests = next_us_ - last_change_us_ >= longest_rest_us;
    next_us_ = rests ? INT64_MAX : next_us_ + picture_us_;
    return true;
}

} // namespace hw
